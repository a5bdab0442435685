#include "engine/mix/MixLoop.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "engine/mix/MixRun.h"

namespace vonta {
namespace {

constexpr float kFadePerFrame = -1.0f / kFadeFrames;

int FrameElements(const Voice& voice) { return voice.frameSize == 2 ? 2 : 1; }

const float* ForwardLimit(const Voice& voice) { return voice.loopType ? voice.loopEnd : voice.end; }

// Frames of the source, rounded up, to the limit ahead; 0 or less when it is reached.
std::ptrdiff_t FramesAhead(const Voice& voice) {
    const std::ptrdiff_t elements =
        voice.backward ? voice.position - voice.loopStart : ForwardLimit(voice) - voice.position;
    return voice.frameSize == 2 ? (elements + 1) >> 1 : elements;
}

// Output frames, at most `frames`, that start before the limit and within a run's reach.
int FramesToLimit(const Voice& voice, std::ptrdiff_t ahead, int frames) {
    const auto reach = static_cast<std::uint64_t>(std::min<std::ptrdiff_t>(ahead, kRunReach));
    const std::uint64_t distance = (reach << kFractionBits) - voice.frac;
    if (static_cast<std::uint64_t>(frames - 1) * voice.step < distance) return frames;
    return static_cast<int>((distance + voice.step - 1) / voice.step);
}

void Advance(Voice& voice, int frames) {
    const std::uint64_t moved = voice.frac + static_cast<std::uint64_t>(voice.step) * static_cast<unsigned>(frames);
    const auto whole = static_cast<std::ptrdiff_t>(moved >> kFractionBits) * FrameElements(voice);
    voice.frac = static_cast<std::uint32_t>(moved & kFractionMask);
    voice.position += voice.backward ? -whole : whole;
}

// At the limit of a loop. The fraction is kept when a ping-pong loop turns, so the pitch does not wobble at the ends.
void PassLoopPoint(Voice& voice) {
    if (voice.backward) {
        voice.position = voice.loopStart;
        voice.backward = 0;
    } else if (voice.loopType == VTSAMPLE_LOOP_PINGPONG) {
        voice.position = voice.loopEnd - FrameElements(voice);
        voice.backward = 1;
    } else {                                      // a step may be longer than many turns of a small loop
        const std::ptrdiff_t beyond = voice.position - voice.loopEnd;
        const std::ptrdiff_t wholeFrames = beyond - beyond % FrameElements(voice);
        voice.position = voice.loopStart + wholeFrames % (voice.loopEnd - voice.loopStart);
    }
}

// Off the end of a sample without a loop: the last value fades away.
void EndNote(Channel& channel, Voice& voice) {
    channel.active = 0;
    voice.rampCount = 0;
    voice.fadeCount = kFadeFrames;
    voice.fadeLeft = voice.gainLeft * kFadePerFrame;
    voice.fadeRight = voice.gainRight * kFadePerFrame;
}

// One voice's share of a block: where the next frame goes, and how many are still missing.
class VoiceMix {
public:
    VoiceMix(Channel& channel, Voice& voice, float* out, int frames, Interpolation interpolation)
        : channel_(channel),
          voice_(voice),
          out_(out),
          frames_(frames),
          interpolation_(interpolation),
          write_(&voice == &channel.voices[0] ? Write::Store : Write::Add) {}

    void Mix() {
        channel_.tailFlag = 0;
        if (channel_.active) {
            WaitDelay();
            Play();
        }
        if (voice_.fadeCount && frames_) {
            WaitDelay();
            channel_.tailFlag = 1;
            Fade();
        }
        BeSilent(frames_);
    }

private:
    void Play() {
        while (frames_ && !voice_.fadeCount) {
            const std::ptrdiff_t ahead = FramesAhead(voice_);
            if (ahead > 0) {
                PlayRun(FramesToLimit(voice_, ahead, frames_));
            } else if (voice_.loopType) {
                PassLoopPoint(voice_);
            } else {
                EndNote(channel_, voice_);
            }
        }
    }

    void PlayRun(int frames) {
        if (voice_.rampCount) {
            frames = std::min<int>(frames, voice_.rampCount);
            voice_.rampCount = static_cast<std::uint8_t>(voice_.rampCount - frames);
            Run(frames, Direction(), GainKind::Changing, {voice_.rampLeft, voice_.rampRight});
        } else {
            Run(frames, Direction(), GainKind::Steady, {});
        }
    }

    // Forward, a fade that comes to the limit stays there, loop or not; backward it turns.
    void Fade() {
        while (frames_ && voice_.fadeCount) {
            const std::ptrdiff_t ahead = FramesAhead(voice_);
            const int wanted = static_cast<int>(std::min(voice_.fadeCount, static_cast<std::uint32_t>(frames_)));
            if (ahead > 0) {
                FadeRun(FramesToLimit(voice_, ahead, wanted), Direction());
            } else if (!voice_.backward) {
                voice_.position = ForwardLimit(voice_);
                FadeRun(wanted, Travel::Held);
            } else if (voice_.loopType) {
                PassLoopPoint(voice_);
            } else {
                return;
            }
        }
    }

    void FadeRun(int frames, Travel travel) {
        voice_.fadeCount -= static_cast<std::uint32_t>(frames);
        Run(frames, travel, GainKind::Changing, {voice_.fadeLeft, voice_.fadeRight});
        if (!voice_.backward) voice_.position = std::min(voice_.position, ForwardLimit(voice_));
    }

    void Run(int frames, Travel travel, GainKind gain, GainChange change) {
        FindMixRun(voice_.frameSize == 2, interpolation_, write_, travel, gain)(voice_, out_, frames, change);
        Advance(voice_, frames);
        Wrote(frames);
    }

    void WaitDelay() {
        const std::uint32_t waited = std::min(voice_.delay, static_cast<std::uint32_t>(frames_));
        voice_.delay -= waited;
        BeSilent(static_cast<int>(waited));
    }

    void BeSilent(int frames) {
        if (write_ == Write::Store) std::fill_n(out_, 2 * frames, 0.0f);
        Wrote(frames);
    }

    void Wrote(int frames) {
        out_ += 2 * frames;
        frames_ -= frames;
    }

    Travel Direction() const { return voice_.backward ? Travel::Backward : Travel::Forward; }

    Channel& channel_;
    Voice& voice_;
    float* out_;
    int frames_;
    Interpolation interpolation_;
    Write write_;
};

}  // namespace

void MixChannel(float* buffer, Channel& channel, int frames, Interpolation interpolation) {
    const bool known = interpolation == Interpolation::Linear || interpolation == Interpolation::Cubic;
    const Interpolation mode = known ? interpolation : Interpolation::None;
    for (int k = 0; k < channel.numVoices; ++k) {
        VoiceMix(channel, channel.voices[static_cast<std::size_t>(k)], buffer, frames, mode).Mix();
    }
}

}  // namespace vonta
