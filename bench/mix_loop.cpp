// Time of one voice per output frame, for every form of the mix loop.
#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "engine/mix/MixLoop.h"

namespace vonta {
namespace {

constexpr int kFrames = 1024;

enum class Gain { Steady, Ramp };

struct Form {
    int channels;
    Interpolation interpolation;
    bool backward;
    Gain gain;
    bool add;
};

std::vector<float> MakeBlock() {
    std::mt19937 random;
    std::uniform_real_distribution<float> value(-32768, 32767);
    std::vector<float> block(SampleData::kHeadFloats + 100000 + SampleData::kTailFloats);
    for (float& element : block) element = value(random);
    return block;
}

Voice MakeVoice(const std::vector<float>& block, const Form& form) {
    Voice voice;
    voice.frameSize = static_cast<std::uint8_t>(form.channels);
    voice.start = voice.loopStart = block.data() + SampleData::kHeadFloats;
    voice.end = voice.loopEnd = block.data() + block.size() - SampleData::kTailFloats;
    voice.loopType = VTSAMPLE_LOOP_PINGPONG;
    voice.backward = form.backward;
    voice.position = voice.start + 50000;
    voice.frac = 12345;
    voice.step = 200000;
    return voice;
}

// The time of an adding form includes that of a silent first voice.
void MixOne(benchmark::State& state, const Form& form) {
    const std::vector<float> block = MakeBlock();
    Channel channel;
    const std::size_t sounding = form.add ? 1 : 0;
    const Voice fresh = MakeVoice(block, form);
    channel.numVoices = form.add ? 2 : 1;
    channel.active = 1;
    alignas(64) std::array<float, 2 * kFrames> buffer{};
    for (auto _ : state) {
        channel.voices[0].delay = form.add ? kFrames : 0;
        Voice& voice = channel.voices[sounding] = fresh;
        if (form.gain == Gain::Ramp) voice.rampCount = 255;
        MixChannel(buffer.data(), channel, form.gain == Gain::Ramp ? 255 : kFrames, form.interpolation);
        benchmark::DoNotOptimize(buffer);
    }
    const double frames = form.gain == Gain::Ramp ? 255 : kFrames;
    state.counters["s/frame"] = benchmark::Counter(
        frames * static_cast<double>(state.iterations()),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

const bool kRegistered = [] {
    const char* const modes[] = {"", "none", "linear", "cubic"};
    for (const Interpolation mode : {Interpolation::None, Interpolation::Linear, Interpolation::Cubic})
        for (const int channels : {1, 2})
            for (const bool backward : {false, true})
                for (const Gain gain : {Gain::Steady, Gain::Ramp})
                    for (const bool add : {false, true}) {
                        const std::string name = std::string("mix/") + modes[static_cast<int>(mode)] +
                                                 (channels == 1 ? "/mono" : "/stereo") +
                                                 (backward ? "/backward" : "/forward") +
                                                 (gain == Gain::Steady ? "/steady" : "/ramp") + (add ? "/add" : "/store");
                        benchmark::RegisterBenchmark(name.c_str(), MixOne, Form{channels, mode, backward, gain, add});
                    }
    return true;
}();

}  // namespace
}  // namespace vonta
