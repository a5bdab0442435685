#include "engine/mix/MixRun.h"

#include <emmintrin.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "engine/mix/CubicTable.h"

namespace vonta {
namespace {

// Frames are made four at a time. A lane of `at` counts how far its frame is from the start of the run, in 14.18
// fixed point.

struct FourFrames {                               // L R L R, and the next two
    __m128 early, late;
};

__m128 LoadTwo(const float* low, const float* high) {
    const __m128 first = _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(low)));
    return _mm_loadh_pi(first, reinterpret_cast<const __m64*>(high));
}

FourFrames OnBothSides(__m128 mono) { return {_mm_unpacklo_ps(mono, mono), _mm_unpackhi_ps(mono, mono)}; }

// The first element of each of four frames of the source.
struct Places {
    const float *a, *b, *c, *d;
};

template <Travel travel, int channels>
Places FindPlaces(const float* start, __m128i at) {
    if constexpr (travel == Travel::Held) return {start, start, start, start};
    constexpr std::ptrdiff_t stride = travel == Travel::Backward ? -channels : channels;
    const __m128i whole = _mm_srli_epi32(at, kFractionBits);   // 14 bits: the low half of a lane holds them all
    return {start + stride * _mm_extract_epi16(whole, 0), start + stride * _mm_extract_epi16(whole, 2),
            start + stride * _mm_extract_epi16(whole, 4), start + stride * _mm_extract_epi16(whole, 6)};
}

// The fraction of each frame in steps of 1/1024, as the tables have it: exact.
__m128 FindFractions(__m128i at) {
    constexpr int rowMask = (1 << kFractionBits) - (1 << (kFractionBits - kTableBits));
    const __m128i rows = _mm_and_si128(at, _mm_set1_epi32(rowMask));
    return _mm_mul_ps(_mm_cvtepi32_ps(rows), _mm_set1_ps(1.0f / (1 << kFractionBits)));
}

Places FindWeights(__m128i at) {
    constexpr int toElement = kFractionBits - kTableBits - 2;  // a row holds four weights
    const __m128i element =
        _mm_and_si128(_mm_srli_epi32(at, toElement), _mm_set1_epi32((kTableRows - 1) * 4));
    const float* weights = cubicTable.weights.data();
    return {weights + _mm_extract_epi16(element, 0), weights + _mm_extract_epi16(element, 2),
            weights + _mm_extract_epi16(element, 4), weights + _mm_extract_epi16(element, 6)};
}

__m128 Between(__m128 here, __m128 next, __m128 t) {
    return _mm_add_ps(_mm_mul_ps(_mm_sub_ps(_mm_set1_ps(1.0f), t), here), _mm_mul_ps(t, next));
}

template <Interpolation mode, int channels, Travel travel>
struct Reader;

template <Travel travel>
struct Reader<Interpolation::None, 1, travel> {
    static FourFrames Read(const float* start, __m128i at) {
        const Places p = FindPlaces<travel, 1>(start, at);
        return OnBothSides(_mm_setr_ps(*p.a, *p.b, *p.c, *p.d));
    }
};

template <Travel travel>
struct Reader<Interpolation::None, 2, travel> {
    static FourFrames Read(const float* start, __m128i at) {
        const Places p = FindPlaces<travel, 2>(start, at);
        return {LoadTwo(p.a, p.b), LoadTwo(p.c, p.d)};
    }
};

template <Travel travel>
struct Reader<Interpolation::Linear, 1, travel> {
    static FourFrames Read(const float* start, __m128i at) {
        constexpr bool back = travel == Travel::Backward;
        const Places p = FindPlaces<travel, 1>(start - back, at);
        const __m128 early = LoadTwo(p.a, p.b), late = LoadTwo(p.c, p.d);
        const __m128 low = _mm_shuffle_ps(early, late, _MM_SHUFFLE(2, 0, 2, 0));
        const __m128 high = _mm_shuffle_ps(early, late, _MM_SHUFFLE(3, 1, 3, 1));
        return OnBothSides(Between(back ? high : low, back ? low : high, FindFractions(at)));
    }
};

template <Travel travel>
struct Reader<Interpolation::Linear, 2, travel> {
    static constexpr int next = travel == Travel::Backward ? -2 : 2;

