// Songs and samples for tests, in a few words.
//
//   auto song = SongBuilder().Channels(4).Tempo(6).Bpm(125)
//                   .SineInstrument(0, 1024, {VTSAMPLE_LOOP_FORDWARD, 0, 1024})
//                   .Pattern(0, 64).Note(0, 0, 48, 1)
//                   .Order({0}).Build();
//
// Instruments and samples are given by number (from 0); a cell names its instrument as cells do: number plus one.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <numbers>
#include <utility>
#include <vector>

#include "song/Song.h"

namespace vonta {

// A loop in frames; `end` is the first frame behind it.
struct LoopFrames {
    LoopType type = VTSAMPLE_LOOP_NONE;
    std::uint32_t start = 0, end = 0;
};

// Exactly these values (not passed through Validate), volume 128. Stereo values are interleaved.
inline std::unique_ptr<Sample> MakeSample(const std::vector<float>& values, int channels = 1, LoopFrames loop = {}) {
    auto sample = std::make_unique<Sample>();
    sample->SetData(values, channels);
    sample->volume = 128;
    sample->data->loopType = loop.type;
    sample->data->loopStart = loop.start * static_cast<std::uint32_t>(channels);
    sample->data->loopEnd = loop.end * static_cast<std::uint32_t>(channels);
    return sample;
}

// A sine of `cycle` frames to the wave, starting at 0; the right side of a stereo wave is the left turned over.
inline std::vector<float> SineWave(std::uint32_t frames, int channels = 1, float amplitude = 16384.0f,
                                   std::uint32_t cycle = 64) {
    std::vector<float> values;
    for (std::uint32_t i = 0; i < frames; ++i) {
        const double phase = 2 * std::numbers::pi * (i % cycle) / cycle;
        const float value = amplitude * static_cast<float>(std::sin(phase));
        values.push_back(value);
        if (channels == 2) values.push_back(-value);
    }
    return values;
}

// All keys play this sample, number 0.
inline std::unique_ptr<Instrument> MakeInstrument(std::unique_ptr<Sample> sample) {
    auto instrument = std::make_unique<Instrument>();
    instrument->AddSample(std::move(sample));
    instrument->MapAllKeys();
    return instrument;
}

// Starts from the default song. Cells go to the pattern that was named last, at first pattern 0.
class SongBuilder {
public:
    SongBuilder& Channels(int channels) { song_->SetNumChannels(channels); return *this; }
    SongBuilder& Tempo(std::uint32_t tempo) { song_->SetTempo(tempo); return *this; }
    SongBuilder& Bpm(std::uint32_t bpm) { song_->SetBPM(bpm); return *this; }
    SongBuilder& Restart(std::uint32_t position) { song_->SetPatternPosRestart(position); return *this; }

    SongBuilder& Order(std::initializer_list<int> patterns) {
        int position = 0;
        for (const int number : patterns) song_->SetPatternPosIndex(position++, number);
        song_->SetPatternPosLenght(static_cast<std::uint32_t>(position));
        return *this;
    }

    SongBuilder& Pattern(int number, int rows = kDefaultRows) {
        if (!song_->GetPattern(number)) song_->SetPattern(number, std::make_unique<vonta::Pattern>());
        song_->numPatterns = std::max(song_->numPatterns, number + 1);
        pattern_ = song_->GetPattern(number);
        pattern_->SetNumRows(rows);
        return *this;
    }

    SongBuilder& Note(int row, int track, int note, int instrument = 0, int volume = kNoVolume, int effect = 0,
                      int param = 0) {
        pattern_->Write(row, track,
                        {static_cast<std::uint8_t>(note), static_cast<std::uint8_t>(instrument),
                         static_cast<std::uint16_t>(volume), static_cast<std::uint8_t>(effect),
                         static_cast<std::uint8_t>(param)});
        return *this;
    }

    // These two keep what else the cell holds.
    SongBuilder& Effect(int row, int track, int effect, int param) {
        Cell cell = pattern_->Read(row, track);
        cell.effect = static_cast<std::uint8_t>(effect);
        cell.param = static_cast<std::uint8_t>(param);
        pattern_->Write(row, track, cell);
        return *this;
    }

    SongBuilder& Volume(int row, int track, int volume) {
        Cell cell = pattern_->Read(row, track);
        cell.volume = static_cast<std::uint16_t>(volume);
        pattern_->Write(row, track, cell);
        return *this;
    }

    SongBuilder& Instrument(int number, std::unique_ptr<vonta::Instrument> instrument) {
        song_->SetInstrument(number, std::move(instrument));
        song_->numInstruments = std::max(song_->numInstruments, number + 1);
        return *this;
    }

    SongBuilder& SampleInstrument(int number, const std::vector<float>& values, int channels = 1,
                                  LoopFrames loop = {}) {
        return Instrument(number, MakeInstrument(MakeSample(values, channels, loop)));
    }

    SongBuilder& SineInstrument(int number, std::uint32_t frames, LoopFrames loop = {}, int channels = 1) {
        return SampleInstrument(number, SineWave(frames, channels), channels, loop);
    }

    // For what has no word of its own here.
    Song& Edit() { return *song_; }

    std::unique_ptr<Song> Build() { return std::move(song_); }

private:
    std::unique_ptr<Song> song_ = Song::MakeDefault();
    vonta::Pattern* pattern_ = song_->GetPattern(0);
};

}  // namespace vonta
