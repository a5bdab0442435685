// The link to the sound device: opening and closing it, the pause, what it does when it was lost, its latency.
//
// The device itself stands in the mixer, where the block cycle finds it. Never on the audio side.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "audio/DrvSound.h"
#include "engine/CycleGate.h"
#include "engine/mix/Mixer.h"

namespace vonta {

// In the order in which StartSound counts them.
enum class DeviceKind : int { DirectSoundPrimary = 0, DirectSoundSecondary, NoSound, WaveOut, DiskWritter, Asio };

// Makes the device object of a kind; null if it cannot be made. The rooms above supply it: the engine knows no device.
using DeviceFactory = std::unique_ptr<DrvSound> (*)(DeviceKind kind);

// Opens the system's MIDI devices into the mixer's tables, and logs from the outputs' lines on. They supply this too;
// null means no MIDI.
using MidiOpener = void (*)(std::span<std::unique_ptr<DrvMIDIOUT>> outputs, std::span<std::unique_ptr<DrvMIDIIN>> inputs);

class DeviceLink {
public:
    DeviceLink(Mixer& mixer, DeviceFactory factory, MidiOpener openMidi)
        : mixer_(mixer), factory_(factory), openMidi_(openMidi) {}

    static bool IsKind(int number) { return number >= 0 && number <= static_cast<int>(DeviceKind::Asio); }

    // At the mixer's rate. False for a device that cannot be made or whose Init fails; then there is none.
    bool Open(void* windowHandle, DeviceKind kind, int deviceIndex, TickHandler& cycle,
              std::unique_ptr<DrvSound> hostDevice);
    void OpenMidi();                               // the system's ports, and the host's input if the device has one
    void Close();
    void Shutdown();                               // the device stops for good

    void SetMixerOn(bool on);
    bool IsMixerOn() const;                        // any thread
    bool Restore();                                // with the mixer off

    void SetLatencyMs(int ms);
    int GetLatencyMs() const;
    int OutputClass() const { return outputClass_; }
    CycleGate& Gate() { return gate_; }

private:
    void WriteSilence();

    Mixer& mixer_;
    const DeviceFactory factory_;
    const MidiOpener openMidi_;
    std::uint8_t outputClass_ = 3;
    bool hostInput_ = false;                       // midiIn[0] is the device's own
    CycleGate gate_;
};

}  // namespace vonta
