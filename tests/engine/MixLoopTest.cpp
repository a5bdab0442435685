// The mix loop against a slow twin that makes one frame at a time, and against figures worked out by hand.
#include "engine/mix/MixLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace vonta {
namespace {

// A wave with exactly the guard floats of a sample block around it, so that the address checker sees any read beyond.
class TestWave {
public:
    explicit TestWave(std::vector<float> values) : count_(values.size()) {
        block_.resize(SampleData::kHeadFloats + count_ + SampleData::kTailFloats);
        std::ranges::copy(values, block_.begin() + SampleData::kHeadFloats);
        block_.shrink_to_fit();
    }
    const float* At(std::size_t element) const { return block_.data() + SampleData::kHeadFloats + element; }
    std::size_t Count() const { return count_; }

private:
    std::vector<float> block_;
    std::size_t count_;
};

// --- The slow twin ---------------------------------------------------------------------------------------------

struct SlowVoice {
    Channel& channel;
    Voice& voice;
    Interpolation mode;
    bool store;
    float* out;
    int frames;

    int Offset() const { return voice.frameSize == 2 ? 2 : 1; }
    const float* Limit() const { return voice.loopType != 0 ? voice.loopEnd : voice.end; }

    void Put(float left, float right) {
        out[0] = store ? left : out[0] + left;
        out[1] = store ? right : out[1] + right;
        Skip();
    }
    void Skip() {
        out += 2;
        --frames;
    }
    void Silence() {
        if (store) out[0] = out[1] = 0;
        Skip();
    }

    float Read(const float* p) const {
        const int o = voice.backward ? -Offset() : Offset();
        const float t = static_cast<float>(voice.frac >> 8) / 1024.0f;
        if (mode == Interpolation::Linear) return (1.0f - t) * p[0] + t * p[o];
        if (mode != Interpolation::Cubic) return p[0];
        const double d = t;
        const auto c0 = static_cast<float>((1 - 0.5 * d) * d * d - 0.5 * d);
        const auto c1 = static_cast<float>(1.5 * d * d * d - 2.5 * d * d + 1);
        const auto c2 = static_cast<float>(((2 - 1.5 * d) * d + 0.5) * d);
        const auto c3 = static_cast<float>(0.5 * d * d * d - 0.5 * d * d);
        return c0 * p[-o] + c1 * p[0] + c2 * p[o] + c3 * p[2 * o];
    }
    void Produce() {
        const float left = Read(voice.position);
        const float right = Offset() == 2 ? Read(voice.position + 1) : left;
        Put(left * voice.gainLeft, right * voice.gainRight);
    }
    void Step() {
        const std::uint32_t acc = voice.frac + voice.step;
        voice.frac = acc & 0x3FFFF;
        const auto whole = static_cast<std::ptrdiff_t>(acc >> 18) * Offset();
        voice.position += voice.backward ? -whole : whole;
    }
    void Delay() {
        for (; frames > 0 && voice.delay > 0; --voice.delay) Silence();
    }
    void PassLimit() {
        if (voice.loopType == 0) {
            channel.active = 0;
            voice.rampCount = 0;
            voice.fadeCount = 256;
            voice.fadeLeft = voice.gainLeft * -0.00390625f;
            voice.fadeRight = voice.gainRight * -0.00390625f;
        } else if (voice.loopType == 1) {
            const std::ptrdiff_t distance = voice.position - voice.loopEnd;
            voice.position = voice.loopStart + distance / Offset() * Offset();
        } else {
            voice.position = voice.backward ? voice.loopStart : voice.loopEnd - Offset();
            voice.backward = voice.backward ? 0 : 1;
        }
    }
    bool BeforeLimit() const { return voice.backward ? voice.position > voice.loopStart : voice.position < Limit(); }