    static FourFrames Read(const float* start, __m128i at) {
        const Places p = FindPlaces<travel, 2>(start, at);
        const FourFrames t = OnBothSides(FindFractions(at));
        return {Between(LoadTwo(p.a, p.b), LoadTwo(p.a + next, p.b + next), t.early),
                Between(LoadTwo(p.c, p.d), LoadTwo(p.c + next, p.d + next), t.late)};
    }
};

template <Travel travel>
struct Reader<Interpolation::Cubic, 1, travel> {
    // The four taps of one frame, each by its weight.
    static __m128 Weigh(const float* place, const float* weights) {
        if constexpr (travel != Travel::Backward) return _mm_mul_ps(_mm_load_ps(weights), _mm_loadu_ps(place - 1));
        const __m128 taps = _mm_loadu_ps(place - 2);
        return _mm_mul_ps(_mm_load_ps(weights), _mm_shuffle_ps(taps, taps, _MM_SHUFFLE(0, 1, 2, 3)));
    }

    static FourFrames Read(const float* start, __m128i at) {
        const Places p = FindPlaces<travel, 1>(start, at), w = FindWeights(at);
        __m128 tap0 = Weigh(p.a, w.a), tap1 = Weigh(p.b, w.b), tap2 = Weigh(p.c, w.c), tap3 = Weigh(p.d, w.d);
        _MM_TRANSPOSE4_PS(tap0, tap1, tap2, tap3);
        return OnBothSides(_mm_add_ps(_mm_add_ps(_mm_add_ps(tap0, tap1), tap2), tap3));
    }
};

template <Travel travel>
struct Reader<Interpolation::Cubic, 2, travel> {
    static constexpr int next = travel == Travel::Backward ? -2 : 2;

    template <int tap>
    static __m128 Tap(const float* p, const float* q, __m128 weightsP, __m128 weightsQ) {
        const __m128 weights = _mm_shuffle_ps(weightsP, weightsQ, _MM_SHUFFLE(tap, tap, tap, tap));
        return _mm_mul_ps(weights, LoadTwo(p + (tap - 1) * next, q + (tap - 1) * next));
    }

    static __m128 ReadTwo(const float* p, const float* q, const float* weightsP, const float* weightsQ) {
        const __m128 wp = _mm_load_ps(weightsP), wq = _mm_load_ps(weightsQ);
        const __m128 two = _mm_add_ps(Tap<0>(p, q, wp, wq), Tap<1>(p, q, wp, wq));
        return _mm_add_ps(_mm_add_ps(two, Tap<2>(p, q, wp, wq)), Tap<3>(p, q, wp, wq));
    }

    static FourFrames Read(const float* start, __m128i at) {
        const Places p = FindPlaces<travel, 2>(start, at), w = FindWeights(at);
        return {ReadTwo(p.a, p.b, w.a, w.b), ReadTwo(p.c, p.d, w.c, w.d)};
    }
};

template <GainKind kind>
class Gains;

template <>
class Gains<GainKind::Steady> {
public:
    Gains(const Voice& voice, GainChange)
        : gain_(_mm_setr_ps(voice.gainLeft, voice.gainRight, voice.gainLeft, voice.gainRight)) {}
    __m128 NextFrame() { return gain_; }
    __m128 NextTwo() { return gain_; }
    void HandBack(Voice&) const {}

private:
    __m128 gain_;
};

// Added up frame by frame: a sum has one value, wherever the run is cut.
template <>
class Gains<GainKind::Changing> {
public:
    Gains(const Voice& voice, GainChange change)
        : gain_(_mm_setr_ps(voice.gainLeft, voice.gainRight, 0, 0)),
          change_(_mm_setr_ps(change.left, change.right, 0, 0)) {}
    __m128 NextFrame() { return gain_ = _mm_add_ps(gain_, change_); }
    __m128 NextTwo() {
        const __m128 first = NextFrame();
        return _mm_movelh_ps(first, NextFrame());
    }
    void HandBack(Voice& voice) const {
        voice.gainLeft = _mm_cvtss_f32(gain_);
        voice.gainRight = _mm_cvtss_f32(_mm_shuffle_ps(gain_, gain_, 1));
    }

private:
    __m128 gain_, change_;
};

