#include "audio/DrvWaveOut.h"

#include <algorithm>

#include "engine/mix/Mixer.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr std::uint32_t kDefaultLatency = 35000;   // bytes
constexpr std::uint32_t kRingMs = 800;             // bytes a millisecond and frame: 0.2 s of sound
constexpr std::uint32_t kMaxRate = 65535;          // the system's field for it has 16 bits
constexpr float kStartVolume = 0.8f;
constexpr float kFullVolume = 65535.0f;

constexpr const char* kFormatNames[] = {
    "11.025 khz, mono, 8bit", "11.025 khz, stereo, 8bit", "11.025 khz, mono, 16bit", "11.025 khz, stereo, 16bit",
    "22.05 khz, mono, 8bit",  "22.05 khz, stereo, 8bit",  "22.05 khz, mono, 16bit",  "22.05 khz, stereo, 16bit",
    "44.1 khz, mono, 8bit",   "44.1 khz, stereo, 8bit",   "44.1 khz, mono, 16bit",   "44.1 khz, stereo, 16bit",
};

// What went wrong in opening a device, and in all that is done with an open one.
constexpr struct {
    WaveResult result;
    const char *opening, *using_;
} kErrors[] = {
    {WaveResult::BadDeviceId, "\terror: baddeviceid\n", ""},
    {WaveResult::Allocated, "\terror: allocated\n", ""},
    {WaveResult::BadFormat, "\terror: badformat\n", ""},
    {WaveResult::Sync, "\terror: sync\n", ""},
    {WaveResult::NoDriver, "\terror: nodriver\n", "\terror: no driver\n"},
    {WaveResult::NoMemory, "\terror: nomem\n", "\terror: nomem\n"},
    {WaveResult::InvalidHandle, "", "\terror: invalhandle\n"},
    {WaveResult::Unprepared, "", "\terror: unprepared\n"},
};

bool Opened(WaveResult result) {
    for (const auto& row : kErrors)
        if (row.result == result) DebugOutput("%s", row.opening);
    return result == WaveResult::Ok;
}

bool Succeeded(WaveResult result) {
    for (const auto& row : kErrors)
        if (row.result == result) DebugOutput("%s", row.using_);
    return result == WaveResult::Ok;
}

bool VolumeSucceeded(WaveResult result) {
    if (result != WaveResult::Ok) DebugOutput("* Error setting wave out volume\n");
    return result == WaveResult::Ok;
}

}  // namespace

DrvWaveOut::~DrvWaveOut() {
    timer_.Stop();
    if (savedVolume_ != kNoVolume) SetVolume(savedVolume_);
}

int DrvWaveOut::Init(void*, int, int deviceIndex, Mixer& mixer, TickHandler* tickHandler) {
    if (system_->GetNumDevs() == 0) return 0;
    const auto device = static_cast<std::uint32_t>(deviceIndex);
    if (!LogCaps(device) || !StartRing(device, mixer.sampleRate)) return 0;
    latency_ = kDefaultLatency;
    savedVolume_ = GetVolume();
    SetVolume(kStartVolume);
    writer_.Forgive();
    timer_.Init(tickHandler, kTimerPeriodMs);
    return 1;
}

bool DrvWaveOut::LogCaps(std::uint32_t device) {
    DebugOutput("\twaveout formats supported:\n");
    WaveCaps caps;
    if (!system_->GetDevCaps(device, caps)) {
        DebugOutput("\t\tERROR: can't get waveout caps\n");
        return false;
    }
    DebugOutput("\t\tname: %s\n", caps.name.c_str());
    for (std::size_t bit = 0; bit < std::size(kFormatNames); ++bit)
        if (caps.formats >> bit & 1) DebugOutput("\t\t- %s\n", kFormatNames[bit]);
    return true;
}

bool DrvWaveOut::StartRing(std::uint32_t device, std::uint32_t sampleRate) {
    DebugOutput("\topening waveout...\n");
    if (!Opened(sampleRate > kMaxRate ? WaveResult::BadFormat : system_->Open(device, sampleRate, *this, handle_)))
        return false;
    DebugOutput("\twaveout opened...\n");
    const std::uint32_t frames = sampleRate * kRingMs / 1000 / kDeviceFrameBytes;
    size_ = frames * kDeviceFrameBytes;
    ring_.assign(2 * frames, 0);
    header_ = {ring_, kWaveBeginLoop | kWaveEndLoop, kWaveEndless};
    return PrepareHeader() && WriteHeader();
}

bool DrvWaveOut::PrepareHeader() {
    DebugOutput("\tPreparing Header...\n");
    return Succeeded(handle_->PrepareHeader(header_));
}

bool DrvWaveOut::WriteHeader() {
    DebugOutput("\twriting...\n");
    return Succeeded(handle_->Write(header_));
}

// With an endless loop this comes only if the system ends it: the device was lost.
void DrvWaveOut::OnWaveDone() {
    DebugOutput("\twaveoutproc: WOM_DONE\n");
    Succeeded(handle_->UnprepareHeader(header_));
    if (PrepareHeader()) WriteHeader();
    DebugOutput("\twaveoutproc: end WOM_DONE\n");
}

void DrvWaveOut::WriteBlock(float* const* outputs, int frames, std::uint32_t byteOffset) {
    if (!handle_) return;
    WaveTime now;
    handle_->GetPosition(now);
    const std::uint64_t first = (std::uint64_t{latency_} + byteOffset) / kDeviceFrameBytes;
    writer_.Write(ring_, first, outputs[0], frames, now.value);
}

// Should the system not tell, the position stands still: a guess would tear the song.
int DrvWaveOut::GetPosition(std::uint32_t* bytes) {
    *bytes = position_;
    WaveTime time;
    if (size_ == 0 || !Succeeded(handle_->GetPosition(time))) return 0;
    if (time.type != WaveTimeType::Samples) {
        DebugOutput("Wave Out GetPosition doesn't support TIME_SAMPLES\n");
        time.value = 0;
    }
    writer_.SetTarget(time.value + latency_ % size_ / kDeviceFrameBytes);
    *bytes = position_ = static_cast<std::uint32_t>(time.value * kDeviceFrameBytes % size_);
    return 1;
}

std::uint32_t DrvWaveOut::SetLatency(std::uint32_t bytes) {
    latency_ = std::min(bytes, size_) & ~(kDeviceFrameBytes - 1);
    return latency_;
}

float DrvWaveOut::GetVolume() {
    std::uint32_t volume = 0;
    if (!handle_ || !VolumeSucceeded(handle_->GetVolume(volume))) return 0.0f;
    return static_cast<float>(volume & 0xFFFF) / kFullVolume;
}

void DrvWaveOut::SetVolume(float volume) {
    if (!handle_) return;
    const auto side = static_cast<std::uint32_t>(std::clamp(volume, 0.0f, 1.0f) * kFullVolume);
    VolumeSucceeded(handle_->SetVolume(side << 16 | side));
}

bool DrvWaveOut::Restore() {
    if (!handle_) return false;
    handle_->Restore();
    return !handle_->IsLost();
}

}  // namespace vonta
