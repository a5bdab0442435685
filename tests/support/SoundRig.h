// A mixer and a song with as many sounding channels as a test wants, each a constant on either side.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "engine/mix/Mixer.h"
#include "song/Song.h"
#include "tests/support/TestPlugins.h"

namespace vonta::test {

struct SoundRig {
    std::unique_ptr<Mixer> mixer = std::make_unique<Mixer>();
    std::unique_ptr<Song> song = std::make_unique<Song>();
    std::vector<float> wave = std::vector<float>(2 * 32, 1.0f);

    explicit SoundRig(int instruments = 2) {
        for (int i = 0; i < instruments; ++i) song->AddInstrument(std::make_unique<Instrument>());
    }

    // Makes a channel sound for good; it goes nowhere yet.
    Channel& Sound(Channel& channel, float left, float right) {
        Voice& voice = channel.voices[0];
        voice.frameSize = 2;
        voice.start = voice.loopStart = voice.position = wave.data() + 8;
        voice.end = voice.loopEnd = wave.data() + wave.size() - 16;
        voice.loopType = VTSAMPLE_LOOP_FORDWARD;
        voice.step = 1u << kFractionBits;
        voice.gainLeft = left;
        voice.gainRight = right;
        channel.active = 1;
        channel.lastInstrument = 0;
        return channel;
    }
    Channel& Track(int i, float left, float right) { return Sound(*mixer->channels[i], left, right); }
    Channel& Reserve(int i, float left, float right) { return Sound(*mixer->reserve[i], left, right); }

    TestEffect& Effect(int slot, bool stereoIn = true, bool stereoOut = true) {
        auto effect = std::make_unique<TestEffect>();
        TestEffect& it = *effect;
        it.stereoIn = stereoIn;
        it.stereoOut = stereoOut;
        mixer->effects[slot] = std::move(effect);
        return it;
    }
    TestSynth& Synth(int index) {
        auto synth = std::make_unique<TestSynth>();
        TestSynth& it = *synth;
        song->synths[index] = std::move(synth);
        return it;
    }

    void Segment(int offset, int frames) { mixer->MixSegment(*song, offset, frames); }
    void Block(int frames = 16) {
        mixer->BeginBlock();
        Segment(0, frames);
    }
    // One frame of an output pair before the master stage.
    std::pair<float, float> Out(int pair = 0, int frame = 0) const {
        return {mixer->outputBuffer[pair][2 * frame], mixer->outputBuffer[pair][2 * frame + 1]};
    }
};

using Frame = std::pair<float, float>;

}  // namespace vonta::test