    void Main() {
        while (frames > 0 && voice.fadeCount == 0) {
            while (BeforeLimit() && frames > 0) {
                if (voice.rampCount != 0) {
                    voice.gainLeft += voice.rampLeft;
                    voice.gainRight += voice.rampRight;
                    --voice.rampCount;
                }
                Produce();
                Step();
            }
            if (frames > 0) PassLimit();
        }
    }
    void Fade() {
        while (voice.fadeCount > 0 && frames > 0) {
            if (voice.backward && !BeforeLimit()) {
                PassLimit();
                continue;
            }
            if (!voice.backward) voice.position = std::min(voice.position, Limit());
            voice.gainLeft += voice.fadeLeft;
            voice.gainRight += voice.fadeRight;
            --voice.fadeCount;
            Produce();
            Step();
            if (!voice.backward) voice.position = std::min(voice.position, Limit());
        }
    }
    void Mix() {
        channel.tailFlag = 0;
        if (channel.active) {
            Delay();
            Main();
        }
        if (voice.fadeCount > 0 && frames > 0) {
            Delay();
            channel.tailFlag = 1;
            Fade();
        }
        while (frames > 0) Silence();
    }
};

void SlowMixChannel(float* buffer, Channel& channel, int frames, Interpolation mode) {
    for (int k = 0; k < channel.numVoices; ++k) {
        SlowVoice{channel, channel.voices[static_cast<std::size_t>(k)], mode, k == 0, buffer, frames}.Mix();
    }
}

// --- Voices by chance ------------------------------------------------------------------------------------------

class Chance {
public:
    explicit Chance(std::uint32_t seed) : random_(seed) {}
    int Upto(int highest) { return std::uniform_int_distribution(0, highest)(random_); }   // inclusive
    bool OneIn(int n) { return Upto(n - 1) == 0; }
    float Value(float range) { return std::uniform_real_distribution(-range, range)(random_); }

private:
    std::mt19937 random_;
};

// Tiny, ordinary, or longer than one run of the loop can span.
TestWave MakeWave(Chance& chance) {
    const int frames = chance.OneIn(20) ? 40000 : 1 + chance.Upto(chance.OneIn(2) ? 7 : 700);
    std::vector<float> values(static_cast<std::size_t>(2 * frames + chance.Upto(1)));   // half a stereo frame may be left
    for (float& value : values) value = chance.Value(32768);
    return TestWave(std::move(values));
}

std::uint32_t MakeStep(Chance& chance) {
    switch (chance.Upto(5)) {
        case 0: return 0;
        case 1: return static_cast<std::uint32_t>(chance.Upto(1 << 12));               // nearly still
        case 2: return static_cast<std::uint32_t>(chance.Upto(40)) << kFractionBits;
        case 3: return static_cast<std::uint32_t>(chance.Upto(16382)) << kFractionBits | 0x2ABCD;
        default: return static_cast<std::uint32_t>(chance.Upto(3 << kFractionBits));   // as music has it
    }
}

Voice MakeVoice(Chance& chance, const TestWave& wave) {
    Voice voice;
    voice.frameSize = static_cast<std::uint8_t>(1 + chance.Upto(1));
    const int frames = static_cast<int>(wave.Count()) / voice.frameSize;
    const auto at = [&](int frame) { return wave.At(static_cast<std::size_t>(frame * voice.frameSize)); };
    const int loopStart = chance.Upto(frames - 1);
    const int room = frames - loopStart - 1;
    const int loopEnd = loopStart + 1 + chance.Upto(chance.OneIn(2) ? std::min(room, 5) : room);
    voice.loopType = static_cast<std::uint8_t>(chance.Upto(2));
    voice.backward = voice.loopType == VTSAMPLE_LOOP_PINGPONG && chance.OneIn(2);
    voice.start = at(0);
    voice.end = wave.At(wave.Count());
    voice.loopStart = at(loopStart);
    voice.loopEnd = at(loopEnd);
    voice.position = voice.backward ? at(loopStart + chance.Upto(loopEnd - loopStart)) : at(chance.Upto(frames));
    voice.frac = static_cast<std::uint32_t>(chance.Upto(kFractionMask));
    voice.step = MakeStep(chance);
    voice.gainLeft = chance.Value(0.4f);
    voice.gainRight = chance.Value(0.4f);
    voice.rampLeft = chance.Value(0.01f);
    voice.rampRight = chance.Value(0.01f);
    voice.rampCount = static_cast<std::uint8_t>(chance.OneIn(2) ? chance.Upto(kRampFrames) : 0);
    voice.delay = static_cast<std::uint32_t>(chance.OneIn(3) ? chance.Upto(400) : 0);
    return voice;
}

void StartFade(Chance& chance, Channel& channel) {
    channel.active = 0;
    for (Voice& voice : channel.voices) {
        voice.rampCount = 0;
        voice.fadeCount = static_cast<std::uint32_t>(chance.Upto(kFadeFrames));
        voice.fadeLeft = voice.gainLeft / -256;
        voice.fadeRight = voice.gainRight / -256;
    }
}

std::unique_ptr<Channel> MakeChannel(Chance& chance, const TestWave& wave, int voices) {
    auto channel = std::make_unique<Channel>();
    for (Voice& voice : channel->voices) voice = MakeVoice(chance, wave);
    channel->numVoices = voices;
    channel->active = 1;
    if (chance.OneIn(4)) StartFade(chance, *channel);
    return channel;
}

std::unique_ptr<Channel> Twin(const Channel& channel) {
    auto twin = std::make_unique<Channel>();
    twin->voices = channel.voices;
    twin->numVoices = channel.numVoices;
    twin->active = channel.active;
    return twin;
}

auto SoundingState(const Voice& voice) {
    return std::tuple(voice.position, voice.frac, std::bit_cast<std::uint32_t>(voice.gainLeft),
                      std::bit_cast<std::uint32_t>(voice.gainRight), voice.fadeCount, voice.delay, voice.rampCount,
                      voice.backward);
}

void ExpectSameState(const Channel& channel, const Channel& twin, const std::string& about) {
    EXPECT_EQ(channel.active, twin.active) << about;
    for (std::size_t k = 0; k < channel.voices.size(); ++k) {
        EXPECT_EQ(SoundingState(channel.voices[k]), SoundingState(twin.voices[k])) << about << " voice " << k;
    }
}

// What stood in the buffer before: to be overwritten by the first voice.
constexpr float kGarbage = 12345.0f;

std::string FirstDifference(const std::vector<float>& got, const std::vector<float>& wanted) {
    const auto same = [](float a, float b) { return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b); };
    const auto [a, b] = std::ranges::mismatch(got, wanted, same);
    if (a == got.end()) return {};
    return "float " + std::to_string(a - got.begin()) + ": " + std::to_string(*a) + " for " + std::to_string(*b);
}

