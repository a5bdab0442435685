// An effect in one of the mixer's ten places. Slots 0 to 7 are fed by sends, 8 and 9 work on the main output.
//
// Process runs on the audio thread and neither allocates nor waits. The five fields and the parameters are single
// stores that the audio thread sees one block later. Load, Init and Uninit run on the interface thread with the
// mixer off.
#pragma once

#include <cstdint>
#include <string>

namespace vonta {

constexpr int kEffectSlots = 10;
constexpr int kSendSlots = 8;     // slots 8 and 9 are the master slots

class EffectSlot {
public:
    std::uint8_t on = 0;          // the mixer runs this slot only if it is set
    float volume = 0.8f;          // output level, linear
    float pan = 0.5f;             // 0.0 left, 1.0 right
    std::uint8_t muted = 0;       // the effect runs, but its output goes nowhere
    std::uint8_t output = 0;      // output pair, 0 to 15

    virtual ~EffectSlot() = default;

    virtual bool Load(const std::string& path) = 0;
    // In place, full scale 1.0. A stereo side is interleaved; a mono side is one float per frame. With `silent` the
    // buffer holds no input; nonzero then tells that the effect still produced sound.
    virtual int Process(float* /*buffer*/, int /*frames*/, int /*silent*/) { return 0; }
    virtual bool Init(int a, int b, int c, std::uint32_t sampleRate) = 0;   // only the rate (Hz) is used
    virtual void Uninit() = 0;
    virtual std::string GetPath() const = 0;
    virtual std::string GetName() const { return {}; }
    virtual void SetName(const std::string& /*text*/) {}
    virtual void TempoChanged() {}
    virtual std::string GetProgramName() { return "Init"; }
    virtual std::string GetParameterName(int /*index*/) { return {}; }
    virtual int GetNumParameters() const { return 0; }
    virtual std::string GetParameterDisplay(int /*index*/) { return {}; }
    virtual std::string GetParameterLabel(int /*index*/) { return {}; }
    virtual void SetParameter(int /*index*/, float /*value, 0 to 1*/) {}
    virtual float GetParameter(int /*index*/) const { return 0.0f; }
    virtual int OutputIsStereo() const { return 0; }
    virtual int InputIsStereo() const { return 0; }
    virtual void SetActive(std::uint8_t value);                             // stores in `on`
    virtual void Suspend() {}
    virtual void EditOpen(void* /*window*/) {}
    virtual void EditClose() {}
    virtual void EditIdle() {}
    virtual int HasEditor() const { return 0; }
};

}  // namespace vonta
