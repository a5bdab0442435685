#include "audio/DrvDSound.h"

#include <algorithm>

#include "engine/mix/Mixer.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr std::uint32_t kDefaultLatency = 18000;   // bytes
constexpr std::uint32_t kSecondaryMs = 800;        // bytes a millisecond and frame: 0.2 s of sound

constexpr struct {
    SoundCaps::Flag flag;
    const char* name;
} kCapNames[] = {
    {SoundCaps::PrimaryStereo, "primary stereo"}, {SoundCaps::Primary16Bit, "primary 16 bit"},
    {SoundCaps::ContinuousRate, "continuous rate"}, {SoundCaps::Emulated, "emulated driver"},
    {SoundCaps::SecondaryStereo, "secondary stereo"}, {SoundCaps::Secondary16Bit, "secondary 16 bit"},
};

// By CooperativeResult.
constexpr const char* kCooperativeReasons[] = {
    "", "\t\tinvalid parameter.\n", "\t\tfunction not supported\n", "\t\tdriver allocated by other aplication.\n",
    "\t\tdsound uninitialized\n", "undefined error value",
};

// Tells of the step that failed.
bool Succeeded(bool ok, const char* failure) {
    if (!ok) DebugOutput("%s", failure);
    return ok;
}

std::uint32_t WholeFrames(std::uint32_t bytes) { return bytes & ~(kDeviceFrameBytes - 1); }

}  // namespace

DrvDSound::DrvDSound(std::unique_ptr<DirectSound> system) : system_(std::move(system)), devices_(system_->Enumerate()) {
    if (devices_.size() > kMaxDevices) devices_.resize(kMaxDevices);
}

DrvDSound::~DrvDSound() { timer_.Stop(); }

int DrvDSound::Init(void* windowHandle, int plane, int deviceIndex, Mixer& mixer, TickHandler* tickHandler) {
    timer_.Init(tickHandler, kTimerPeriodMs);
    if (plane < 0 || plane > 1 || deviceIndex < 0 || static_cast<std::size_t>(deviceIndex) >= devices_.size()) return 0;
    current_ = deviceIndex;
    const bool started = plane == 0 ? StartFirstPlane(windowHandle, mixer.sampleRate)
                                    : StartSecondPlane(windowHandle, mixer.sampleRate);
    if (!started) return 0;
    mode_ = plane == 0 ? Mode::Primary : Mode::Secondary;
    const std::uint32_t size = GetBufferSize();
    const std::uint32_t latency = size > kDefaultLatency ? kDefaultLatency : size - 2;
    latency_ = latency;
    wantedLatency_ = latency;
    writer_.Forgive();
    return static_cast<int>(latency);
}

bool DrvDSound::StartFirstPlane(void* window, std::uint32_t sampleRate) {
    if (!OpenDevice() || !LogCaps() || !Cooperate(window, CooperativeLevel::WritePrimary)) return false;
    if (!CreatePrimary(sampleRate)) return false;
    primarySize_ = primary_->GetSize();
    return Succeeded(primary_->Play(), "\t\t- error colocando a play el buffer primario\n");
}

bool DrvDSound::StartSecondPlane(void* window, std::uint32_t sampleRate) {
    if (!OpenDevice()) return false;
    Cooperate(window, CooperativeLevel::Priority);   // the buffers work without it too
    if (!CreatePrimary(sampleRate)) return false;
    const auto bytes = static_cast<std::uint32_t>(std::uint64_t{sampleRate} * kSecondaryMs / 1000);
    secondary_ = dsound_->CreateSecondaryBuffer(WholeFrames(bytes), sampleRate);
    if (!Succeeded(secondary_ != nullptr, "\t\t- error creando buffer de sonido secundario\n")) return false;
    primarySize_ = primary_->GetSize();
    secondarySize_ = secondary_->GetSize();
    return Succeeded(secondary_->Play(), "\t\t- error colocando a play el buffer secundario\n");
}

bool DrvDSound::OpenDevice() {
    dsound_ = system_->Create(devices_[static_cast<std::size_t>(current_)].guid);
    if (!Succeeded(dsound_ != nullptr, "\t\t- error abriendo dsound device\n")) return false;
    DebugOutput("\t\t- DSound device: %s\n", GetCurrentDeviceName().c_str());
    return true;
}

