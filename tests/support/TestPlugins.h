// Effects, instrument plug-ins and MIDI outputs that do something simple and remember what they were asked.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "midi/DrvMIDIOUT.h"
#include "plugins/EffectSlot.h"
#include "plugins/SynthPlugin.h"

namespace vonta::test {

// Multiplies its input by `gain`; without input it gives `tail` at every float, if that is not 0. A mono side takes
// and gives one float a frame: a mono output of a stereo input is its left side, a stereo output of a mono input is
// the value on both sides.
class TestEffect : public EffectSlot {
public:
    bool stereoIn = true, stereoOut = true, startFails = false;
    bool quiet = false;                  // remembers nothing: for tests that forbid allocation
    float gain = 1, tail = 0;
    std::vector<float> input;            // of the last Process
    std::vector<int> silent;             // of each Process
    std::vector<std::string>* log = nullptr;

    TestEffect() { on = 1; volume = 1; }
    ~TestEffect() override { Note("destroyed"); }
    bool Load(const std::string&) override { return true; }
    bool Init(int, int, int, std::uint32_t rate) override {
        Note("init " + std::to_string(rate));
        return !startFails;
    }
    void Uninit() override { Note("uninit"); }
    std::string GetPath() const override { return "test"; }
    int InputIsStereo() const override { return stereoIn; }
    int OutputIsStereo() const override { return stereoOut; }

    int Process(float* buffer, int frames, int isSilent) override {
        if (!quiet) silent.push_back(isSilent);
        const int outSides = stereoOut ? 2 : 1, inSides = stereoIn ? 2 : 1;
        if (quiet) return 1;
        if (isSilent) {
            if (tail != 0) std::fill(buffer, buffer + outSides * frames, tail);
            return tail != 0;
        }
        input.assign(buffer, buffer + inSides * frames);
        for (int i = 0; i < frames; ++i)
            for (int side = 0; side < outSides; ++side)
                buffer[outSides * i + side] = gain * input[static_cast<std::size_t>(inSides * i + side % inSides)];
        return 1;
    }

private:
    void Note(const std::string& text) { if (log) log->push_back(text); }
};

// Adds a constant to each side of what it is given.
class TestSynth : public SynthPlugin {
public:
    float left = 0.25f, right = 0.5f;
    int works = 0;

    bool Load(const std::string&) override { return true; }
    int Work(float* part, int frames, int) override {
        ++works;
        for (int i = 0; !bypass && i < frames; ++i) {
            part[2 * i] += left;
            part[2 * i + 1] += right;
        }
        return 1;
    }
    bool Init(int, int, int, std::uint32_t) override { return true; }
    std::string GetPath() const override { return "test"; }
    std::string GetName() const override { return "test"; }
    void SetName(const std::string&) override {}
    void NoteOn(int, int, int) override {}
    void NoteOff(int) override {}
};

class FlushCounter : public DrvMIDIOUT {
public:
    std::vector<std::uint32_t> flushes;
    void NoteOn(int, int, int, std::uint32_t) override {}
    void NoteOff(int, int, std::uint32_t) override {}
    void ProgramChange(int, int, std::uint32_t) override {}
    void ControlChange(int, int, int, std::uint32_t) override {}
    void Flush(std::uint32_t now) override { flushes.push_back(now); }
};

}  // namespace vonta::test