using Mixing = void (*)(float*, Channel&, int, Interpolation);

// Mixes up to each of the cuts in turn.
std::vector<float> MixInPieces(Mixing mix, Channel& channel, Interpolation mode, const std::vector<int>& cuts) {
    std::vector<float> buffer(static_cast<std::size_t>(2 * cuts.back()), kGarbage);
    int from = 0;
    for (const int to : cuts) {
        mix(buffer.data() + 2 * from, channel, to - from, mode);
        from = to;
    }
    return buffer;
}

std::vector<int> MakeCuts(Chance& chance, int frames) {
    std::vector<int> cuts{frames};
    for (int i = chance.Upto(12); i > 0; --i) cuts.push_back(chance.Upto(frames));
    std::ranges::sort(cuts);
    return cuts;
}

constexpr Interpolation kModes[] = {Interpolation::None, Interpolation::Linear, Interpolation::Cubic};

TEST(MixLoop, MakesEveryFrameAsOneAtATimeWould) {
    for (std::uint32_t seed = 0; seed < 6000; ++seed) {
        Chance chance(seed);
        const TestWave wave = MakeWave(chance);
        const auto channel = MakeChannel(chance, wave, 1 + chance.Upto(3));
        const auto twin = Twin(*channel);
        const Interpolation mode = kModes[chance.Upto(2)];
        const std::vector<int> cuts = MakeCuts(chance, 1 + chance.Upto(1023));
        const std::string about = "seed " + std::to_string(seed);
        ASSERT_EQ(FirstDifference(MixInPieces(MixChannel, *channel, mode, cuts),
                                  MixInPieces(SlowMixChannel, *twin, mode, cuts)),
                  "")
            << about;
        EXPECT_EQ(channel->tailFlag, twin->tailFlag) << about;
        ExpectSameState(*channel, *twin, about);
        if (HasFailure()) return;
    }
}