bool DrvDSound::LogCaps() {
    SoundCaps caps;
    if (!Succeeded(dsound_->GetCaps(caps), "\t- error getcaps\n")) return false;
    DebugOutput("\t\tInfo:\n");
    for (const auto& row : kCapNames)
        if (caps.flags & row.flag) DebugOutput("\t\t\t%s\n", row.name);
    DebugOutput("\t\t\tNum primary buffers: %i\n", caps.primaryBuffers);
    DebugOutput("\t\t\tNum sec hard mix buffers: %i\n", caps.mixedBuffers);
    return true;
}

bool DrvDSound::Cooperate(void* window, CooperativeLevel level) {
    const CooperativeResult result = dsound_->SetCooperativeLevel(window, level);
    if (result == CooperativeResult::Ok) {
        DebugOutput("\t- cooperative level setup properly\n");
        return true;
    }
    DebugOutput("\t- error estableciendo nivel de cooperacion\n");
    DebugOutput("%s", kCooperativeReasons[static_cast<int>(result)]);
    return false;
}

bool DrvDSound::CreatePrimary(std::uint32_t sampleRate) {
    primary_ = dsound_->CreatePrimaryBuffer();
    return Succeeded(primary_ != nullptr, "\t\t- error creando buffer de sonido primario\n") &&
           Succeeded(primary_->SetFormat(sampleRate), "\t\t- error estableciendo formato del buffer primario\n");
}

SoundBuffer* DrvDSound::UsedBuffer() const {
    return mode_ == Mode::Primary ? primary_.get() : mode_ == Mode::Secondary ? secondary_.get() : nullptr;
}

// A default latency of the ring's size less two splits a frame; whole ones are written, or left and right would change
// sides.
void DrvDSound::WriteBlock(float* const* outputs, int frames, std::uint32_t byteOffset) {
    SoundBuffer* buffer = UsedBuffer();
    if (!buffer) return;
    const std::uint32_t latency = wantedLatency_;
    latency_ = latency;
    const std::span<std::int16_t> ring = buffer->Lock();
    if (ring.empty()) return;
    const std::uint64_t first = (std::uint64_t{latency} + byteOffset) / kDeviceFrameBytes;
    writer_.Write(ring, first, outputs[0], frames, buffer->GetCurrentPosition().framesPlayed);
    buffer->Unlock(static_cast<std::uint32_t>(frames) * kDeviceFrameBytes);
}

int DrvDSound::GetPosition(std::uint32_t* bytes) {
    const SoundBuffer* buffer = UsedBuffer();
    *bytes = 0;
    if (!buffer) return 0;
    const SoundCursors at = buffer->GetCurrentPosition();
    const std::uint32_t size = GetBufferSize();
    const std::uint32_t lead = (at.write + size - at.play) % size;   // bytes that the write cursor is ahead
    writer_.SetTarget(at.framesPlayed + (lead + wantedLatency_) / kDeviceFrameBytes);
    *bytes = at.write;
    return 1;
}

std::uint32_t DrvDSound::GetBufferSize() const {
    return mode_ == Mode::Primary ? primarySize_ : mode_ == Mode::Secondary ? secondarySize_ : 0;
}

std::string DrvDSound::GetDeviceName(int index) {
    return index >= 0 && static_cast<std::size_t>(index) < devices_.size()
               ? devices_[static_cast<std::size_t>(index)].name : std::string();
}

std::uint32_t DrvDSound::SetLatency(std::uint32_t bytes) {
    if (mode_ != Mode::None) bytes = std::min(bytes, GetBufferSize());
    wantedLatency_ = WholeFrames(bytes);
    return wantedLatency_;
}

bool DrvDSound::IsLost() {
    const SoundBuffer* buffer = UsedBuffer();
    return buffer && buffer->IsLost();
}

bool DrvDSound::Restore() {
    SoundBuffer* buffer = UsedBuffer();
    return buffer && buffer->Restore();
}

}  // namespace vonta
