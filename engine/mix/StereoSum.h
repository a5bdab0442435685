// The sums of the routing stages: how one buffer enters another, stereo or mono, stored or added, with gains.
//
// Each form gives its output by fours and one by one; a single loop runs them all. Every form may work in place
// that reads and writes the same floats. No value depends on how a buffer is cut into calls.
#pragma once

#include <emmintrin.h>

namespace vonta {

// Where a sum goes. The first writer of a buffer's segment stores, so that nobody has to clear it.
struct Sink {
    float* out = nullptr;
    bool add = false;
};

struct StereoToStereo {
    static constexpr int kSides = 2;
    float gains[2];
    __m128 four;
    StereoToStereo(float left, float right) : gains{left, right}, four(_mm_setr_ps(left, right, left, right)) {}
    __m128 Four(const float* in, int i) const { return _mm_mul_ps(_mm_loadu_ps(in + i), four); }
    float One(const float* in, int i) const { return in[i] * gains[i & 1]; }
};

struct MonoToStereo {
    static constexpr int kSides = 2;
    float gains[2];
    __m128 four;
    MonoToStereo(float left, float right) : gains{left, right}, four(_mm_setr_ps(left, right, left, right)) {}
    __m128 Four(const float* in, int i) const {
        const __m128 two = _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(in + i / 2)));
        return _mm_mul_ps(_mm_unpacklo_ps(two, two), four);
    }
    float One(const float* in, int i) const { return in[i / 2] * gains[i & 1]; }
};

struct StereoToMono {
    static constexpr int kSides = 1;
    float gain;
    __m128 four;
    explicit StereoToMono(float g) : gain(g), four(_mm_set1_ps(g)) {}
    __m128 Four(const float* in, int i) const {
        const __m128 a = _mm_loadu_ps(in + 2 * i), b = _mm_loadu_ps(in + 2 * i + 4);
        const __m128 lefts = _mm_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0));
        const __m128 rights = _mm_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1));
        return _mm_mul_ps(_mm_add_ps(lefts, rights), four);
    }
    float One(const float* in, int i) const { return (in[2 * i] + in[2 * i + 1]) * gain; }
};

struct MonoToMono {
    static constexpr int kSides = 1;
    float gain;
    __m128 four;
    explicit MonoToMono(float g) : gain(g), four(_mm_set1_ps(g)) {}
    __m128 Four(const float* in, int i) const { return _mm_mul_ps(_mm_loadu_ps(in + i), four); }
    float One(const float* in, int i) const { return in[i] * gain; }
};

// Stereo as it is.
struct Unscaled {
    static constexpr int kSides = 2;
    __m128 Four(const float* in, int i) const { return _mm_loadu_ps(in + i); }
    float One(const float* in, int i) const { return in[i]; }
};

// Stereo amplified and held within a bound; what is no number becomes 0.
struct Clipped {
    static constexpr int kSides = 2;
    __m128 amp, high, low;
    Clipped(float amplification, float bound)
        : amp(_mm_set1_ps(amplification)), high(_mm_set1_ps(bound)), low(_mm_set1_ps(-bound)) {}
    __m128 Clip(__m128 in) const {
        const __m128 value = _mm_mul_ps(in, amp);
        const __m128 held = _mm_max_ps(_mm_min_ps(value, high), low);
        return _mm_and_ps(held, _mm_cmpord_ps(value, value));
    }
    __m128 Four(const float* in, int i) const { return Clip(_mm_loadu_ps(in + i)); }
    float One(const float* in, int i) const { return _mm_cvtss_f32(Clip(_mm_set_ss(in[i]))); }
};

// Single floats; infinities and what is no number become 0.
struct FiniteOnly {
    static constexpr int kSides = 1;
    static __m128 Keep(__m128 in) {
        const __m128 zero = _mm_sub_ps(in, in);          // of an infinity or a NaN: NaN
        return _mm_and_ps(in, _mm_cmpord_ps(zero, zero));
    }
    __m128 Four(const float* in, int i) const { return Keep(_mm_loadu_ps(in + i)); }
    float One(const float* in, int i) const { return _mm_cvtss_f32(Keep(_mm_set_ss(in[i]))); }
};

template <bool add, class Form>
void SumFrames(float* out, const float* in, int frames, const Form& form) {
    constexpr int kTurn = 16;
    const auto four = [&](int i) {
        __m128 value = form.Four(in, i);
        if constexpr (add) value = _mm_add_ps(_mm_loadu_ps(out + i), value);
        _mm_storeu_ps(out + i, value);
    };
    const int floats = frames * Form::kSides;
    int i = 0;
    for (; i + kTurn <= floats; i += kTurn)
        for (int k = i; k < i + kTurn; k += 4) four(k);
    for (; i + 4 <= floats; i += 4) four(i);
    for (; i < floats; ++i) {
        if constexpr (add) out[i] += form.One(in, i);
        else out[i] = form.One(in, i);
    }
}

template <class Form>
void Sum(Sink sink, const float* in, int frames, const Form& form) {
    if (sink.add) SumFrames<true>(sink.out, in, frames, form);
    else SumFrames<false>(sink.out, in, frames, form);
}

inline void DropNonFinite(float* values, int count) { SumFrames<false>(values, values, count, FiniteOnly{}); }

}  // namespace vonta
