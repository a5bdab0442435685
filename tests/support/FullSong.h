// A song and an instrument in which every field that the native files store differs from its default, and a
// small song with every kind of chunk in it. SongCompare.h compares songs.
#pragma once

#include "song/Song.h"
#include "tests/support/FakePlugins.h"
#include "tests/support/SongBuilder.h"

namespace vonta::test {

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
        envelope.points[i] = {static_cast<std::uint16_t>(i * (20 + seed % 7)),
                              static_cast<std::uint16_t>((i * 13 + seed) % 65)};
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
    for (std::uint8_t* field : {&midi.enabled, &midi.device, &midi.synth, &midi.channel, &midi.program,
                                &midi.volume, &midi.pan, &midi.sendVolume, &midi.sendPan, &midi.sendBank})
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
            ins.GetEnvelopes(static_cast<EnvelopeKind>(kind))[static_cast<std::size_t>(i)] =
                FullEnvelope(kind * 8 + i);
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
    for (int i = 0; i < effect->GetNumParameters(); ++i)
        effect->SetParameter(i, 0.05f * static_cast<float>(i + seed));
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
    for (int i = 0; i < synth->GetNumParameters(); ++i)
        synth->SetParameter(i, 0.01f * static_cast<float>(i + seed));
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
    for (std::size_t i = 0; i < song.patternList.size(); ++i)
        song.patternList[i] = static_cast<std::uint8_t>(255 - i);
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

// Small enough for thousands of loads, with every kind of chunk in it.
inline std::unique_ptr<Song> SmallSong() {
    auto song = Song::MakeDefault();
    song->SetTitle("small");
    song->numChannels = 3;
    song->SetPattern(0, FullPattern(6, 5));
    song->SetInstrument(0, std::make_unique<Instrument>());
    Instrument& instrument = *song->GetInstrument(0);
    instrument.SetSample(0, MakeSample({256, 512, -512, 0}, 2, {VTSAMPLE_LOOP_FORDWARD, 0, 2}), 1);
    instrument.SetSample(1, MakeSample({1, 2, 3, 4}), 1);
    instrument.SetSample(2, MakeSample({1.5f, 2, 3, 4}), 1);
    instrument.AddKeySample(60, 0, 0, 63);
    instrument.SetSynth(std::make_unique<FakeSynth>("in.dll"));
    song->fxSlots[1] = FullEffect("fx.dll", 1);
    song->SetSynth(3, FullSynth("synth.dll", 2));
    return song;
}

}  // namespace vonta::test