template <Write write>
void PutTwo(float* out, __m128 frames) {
    if constexpr (write == Write::Add) frames = _mm_add_ps(_mm_loadu_ps(out), frames);
    _mm_storeu_ps(out, frames);
}

template <Write write>
void PutFrame(float* out, __m128 frame) {
    if constexpr (write == Write::Add) frame = _mm_add_ps(LoadTwo(out, out), frame);
    _mm_storel_pi(reinterpret_cast<__m64*>(out), frame);
}

// The last one to three frames. The lanes that nobody wants read at the run's start, which is there to be read.
template <class Source, Write write, class Gain>
void PutRest(const float* start, __m128i at, float* out, int frames, Gain& gain) {
    const __m128i lanes = _mm_cmplt_epi32(_mm_setr_epi32(0, 1, 2, 3), _mm_set1_epi32(frames));
    const FourFrames x = Source::Read(start, _mm_and_si128(at, lanes));
    PutFrame<write>(out, _mm_mul_ps(x.early, gain.NextFrame()));
    if (frames > 1) PutFrame<write>(out + 2, _mm_mul_ps(_mm_movehl_ps(x.early, x.early), gain.NextFrame()));
    if (frames > 2) PutFrame<write>(out + 4, _mm_mul_ps(x.late, gain.NextFrame()));
}

__m128i FirstFour(const Voice& voice) {
    const std::uint32_t frac = voice.frac, step = voice.step;
    const auto lane = [](std::uint32_t value) { return static_cast<int>(value); };
    return _mm_setr_epi32(lane(frac), lane(frac + step), lane(frac + 2 * step), lane(frac + 3 * step));
}

template <class Source, Write write, GainKind kind>
void Mix(Voice& voice, float* out, int frames, GainChange change) {
    Gains<kind> gain(voice, change);
    const float* start = voice.position;
    const __m128i fourSteps = _mm_set1_epi32(static_cast<int>(4 * voice.step));
    __m128i at = FirstFour(voice);
    for (; frames >= 4; frames -= 4, out += 8) {
        const FourFrames x = Source::Read(start, at);
        at = _mm_add_epi32(at, fourSteps);
        PutTwo<write>(out, _mm_mul_ps(x.early, gain.NextTwo()));
        PutTwo<write>(out + 4, _mm_mul_ps(x.late, gain.NextTwo()));
    }
    if (frames) PutRest<Source, write>(start, at, out, frames, gain);
    gain.HandBack(voice);
}

// Every variant once. The number of a form counts in mixed radix: gain, travel, write, channels, interpolation.
constexpr std::size_t FormNumber(bool stereo, Interpolation interpolation, Write write, Travel travel,
                                 GainKind gain) {
    std::size_t number = static_cast<std::size_t>(interpolation) - 1;
    number = number * 2 + (stereo ? 1 : 0);
    number = number * 2 + static_cast<std::size_t>(write);
    number = number * 3 + static_cast<std::size_t>(travel);
    return number * 2 + static_cast<std::size_t>(gain);
}

constexpr std::size_t kForms = 3 * 2 * 2 * 3 * 2;

template <std::size_t number>
constexpr MixRun MakeForm() {
    constexpr auto gain = static_cast<GainKind>(number % 2);
    constexpr auto travel = static_cast<Travel>(number / 2 % 3);
    constexpr auto write = static_cast<Write>(number / 6 % 2);
    constexpr int channels = number / 12 % 2 + 1;
    constexpr auto interpolation = static_cast<Interpolation>(number / 24 + 1);
    static_assert(FormNumber(channels == 2, interpolation, write, travel, gain) == number);
    return Mix<Reader<interpolation, channels, travel>, write, gain>;
}

template <std::size_t... numbers>
constexpr std::array<MixRun, kForms> MakeForms(std::index_sequence<numbers...>) {
    return {MakeForm<numbers>()...};
}

constexpr std::array<MixRun, kForms> kMixRuns = MakeForms(std::make_index_sequence<kForms>());

}  // namespace

MixRun FindMixRun(bool stereo, Interpolation interpolation, Write write, Travel travel, GainKind gain) {
    return kMixRuns[FormNumber(stereo, interpolation, write, travel, gain)];
}

}  // namespace vonta