TEST(MixLoop, CuttingARunAnywhereChangesNoFrame) {
    for (std::uint32_t seed = 0; seed < 3000; ++seed) {
        Chance chance(seed);
        const TestWave wave = MakeWave(chance);
        const auto whole = MakeChannel(chance, wave, 1);
        const auto cut = Twin(*whole);
        const Interpolation mode = kModes[chance.Upto(2)];
        const int frames = 1 + chance.Upto(1023);
        const std::string about = "seed " + std::to_string(seed);
        ASSERT_EQ(FirstDifference(MixInPieces(MixChannel, *cut, mode, MakeCuts(chance, frames)),
                                  MixInPieces(MixChannel, *whole, mode, {frames})),
                  "")
            << about;
        ExpectSameState(*cut, *whole, about);
        if (HasFailure()) return;
    }
}

// --- By hand ---------------------------------------------------------------------------------------------------

// A voice over the whole of a mono wave, at unit gain, without ramp, one source frame per output frame.
std::unique_ptr<Channel> PlayMono(const TestWave& wave, LoopType loopType = VTSAMPLE_LOOP_NONE) {
    auto channel = std::make_unique<Channel>();
    Voice& voice = channel->voices[0];
    voice.start = voice.position = voice.loopStart = wave.At(0);
    voice.end = voice.loopEnd = wave.At(wave.Count());
    voice.loopType = loopType;
    voice.step = 1u << kFractionBits;
    voice.gainLeft = voice.gainRight = 1;
    channel->active = 1;
    return channel;
}

std::vector<float> MixLeft(Channel& channel, int frames, Interpolation mode = Interpolation::None) {
    const std::vector<float> both = MixInPieces(MixChannel, channel, mode, {frames});
    std::vector<float> left;
    for (std::size_t i = 0; i < both.size(); i += 2) left.push_back(both[i]);
    return left;
}

TEST(MixLoop, TheLastValueFadesAwayAfterTheEnd) {
    const TestWave wave({100, 256, 256, 256, 256});   // the repaired end of a mono wave repeats its last value
    const auto channel = PlayMono(wave);
    channel->voices[0].end = wave.At(2);
    const std::vector<float> left = MixLeft(*channel, 300);
    for (std::size_t i = 0; i < 256; ++i) EXPECT_EQ(left[2 + i], 255.0f - static_cast<float>(i));
    EXPECT_EQ(std::ranges::count(left, 0.0f), 300 - 2 - 255);
    EXPECT_EQ(channel->active, 0);
    EXPECT_EQ(channel->tailFlag, 1);
    EXPECT_FALSE(channel->HasSound());
}

TEST(MixLoop, LoopsWrapTurnAndLeap) {
    const TestWave wave({1, 2, 3, 4, 5});
    struct {
        LoopType type;
        int loopStart, loopEnd;
        double step;
        std::vector<float> left;
    } const cases[] = {
        {VTSAMPLE_LOOP_FORDWARD, 1, 4, 1, {1, 2, 3, 4, 2, 3, 4, 2}},
        {VTSAMPLE_LOOP_PINGPONG, 1, 4, 1, {1, 2, 3, 4, 4, 3, 2, 3}},    // the start is sounded by the way forward
        {VTSAMPLE_LOOP_PINGPONG, 1, 2, 1, {1, 2, 2, 2, 2, 2, 2, 2}},
        {VTSAMPLE_LOOP_FORDWARD, 1, 4, 10, {1, 2, 3, 4, 2, 3, 4, 2}},   // 10 = 3 x 3 + 1
        {VTSAMPLE_LOOP_PINGPONG, 0, 4, 1.5, {1, 2, 4, 4, 2, 1, 3, 4}},  // the half frame is kept at each turn
    };
    for (const auto& c : cases) {
        const auto channel = PlayMono(wave, c.type);
        channel->voices[0].loopStart = wave.At(static_cast<std::size_t>(c.loopStart));
        channel->voices[0].loopEnd = wave.At(static_cast<std::size_t>(c.loopEnd));
        channel->voices[0].step = static_cast<std::uint32_t>(c.step * (1 << kFractionBits));
        EXPECT_EQ(MixLeft(*channel, 8), c.left) << "loop " << c.loopStart << " to " << c.loopEnd << " by " << c.step;
    }
}

