#include "platform/SoundRing.h"

#include <SDL.h>

#include <algorithm>

#include "platform/Clock.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr std::uint32_t kChunkFrames = 512;        // about 11 ms

// Volume 65535 leaves the value as it is.
std::int16_t Scaled(std::int16_t value, std::int32_t volume) {
    return static_cast<std::int16_t>(value * (volume + (volume >> 15)) >> 16);
}

void OnChunk(void* ring, Uint8* stream, int bytes) {
    static_cast<SoundRing*>(ring)->Take(
        {reinterpret_cast<std::int16_t*>(stream), static_cast<std::size_t>(bytes) / sizeof(std::int16_t)});
}

}  // namespace

SoundRing::SoundRing(std::span<std::int16_t> values, std::uint32_t sampleRate)
    : values_(values), sampleRate_(sampleRate), chunkFrames_(kChunkFrames * RateScale(sampleRate)) {}

SoundRing::~SoundRing() { Close(); }

bool SoundRing::Play(const std::string& device) {
    Close();
    SDL_AudioSpec wanted{};
    wanted.freq = static_cast<int>(sampleRate_);
    wanted.format = AUDIO_S16SYS;
    wanted.channels = 2;
    wanted.samples = static_cast<Uint16>(chunkFrames_);
    wanted.callback = OnChunk;
    wanted.userdata = this;
    const auto names = audio_.emplace().DeviceNames();
    if (std::find(names.begin(), names.end(), device) != names.end())
        device_ = SDL_OpenAudioDevice(device.empty() ? nullptr : device.c_str(), 0, &wanted, nullptr, 0);
    if (!device_) {
        DebugOutput("\t- ERROR: sound device %s: %s\n", ShownName(device).c_str(), SDL_GetError());
        audio_.reset();
        return false;
    }
    played_ = FramesPlayed();
    silentSince_ = 0;
    SDL_PauseAudioDevice(device_, 0);
    return true;
}

void SoundRing::Close() {
    if (!device_) return;
    SDL_CloseAudioDevice(device_);
    device_ = 0;
    audio_.reset();
    silentSince_ = Nanoseconds();
}

bool SoundRing::IsLost() const {
    return device_ ? SDL_GetAudioDeviceStatus(device_) == SDL_AUDIO_STOPPED : silentSince_ != 0;
}

std::uint64_t SoundRing::FramesPlayed() const {
    const std::uint64_t since = silentSince_;
    return played_ + (since ? (Nanoseconds() - since) / 1000 * sampleRate_ / 1'000'000 : 0);
}

void SoundRing::Take(std::span<std::int16_t> out) {
    const std::uint32_t volume = volume_;
    const std::int32_t left = volume & 0xFFFF, right = volume >> 16;
    const std::uint64_t played = played_.load(std::memory_order_relaxed);
    std::size_t from = 2 * (played % (values_.size() / 2));
    for (std::size_t i = 0; i + 1 < out.size(); i += 2) {
        out[i] = Scaled(Load(values_[from]), left);
        out[i + 1] = Scaled(Load(values_[from + 1]), right);
        from += 2;
        if (from == values_.size()) from = 0;
    }
    played_.store(played + out.size() / 2, std::memory_order_release);
}

}  // namespace vonta
