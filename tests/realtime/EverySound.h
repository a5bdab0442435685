// A song that uses everything.
#pragma once

#include "audio/DrvSound.h"
#include "engine/mix/Mixer.h"
#include "tests/support/SongBuilder.h"
#include "tests/support/TestPlugins.h"

namespace vonta {

// Every effect and column command over all tracks, layers, envelopes, filters, bands, buses, sends and routings, slots of
// all shapes, synths, and all output pairs.
inline std::unique_ptr<Song> EverySound() {
    SongBuilder builder;
    builder.Channels(64).Tempo(3);
    std::uint32_t random = 3;
    const auto next = [&random](std::uint32_t below) { return ((random = random * 1664525u + 1013904223u) >> 8) % below; };
    for (int i = 0; i < 20; ++i) {
        builder.SineInstrument(i, 600, {static_cast<LoopType>(i % 3), 20, 500}, 1 + i % 2);
        Instrument& instrument = *builder.Edit().GetInstrument(i);
        instrument.AddSample(MakeSample(SineWave(200)));
        if (i % 4 == 0) for (int key = 0; key < kKeys; ++key) instrument.AddKeySample(key, 1, 0, 127);
        for (auto kind : {EnvelopeKind::Volume, EnvelopeKind::Pan, EnvelopeKind::Cutoff, EnvelopeKind::Resonance})
            instrument.GetEnvelopes(kind)[static_cast<std::size_t>(i % 8)].enabled = 1;
        instrument.filterOn = 1;
        instrument.filterType = i % 9;
        instrument.eq[static_cast<std::size_t>(i % 3)].on = 1;
        instrument.busMask[static_cast<std::size_t>(i % 4)] = 1;
        instrument.groupOutput = static_cast<std::uint8_t>(i % kOutputPairs);
        instrument.newNoteAction = i % 2;
        instrument.cutoffLfoWave = i % 6;
        instrument.fadeOut = 300;
        for (std::size_t send = 0; send < 8; ++send) instrument.sends[send].on = 1;
        instrument.midi.enabled = i % 5 == 0;
        instrument.useSynth = 1;
        instrument.midi.sendBank = instrument.midi.sendPan = instrument.midi.sendVolume = 1;
    }
    for (int row = 0; row < 64; ++row)
        for (int track = 0; track < 64; ++track) {
            const int effect = static_cast<int>(next(21));
            const bool leaves = effect == 11 || effect == 13 || effect == 15;
            builder.Note(row, track, next(3) ? kNoNote : static_cast<int>(next(96)), static_cast<int>(next(21)),
                         next(2) ? kNoVolume : static_cast<int>(0x8000 | next(256)), effect,
                         leaves ? 0x21 : static_cast<int>(next(256)));
        }
    Song& song = builder.Edit();
    for (std::size_t slot = 0; slot < kEffectSlots; ++slot) {
        auto effect = std::make_unique<test::TestEffect>();
        effect->stereoIn = slot % 2;
        effect->stereoOut = slot % 3 == 0;
        effect->tail = 0.1f;
        effect->quiet = true;
        song.fxSlots[slot] = std::move(effect);
        song.fxRouting[slot].enabled.fill(1);
    }
    for (std::size_t b = 0; b < kBuses; ++b) {
        song.buses[b].active = 1;
        song.buses[b].sendEnabled.fill(1);
        song.SetSynth(static_cast<int>(b), std::make_unique<test::TestSynth>());
        song.synths[b]->busEnable.fill(1);
    }
    return builder.Build();
}

}  // namespace vonta
