// Songs and instruments compared field by field and float by float.
#pragma once

#include <gtest/gtest.h>

#include <cmath>

#include "song/Song.h"

namespace vonta::test {

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
    for (std::uint32_t i = 0; i < a.Count(); ++i)
        difference += std::abs(static_cast<double>(a.Wave()[i]) - b.Wave()[i]);
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
