#include "engine/DeviceLink.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "platform/Debug.h"

namespace vonta {
namespace {

struct DeviceRow {
    const char *starting, *failed, *started;
    std::uint8_t outputClass;
    int plane;
};

// By DeviceKind.
constexpr DeviceRow kDevices[] = {
    {"\t- starting dsound 1st plane...\n", "\t- dsound 1st plane failed\n", "\t- dsound 1st plano started\n", 0, 0},
    {"\t- starting dsound 2nd plane...\n", "\t- dsound 2nd plane failed\n", "\t- dsound 2nd plane started\n", 1, 1},
    {"\t- starting nosound...\n", "\t- nosound failed\n", "\t- nosound started\n", 3, 0},
    {"\t- starting waveout...\n", "\t- waveout failed\n", "\t- waveout started\n", 2, 0},
    {"\t- starting diskwritter...\n", "\t- diskwritter failed\n", "\t- diskwritter started\n", 3, 0},
    {"\t- starting ASIO...\n", "\t- ASIO failed\n", "\t- ASIO started\n", 2, 0},
};
constexpr int kMaxLatencyMs = 10000;

// A host's input, which stays the device's.
class BorrowedMidiIn final : public DrvMIDIIN {
public:
    explicit BorrowedMidiIn(DrvMIDIIN& input) : input_(input) {}
    int Open(int device) override { return input_.Open(device); }
    std::string GetName() const override { return input_.GetName(); }
    int Read(std::uint32_t* message) override { return input_.Read(message); }
    std::uint32_t GetLastTime() const override { return input_.GetLastTime(); }

private:
    DrvMIDIIN& input_;
};

}  // namespace

bool DeviceLink::Open(void* windowHandle, DeviceKind kind, int deviceIndex, TickHandler& cycle,
                      std::unique_ptr<DrvSound> hostDevice) {
    const DeviceRow& row = kDevices[static_cast<int>(kind)];
    outputClass_ = row.outputClass;
    mixer_.timerFlag = kind != DeviceKind::Asio;
    mixer_.device = hostDevice ? std::move(hostDevice) : factory_ ? factory_(kind) : nullptr;
    DebugOutput("%s", row.starting);
    const bool opened = mixer_.device && mixer_.device->Init(windowHandle, row.plane, deviceIndex, mixer_, &cycle);
    DebugOutput("%s", opened ? row.started : row.failed);
    if (!opened) Close();
    return opened;
}

void DeviceLink::OpenMidi() {
    DebugOutput("\t- Starting MIDI OUT\n");
    if (openMidi_) openMidi_(mixer_.midiOut, mixer_.midiIn);
    if (DrvMIDIIN* hostInput = mixer_.device->GetSyncMidiIn()) {
        mixer_.midiIn[0] = std::make_unique<BorrowedMidiIn>(*hostInput);
        hostInput_ = true;
    }
}

void DeviceLink::Close() {
    if (hostInput_) mixer_.midiIn[0].reset();
    hostInput_ = false;
    mixer_.device.reset();
}

void DeviceLink::Shutdown() {
    if (!mixer_.device) return;
    SetMixerOn(false);
    mixer_.device->Shutdown();
}

bool DeviceLink::IsMixerOn() const {
    MultimediaTimer* timer = mixer_.device ? mixer_.device->GetTimer() : nullptr;
    return timer && timer->IsRunning();
}

void DeviceLink::SetMixerOn(bool on) {
    DrvSound* device = mixer_.device.get();
    if (!device) return;
    MultimediaTimer* timer = device->GetTimer();
    if (!on) {
        if (timer) timer->Stop();
        WriteSilence();
        mixer_.restartBlock = 1;
        gate_.AwaitOutside();
    } else if (timer && !timer->IsRunning()) {
        mixer_.restartBlock = 1;
        device->GetPosition(&mixer_.playPosition);
        mixer_.writePosition = mixer_.playPosition;
        DebugOutput("* Creating timer\n");
        timer->Start(kTimerPeriodMs);
    }
}

bool DeviceLink::Restore() { return mixer_.device && mixer_.device->Restore(); }

// The whole ring, so that nothing of what was playing comes round again.
void DeviceLink::WriteSilence() {
    const std::uint32_t ring = mixer_.device->GetBufferSize();
    std::vector<float> zeros(ring / 2);
    std::array<float*, kOutputPairs> outputs;
    outputs.fill(zeros.data());
    mixer_.device->WriteBlock(outputs.data(), static_cast<int>(ring / kDeviceFrameBytes), mixer_.writePosition);
}

// The device speaks bytes; the 20 bytes keep a latency of 0 ms from asking for nothing at all.
void DeviceLink::SetLatencyMs(int ms) {
    if (!mixer_.device) return;
    const double bounded = std::clamp(ms, 0, kMaxLatencyMs);
    mixer_.device->SetLatency(static_cast<std::uint32_t>(mixer_.sampleRate * bounded * 4.0 * 0.001 + 20.0));
}

int DeviceLink::GetLatencyMs() const {
    if (!mixer_.device) return 0;
    return static_cast<int>(mixer_.device->GetLatency() * 1000.0 / (mixer_.sampleRate * 4.0));
}

}  // namespace vonta
