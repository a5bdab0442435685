// An instrument plug-in: fed with notes through its MIDI face, mixed through its own section.
//
// Notes and Work run on the audio thread, between blocks and in order. The mixing section is single stores.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "midi/DrvMIDIOUT.h"
#include "plugins/Send.h"

namespace vonta {

constexpr int kBuses = 4;
constexpr int kBlockFloats = 4096;     // 2048 interleaved stereo frames, the largest block

class SynthPlugin;

// The face through which the player reaches a plug-in exactly as it reaches a MIDI device. Channel and time are
// not used: a note plays at once.
class SynthMidiSide final : public DrvMIDIOUT {
public:
    explicit SynthMidiSide(SynthPlugin& synth) : synth_(synth) {}
    void NoteOn(int note, int channel, int velocity, std::uint32_t time) override;
    void NoteOff(int note, int channel, std::uint32_t time) override;
    void ProgramChange(int, int, std::uint32_t) override {}
    void ControlChange(int, int, int, std::uint32_t) override {}

private:
    SynthPlugin& synth_;
};

class SynthPlugin {
public:
    std::uint8_t bypass = 0;                      // while set, Work does nothing
    std::uint8_t running = 0;                     // last value of SetActive
    std::array<float, kBlockFloats> buffer{};     // the plug-in's block, interleaved stereo, full scale 0.5
    SynthMidiSide midiSide{*this};
    std::uint8_t muted = 0;
    Sends sends = DefaultSends();
    float pan = 0.5f;                             // 0.0 left, 1.0 right
    float volume = 1.0f;                          // linear
    std::uint8_t on = 1;
    std::array<std::uint8_t, kBuses> busEnable{};
    std::uint8_t output = 0;                      // output pair, 0 to 15

    SynthPlugin() = default;
    SynthPlugin(const SynthPlugin&) = delete;
    SynthPlugin& operator=(const SynthPlugin&) = delete;
    virtual ~SynthPlugin() = default;

    virtual bool Load(const std::string& path) = 0;
    virtual int Work(float* part, int frames, int silent) = 0;     // in place, interleaved stereo; 0 if bypassed
    virtual bool Init(int a, int b, int c, std::uint32_t sampleRate) = 0;   // only the rate (Hz) is used
    virtual std::string GetPath() const = 0;
    virtual std::string GetName() const = 0;
    virtual void SetName(const std::string& text) = 0;
    virtual void TempoChanged() {}
    virtual std::string GetProgramName() { return {}; }
    virtual std::string GetParameterName(int /*index*/) { return {}; }
    virtual int GetNumParameters() const { return 0; }
    virtual std::string GetParameterDisplay(int /*index*/) { return {}; }
    virtual std::string GetParameterLabel(int /*index*/) { return {}; }
    virtual void SetParameter(int /*index*/, float /*value, 0 to 1*/) {}
    virtual float GetParameter(int /*index*/) const { return 0.0f; }
    virtual int OutputIsStereo() const { return 1; }
    virtual int InputIsStereo() const { return 1; }
    virtual void SetActive(std::uint8_t value) { running = value; }
    virtual void EditOpen(void* /*window*/) {}
    virtual void EditClose() {}
    virtual void EditIdle() {}
    virtual int HasEditor() const { return 0; }
    virtual void NoteOn(int note, int velocity, int detune) = 0;
    virtual void NoteOff(int note) = 0;
    virtual void SetBypass(std::uint8_t value) { bypass = value; }
    virtual std::uint8_t GetBypass() const { return bypass; }
};

}  // namespace vonta
