// A song and an instrument in which every field that the native files store differs from its default, and their
// comparison field by field and float by float.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <span>

#include "song/Song.h"
#include "tests/support/FakePlugins.h"
#include "tests/support/SongBuilder.h"

namespace vonta::test {

// ---- Making

// Values that only the float form holds, only the 16-bit form, and the 8-bit form.
inline std::vector<float> FractionWave() { return SineWave(700, 2, 31000.5f); }

inline std::vector<float> SixteenBitWave() {
    auto values = SineWave(500);
    for (float& value : values) value = std::trunc(value) - 1;
    return values;
}

inline std::vector<float> EightBitWave() {
    auto values = SineWave(300, 2);
    for (float& value : values) value = std::trunc(value / 256) * 256;
    values[7] = -32768;
    return values;
}

inline std::unique_ptr<Sample> FullSample(const std::vector<float>& wave, int channels, std::uint8_t seed) {
    auto sample = MakeSample(wave, channels, {VTSAMPLE_LOOP_PINGPONG, 10u + seed, 100u + seed});
    sample->SetName("sample " + std::to_string(seed));
    sample->toneRel = static_cast<std::int8_t>(-12 + seed);
    sample->fineTune = static_cast<std::int8_t>(-100 + seed);
    sample->volume = static_cast<std::uint8_t>(90 + seed);
    sample->panning = static_cast<std::uint8_t>(40 + seed);
    sample->bits = 16;
    return sample;
}

inline Envelope FullEnvelope(int seed) {
    Envelope envelope;
    envelope.enabled = 1;
    envelope.numPoints = static_cast<std::uint8_t>(1 + seed % kEnvelopePoints);
    for (std::uint16_t i = 1; i < envelope.numPoints; ++i)
        envelope.points[i] = {static_cast<std::uint16_t>(i * (20 + seed % 7)), static_cast<std::uint16_t>((i * 13 + seed) % 65)};
    envelope.points[0].y = static_cast<std::uint16_t>(seed);
    envelope.sustainOn = envelope.loopOn = envelope.timeBased = 1;
    envelope.sustainPoint = static_cast<std::uint8_t>(envelope.numPoints - 1);
    envelope.loopStart = static_cast<std::uint8_t>(envelope.numPoints / 2);
    envelope.loopEnd = envelope.sustainPoint;
    return envelope;
}

inline void FillFilter(Instrument& ins) {
    ins.filterOn = 1;
    ins.cutoff = 1234.5f;
    ins.cutoffLfoDepth = 777.25f;
    ins.cutoffLfoWave = 3;
    ins.cutoffLfoPeriod = 12.5f;
    ins.resonance = 0.875f;
    ins.resonanceLfoDepth = 0.1f;
    ins.resonanceLfoWave = 2;
    ins.resonanceLfoPeriod = 3.3f;
    ins.filterType = 7;
    ins.gain = 0.7f;
}

inline void FillKeys(Instrument& ins) {
    for (int key = 0; key < kKeys; ++key) {
        ins.fixedKey[static_cast<std::size_t>(key)] = static_cast<std::uint8_t>(key % 2);
        if (key % 5 == 0) continue;                  // keys without a zone
        ins.SetKeySample(key, key, 64, 127);
        for (int layer = 0; layer < kMaxLayers; ++layer) ins.AddKeySample(key, layer + 200, 0, 63);
        ins.AddKeySample(key, 3, 64, 90);            // overlaps: the order of equal lows decides
        ins.AddKeySample(key, 4, 64, 80);
    }
}

inline void FillMidi(Instrument& ins) {
    auto& midi = ins.midi;
    std::uint8_t next = 1;
    for (std::uint8_t* field : {&midi.enabled, &midi.device, &midi.synth, &midi.channel, &midi.program, &midi.volume,
                                &midi.pan, &midi.sendVolume, &midi.sendPan, &midi.sendBank})
        *field = next++;
    for (auto& controller : midi.controllers) controller = next++;
    midi.transpose = -24;
    midi.bank = 0x1234;
    ins.useSynth = 1;
}

inline Sends FullSends() {
    Sends sends;
    for (std::size_t i = 0; i < sends.size(); ++i)
        sends[i] = {1, 0.1f * static_cast<float>(i), static_cast<std::uint8_t>(i < kMixedSends ? 9 - i : 15)};
    return sends;
}

inline std::unique_ptr<Instrument> FullInstrument() {
    auto result = std::make_unique<Instrument>();
    Instrument& ins = *result;
    ins.SetName("every field");
    ins.SetSample(0, FullSample(FractionWave(), 2, 1), 1);
    ins.SetSample(5, FullSample(SixteenBitWave(), 1, 2), 1);
    ins.SetSample(15, FullSample(EightBitWave(), 2, 3), 1);
    ins.SetSample(14, std::make_unique<Sample>(), 1);                // without a wave
    ins.numSamples = 16;
    for (int kind = 0; kind < kEnvelopeKinds; ++kind)
        for (int i = 0; i < kEnvelopeAlternatives; ++i)
            ins.GetEnvelopes(static_cast<EnvelopeKind>(kind))[static_cast<std::size_t>(i)] = FullEnvelope(kind * 8 + i);
    FillKeys(ins);
    FillFilter(ins);
    FillMidi(ins);
    ins.fadeOut = 4000;
    ins.muted = 1;
    ins.groupOn = 0;
    ins.groupOutput = 9;
    for (std::uint32_t i = 0; i < kEffectCodes; ++i) ins.effectMap[i] = 20 - i;
    ins.sends = FullSends();
    ins.busMask = {1, 0, 1, 1};
    ins.newNoteAction = 1;
    ins.pan = 0.75f;
    ins.transpose = -13;
    ins.fineTune = 77;
    ins.eq = {{{1, 100.5f, 0.25f}, {0, 2540.0f, 0.0f}, {1, 9000.0f, -0.5f}}};
    ins.color = 0x123456;
    auto synth = std::make_unique<FakeSynth>("C:\\Synths\\bass.dll");
    for (int i = 0; i < synth->GetNumParameters(); ++i) synth->SetParameter(i, 0.2f * static_cast<float>(i));
    ins.SetSynth(std::move(synth));
    ins.Validate();
    return result;
}

inline std::unique_ptr<Pattern> FullPattern(int rows, std::uint32_t seed) {
    auto pattern = std::make_unique<Pattern>();
    pattern->SetNumRows(rows);
    for (int row = 0; row < rows; ++row)
        for (int track = 0; track < 12; ++track) {
            seed = seed * 1664525 + 1013904223;      // any cell, with any set of fields
            const std::uint32_t fields = seed >> 8;
            Cell cell;
            if (fields & 1) cell.effect = static_cast<std::uint8_t>(1 + fields % 20);
            if (fields & 2) cell.note = static_cast<std::uint8_t>(fields % 96);
            if (fields & 4) cell.instrument = static_cast<std::uint8_t>(1 + fields % 128);
            if (fields & 8) cell.volume = static_cast<std::uint16_t>(kVolumeCommand | fields % 256);
            if (fields & 16) cell.param = static_cast<std::uint8_t>(fields | 1);
            if (track % 3) pattern->Write(row, track, cell);
        }
    return pattern;
}

inline std::unique_ptr<EffectSlot> FullEffect(std::string path, std::uint8_t seed) {
    auto effect = std::make_unique<FakeEffect>(std::move(path));
    effect->SetName("effect " + std::to_string(seed));
    effect->on = 1;
    effect->volume = 0.3f;
    effect->pan = 0.2f;
    effect->muted = 1;
    effect->output = static_cast<std::uint8_t>(seed % 16);
    for (int i = 0; i < effect->GetNumParameters(); ++i) effect->SetParameter(i, 0.05f * static_cast<float>(i + seed));
    return effect;
}

inline std::unique_ptr<SynthPlugin> FullSynth(std::string path, std::uint8_t seed) {
    auto synth = std::make_unique<FakeSynth>(std::move(path));
    synth->SetName("synth " + std::to_string(seed));
    synth->output = static_cast<std::uint8_t>(seed % 16);
    synth->muted = synth->output == 0;               // a file holds only one of the two
    synth->sends = FullSends();
    synth->pan = 0.25f;
    synth->volume = 1.7f;
    synth->on = 0;
    synth->busEnable = {1, 1, 0, 1};
    for (int i = 0; i < synth->GetNumParameters(); ++i) synth->SetParameter(i, 0.01f * static_cast<float>(i + seed));
    return synth;
}

inline void FillMixer(Song& song) {
    song.masterVolume = 0.6f;
    for (std::size_t b = 0; b < song.buses.size(); ++b) {
        Bus& bus = song.buses[b];
        bus.active = 1;
        bus.volume = 0.3f + static_cast<float>(b);
        bus.pan = 0.1f;
        bus.output = static_cast<std::uint8_t>(b + 10);
        bus.sendEnabled = {0, 1, 0, 1};
        bus.sendGain = {0.1f, 0.2f, 0.3f, 0.4f};
        bus.sendTarget = {7, 6, 5, 4};
    }
    for (std::size_t slot = 0; slot < 8; ++slot)     // the last two are not stored
        song.fxRouting[slot] = {{7, 0, kNoTarget, 3}, {0.9f, 0.8f, 0.7f, 0.6f}, {1, 0, 1, 1}};
}

inline std::unique_ptr<Song> FullSong() {
    auto result = std::make_unique<Song>();
    Song& song = *result;
    song.SetTitle("Every field");
    song.SetComments("Line one\r\nLine two\xE9");
    song.SetFileName("C:\\Songs\\every field.vtm");
    song.bpm = 201;
    song.tempo = 5;
    song.length = 255;
    song.restartPos = 254;
    song.numChannels = 12;
    for (std::size_t i = 0; i < song.patternList.size(); ++i) song.patternList[i] = static_cast<std::uint8_t>(255 - i);
    song.SetPattern(0, FullPattern(64, 1));
    song.SetPattern(1, FullPattern(1, 2));
    song.SetPattern(7, std::make_unique<Pattern>());
    song.SetPattern(255, FullPattern(256, 3));
    song.numPatterns = 256;
    song.SetInstrument(0, FullInstrument());
    song.SetInstrument(3, std::make_unique<Instrument>());
    song.SetInstrument(127, FullInstrument());
    song.numInstruments = 128;
    song.fxSlots[0] = FullEffect("C:\\Effects\\echo.dll", 16);
    song.fxSlots[9] = FullEffect("limiter.so", 7);
    for (std::size_t slot = 0; slot < song.fxSlots.size(); ++slot)
        if (song.fxSlots[slot]) song.fxNames[slot] = song.fxSlots[slot]->GetName();
    song.SetSynth(0, FullSynth("C:\\Synths\\lead.dll", 16));
    song.SetSynth(127, FullSynth("pad.so", 5));
    FillMixer(song);
    song.Validate();
    return result;
}

// ---- Comparing

inline void ExpectSame(const Sends& a, const Sends& b) {
    for (std::size_t i = 0; i < a.size(); ++i) {
        EXPECT_EQ(a[i].on, b[i].on) << i;
        EXPECT_EQ(a[i].level, b[i].level) << i;
        EXPECT_EQ(a[i].slot, b[i].slot) << i;
    }
}

// With tolerance 0 float by float; a lossy form stays within it at the mean.
inline void ExpectSameWave(const Sample& a, const Sample& b, double tolerance) {
    ASSERT_EQ(a.Count(), b.Count());
    ASSERT_EQ(a.Channels(), b.Channels());
    ASSERT_EQ(a.Wave() == nullptr, b.Wave() == nullptr);
    double difference = 0;
    for (std::uint32_t i = 0; i < a.Count(); ++i) difference += std::abs(static_cast<double>(a.Wave()[i]) - b.Wave()[i]);
    EXPECT_LE(difference, tolerance * a.Count());
}

inline void ExpectSame(const Sample* a, const Sample* b, double tolerance = 0) {
    ASSERT_EQ(a == nullptr, b == nullptr);
    if (!a) return;
    EXPECT_EQ(a->name, b->name);
    EXPECT_EQ(a->toneRel, b->toneRel);
    EXPECT_EQ(a->fineTune, b->fineTune);
    EXPECT_EQ(a->volume, b->volume);
    EXPECT_EQ(a->panning, b->panning);
    EXPECT_EQ(a->bits, b->bits);
    EXPECT_EQ(a->data->loopStart, b->data->loopStart);
    EXPECT_EQ(a->data->loopEnd, b->data->loopEnd);
    EXPECT_EQ(a->data->loopType, b->data->loopType);
    ExpectSameWave(*a, *b, tolerance);
}

template <class Plugin>
void ExpectSamePlugin(const Plugin* a, const Plugin* b) {
    ASSERT_EQ(a == nullptr, b == nullptr);
    if (!a) return;
    EXPECT_EQ(a->GetPath(), b->GetPath());
    EXPECT_EQ(a->GetName(), b->GetName());
    EXPECT_EQ(a->muted, b->muted);
    EXPECT_EQ(a->output, b->output);
    EXPECT_EQ(a->on, b->on);
    EXPECT_EQ(a->volume, b->volume);
    EXPECT_EQ(a->pan, b->pan);
    ASSERT_EQ(a->GetNumParameters(), b->GetNumParameters());
    for (int i = 0; i < a->GetNumParameters(); ++i) EXPECT_EQ(a->GetParameter(i), b->GetParameter(i)) << i;
}

inline void ExpectSameFilter(const Instrument& a, const Instrument& b) {
    EXPECT_EQ(a.filterOn, b.filterOn);
    EXPECT_EQ(a.cutoff, b.cutoff);
    EXPECT_EQ(a.cutoffLfoDepth, b.cutoffLfoDepth);
    EXPECT_EQ(a.cutoffLfoWave, b.cutoffLfoWave);
    EXPECT_EQ(a.cutoffLfoPeriod, b.cutoffLfoPeriod);
    EXPECT_EQ(a.cutoffLfoPhase, b.cutoffLfoPhase);
    EXPECT_EQ(a.resonance, b.resonance);
    EXPECT_EQ(a.resonanceLfoDepth, b.resonanceLfoDepth);
    EXPECT_EQ(a.resonanceLfoWave, b.resonanceLfoWave);
    EXPECT_EQ(a.resonanceLfoPeriod, b.resonanceLfoPeriod);
    EXPECT_EQ(a.resonanceLfoPhase, b.resonanceLfoPhase);
    EXPECT_EQ(a.filterType, b.filterType);
    EXPECT_EQ(a.gain, b.gain);
}

// Without the samples and the plug-in.
inline void ExpectSameFields(const Instrument& a, const Instrument& b) {
    EXPECT_EQ(a.name, b.name);
    EXPECT_EQ(a.volumeEnvelopes, b.volumeEnvelopes);
    EXPECT_EQ(a.panEnvelopes, b.panEnvelopes);
    EXPECT_EQ(a.cutoffEnvelopes, b.cutoffEnvelopes);
    EXPECT_EQ(a.resonanceEnvelopes, b.resonanceEnvelopes);
    EXPECT_EQ(a.keyZones, b.keyZones);
    EXPECT_EQ(a.fixedKey, b.fixedKey);
    EXPECT_EQ(a.fadeOut, b.fadeOut);
    EXPECT_EQ(a.muted, b.muted);
    EXPECT_EQ(a.groupOn, b.groupOn);
    EXPECT_EQ(a.groupOutput, b.groupOutput);
    EXPECT_EQ(a.effectMap, b.effectMap);
    ExpectSame(a.sends, b.sends);
    EXPECT_EQ(a.midi, b.midi);
    EXPECT_EQ(a.busMask, b.busMask);
    EXPECT_EQ(a.newNoteAction, b.newNoteAction);
    EXPECT_EQ(a.pan, b.pan);
    EXPECT_EQ(a.transpose, b.transpose);
    EXPECT_EQ(a.fineTune, b.fineTune);
    EXPECT_EQ(a.useSynth, b.useSynth);
    EXPECT_EQ(a.eq, b.eq);
    EXPECT_EQ(a.color, b.color);
    ExpectSameFilter(a, b);
}

inline void ExpectSame(const Instrument* a, const Instrument* b, double tolerance = 0) {
    ASSERT_EQ(a == nullptr, b == nullptr);
    if (!a) return;
    SCOPED_TRACE(a->name);
    ExpectSameFields(*a, *b);
    EXPECT_EQ(a->numSamples, b->numSamples);
    EXPECT_EQ(a->kind, b->kind);
    for (int i = 0; i < kMaxSamples; ++i) {
        SCOPED_TRACE(i);
        ExpectSame(a->GetSample(i), b->GetSample(i), tolerance);
    }
    ASSERT_EQ(a->synth == nullptr, b->synth == nullptr);
    if (a->synth) ExpectSamePlugin(a->synth.get(), b->synth.get());
}

inline void ExpectSame(const Pattern* a, const Pattern* b) {
    ASSERT_EQ(a == nullptr, b == nullptr);
    if (!a) return;
    ASSERT_EQ(a->rows, b->rows);
    for (int track = 0; track < kTracks; ++track)
        for (int row = 0; row < a->rows; ++row)
            ASSERT_EQ(a->Read(row, track), b->Read(row, track)) << "row " << row << " track " << track;
}

inline void ExpectSame(const Song& a, const Song& b, double tolerance = 0) {
    EXPECT_EQ(a.title, b.title);
    EXPECT_EQ(a.comments, b.comments);
    EXPECT_EQ(a.fileName, b.fileName);
    EXPECT_EQ(a.bpm, b.bpm);
    EXPECT_EQ(a.tempo, b.tempo);
    EXPECT_EQ(a.restartPos, b.restartPos);
    EXPECT_EQ(a.length, b.length);
    EXPECT_EQ(a.patternList, b.patternList);
    EXPECT_EQ(a.numChannels, b.numChannels);
    EXPECT_EQ(a.numPatterns, b.numPatterns);
    EXPECT_EQ(a.numInstruments, b.numInstruments);
    EXPECT_EQ(a.fxNames, b.fxNames);
    EXPECT_EQ(a.masterVolume, b.masterVolume);
    EXPECT_EQ(a.fxRouting, b.fxRouting);
    EXPECT_EQ(a.buses, b.buses);
    for (int i = 0; i < kMaxPatterns; ++i) ExpectSame(a.GetPattern(i), b.GetPattern(i));
    for (int i = 0; i < kMaxInstruments; ++i) ExpectSame(a.GetInstrument(i), b.GetInstrument(i), tolerance);
    for (std::size_t i = 0; i < a.fxSlots.size(); ++i) ExpectSamePlugin(a.fxSlots[i].get(), b.fxSlots[i].get());
    for (int i = 0; i < kMaxInstruments; ++i) {
        const SynthPlugin *left = a.GetSynth(i), *right = b.GetSynth(i);
        ExpectSamePlugin(left, right);
        if (!left || !right) continue;
        ExpectSame(left->sends, right->sends);
        EXPECT_EQ(left->busEnable, right->busEnable);
    }
}

}  // namespace vonta::test
