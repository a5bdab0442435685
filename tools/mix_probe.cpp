// Runs one form of the mix loop for a given number of frames and nothing else, so that an instruction counter can
// take the difference of two lengths. See count-instructions.
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "engine/mix/MixLoop.h"

namespace {

constexpr int kBlock = 1024;                      // frames, as the player renders at most

vonta::Voice MakeVoice(const std::vector<float>& block, int channels) {
    vonta::Voice voice;
    voice.frameSize = static_cast<std::uint8_t>(channels);
    voice.loopType = vonta::VTSAMPLE_LOOP_FORDWARD;
    voice.start = voice.position = voice.loopStart = block.data() + vonta::SampleData::kHeadFloats;
    voice.end = voice.loopEnd = block.data() + block.size() - vonta::SampleData::kTailFloats;
    voice.step = 50000;                           // about a fifth of a source frame
    return voice;
}

}  // namespace

// mix_probe CHANNELS INTERPOLATION VOICES FRAMES
int main(int argc, char** argv) {
    if (argc != 5) {
        std::fprintf(stderr, "usage: mix_probe CHANNELS(1,2) INTERPOLATION(1-3) VOICES(1-4) FRAMES\n");
        return 2;
    }
    const auto argument = [&](int i) { return static_cast<int>(std::strtol(argv[i], nullptr, 10)); };
    const std::vector<float> block(vonta::SampleData::kHeadFloats + 200000 + vonta::SampleData::kTailFloats, 1.0f);
    vonta::Channel channel;
    channel.voices.fill(MakeVoice(block, argument(1)));
    channel.numVoices = argument(3);
    channel.active = 1;
    std::array<float, 2 * kBlock> buffer{};
    for (int left = argument(4); left > 0; left -= kBlock) {
        vonta::MixChannel(buffer.data(), channel, kBlock, static_cast<vonta::Interpolation>(argument(2)));
    }
    return 0;
}