TEST(MixLoop, ADelayLongerThanTheBlockIsCountedDownInTheNext) {
    const TestWave wave({1, 2, 3, 4, 5});
    const auto channel = PlayMono(wave);
    channel->voices[0].delay = 5;
    EXPECT_EQ(MixLeft(*channel, 3), (std::vector<float>{0, 0, 0}));
    EXPECT_EQ(channel->voices[0].delay, 2u);
    EXPECT_EQ(MixLeft(*channel, 4), (std::vector<float>{0, 0, 1, 2}));
}

TEST(MixLoop, InterpolationReadsTheHeadOfTheBlockAndTheWaveBehindTheLoop) {
    const TestWave wave({16, 32, 64, 128});
    struct {
        Interpolation mode;
        int position;
        float value;
    } const cases[] = {
        {static_cast<Interpolation>(77), 0, 16},
        {Interpolation::Linear, 0, 24},                    // half way from 16 to 32
        {Interpolation::Cubic, 0, 23},                     // -1/16 of 0, 9/16 of 16 and of 32, -1/16 of 64
        {Interpolation::Linear, 1, 48},                    // the loop ends at 2: the next frame is still read
        {Interpolation::Cubic, 1, 45},
    };
    for (const auto& c : cases) {
        const auto channel = PlayMono(wave, VTSAMPLE_LOOP_FORDWARD);
        channel->voices[0].position = wave.At(static_cast<std::size_t>(c.position));
        channel->voices[0].loopEnd = wave.At(2);
        channel->voices[0].frac = 1u << (kFractionBits - 1);
        EXPECT_EQ(MixLeft(*channel, 1, c.mode).front(), c.value);
    }
}

TEST(MixLoop, AFadeStaysAtTheLimitOfALoop) {
    const TestWave wave({1, 2, 3, 50, 60});
    const auto channel = PlayMono(wave, VTSAMPLE_LOOP_FORDWARD);
    channel->voices[0].loopEnd = wave.At(3);
    channel->voices[0].fadeCount = 6;
    channel->active = 0;
    EXPECT_EQ(MixLeft(*channel, 8), (std::vector<float>{1, 2, 3, 50, 50, 50, 0, 0}));
}

TEST(MixLoop, LayersStopWithTheOneThatEndsAndLaterOnesAtOnce) {
    const TestWave tiny({1, 1, 1, 1, 1, 1}), flat(std::vector<float>(100, 1000.0f));
    const auto channel = PlayMono(flat);
    channel->voices[1] = PlayMono(tiny)->voices[0];
    channel->voices[1].end = tiny.At(4);
    channel->voices[2] = channel->voices[0];
    channel->numVoices = 3;
    const std::vector<float> left = MixLeft(*channel, 50);
    EXPECT_EQ(left[3], 1001);                               // the first plays on in this block, the third is silent
    EXPECT_GT(left[49], 1000);
    EXPECT_EQ(channel->tailFlag, 0);                        // as the last voice leaves it
    EXPECT_LT(MixLeft(*channel, 50).front(), 1);            // only the fade of the second is left
}

TEST(MixLoop, AChannelThatNeverPlayedIsSilent) {
    Channel channel;
    EXPECT_EQ(MixLeft(channel, 5), std::vector<float>(5, 0.0f));
    EXPECT_EQ(channel.tailFlag, 0);
}

}  // namespace
}  // namespace vonta
