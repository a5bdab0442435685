#include <gtest/gtest.h>

#include <cmath>

#include "tests/support/PlayerRig.h"

namespace vonta {
namespace {

constexpr LoopFrames kLoop{VTSAMPLE_LOOP_FORDWARD, 0, 640};

SongBuilder OneSine() {
    SongBuilder song;
    song.Tempo(2).SineInstrument(0, 640, kLoop);
    return song;
}

TEST(Pitch, FollowsTheLinearPeriod) {
    EXPECT_EQ(PeriodToFrequency(NoteToPeriod(48, 0)), 8363u);
    EXPECT_EQ(PeriodToFrequency(NoteToPeriod(60, 0)), 16726u);
    EXPECT_EQ(PeriodToFrequency(NoteToPeriod(48, 127)), 8852u);       // 63 of 64 parts of a semitone up
    EXPECT_EQ(NoteToPeriod(48, -3), 4609.0);                          // the half is cut towards zero
    EXPECT_EQ(FrequencyToStep(44100, 44100), 1u << 18);
    EXPECT_EQ(FrequencyToStep(66150, 44100), 3u << 17);
    EXPECT_EQ(NoteToPeriod(126, 0), -384.0);
}

TEST(Pitch, SamplesInstrumentsAndKeysAddUp) {
    struct { int note, toneRel, transpose; bool fixed; int expected; } const cases[] = {
        {48, 0, 0, false, 48}, {48, 12, -5, false, 55}, {48, 12, -5, true, 67}, {95, 71, 0, false, 126}, {3, -48, 0, false, 0}};
    for (const auto& each : cases) {
        SongBuilder song = OneSine();
        Instrument& instrument = *song.Note(0, 0, each.note, 1).Edit().GetInstrument(0);
        instrument.GetSample(0)->toneRel = static_cast<std::int8_t>(each.toneRel);
        instrument.transpose = each.transpose;
        instrument.fixedKey.fill(each.fixed);
        PlayerRig rig(song.Build());
        rig.ToRow(0);
        EXPECT_EQ(rig.FirstVoice().note, each.expected);
        EXPECT_EQ(rig.Track(0).noteOffset, each.expected - each.note);
    }
}

TEST(NoteStart, TakesTheVolumeOfTheCellOrTheSample) {
    struct { int volume, effect, param, expected; } const cases[] = {
        {kNoVolume, 0, 0, 64}, {0, 0, 0, 0}, {128, 0, 0, 128}, {100, 0, 0, 100}, {kNoVolume, 12, 30, 30},
        {kNoVolume, 12, 200, 128}, {kVolumeCommand | 0x61, 0, 0, 64}, {kVolumeCommand | 0x95, 0, 0, 74}};
    for (const auto& each : cases) {
        SongBuilder song = OneSine();
        song.Edit().GetInstrument(0)->GetSample(0)->volume = 64;
        PlayerRig rig(song.Note(0, 0, 48, 1, each.volume, each.effect, each.param).Build());
        rig.ToRow(0);
        EXPECT_EQ(rig.Track(0).noteVolume, each.expected) << each.volume << " " << each.effect;
        EXPECT_EQ(rig.Track(0).targetVolume, static_cast<float>(each.expected));
    }
}

TEST(Gains, RiseFromZeroToTheirTargetInOneRamp) {
    EXPECT_FLOAT_EQ(LeftGain(128, 128), 0.381f);
    EXPECT_FLOAT_EQ(RightGain(128, 128), 0.384f);
    EXPECT_FLOAT_EQ(LeftGain(0, 128), 0.384f);
    EXPECT_FLOAT_EQ(RightGain(255, 64), 0.192f);
    PlayerRig rig(OneSine().Note(0, 0, 48, 1).Build());
    rig.ToRow(0);
    const Voice& voice = rig.FirstVoice();
    EXPECT_EQ(voice.gainLeft, 0.0f);
    EXPECT_EQ(voice.rampCount, kRampFrames);
    rig.Frames(kRampFrames);
    EXPECT_EQ(voice.rampCount, 0);
    EXPECT_NEAR(voice.gainLeft, 0.381f, 1e-5f);
    rig.Ticks(1);
    EXPECT_EQ(voice.gainLeft, LeftGain(128, 128));
    EXPECT_EQ(voice.rampCount, 0);
}

TEST(NoteStart, ANewNoteSendsTheOldOneToTheReserve) {
    for (const bool goesOn : {false, true})
        for (const bool envelope : {false, true}) {
            SongBuilder song = OneSine();
            Instrument& instrument = *song.Note(0, 5, 48, 1).Note(1, 5, 50, 1).Edit().GetInstrument(0);
            instrument.newNoteAction = goesOn;
            instrument.volumeEnvelopes[0].enabled = envelope;
            PlayerRig rig(song.Build());
            rig.ToRow(0);
            rig.Frames(400);
            rig.Ticks(2);
            const Channel& old = *rig.player.GetMixer().reserve[goesOn ? 0 : 5];
            EXPECT_EQ(rig.FirstVoice(5).note, 50);
            EXPECT_TRUE(rig.Track(5).active);
            EXPECT_EQ(old.voices[0].note, 48);
            const bool released = goesOn && envelope;
            EXPECT_EQ(old.active, released);
            EXPECT_EQ(old.voices[0].fadeCount, released ? 0u : kFadeFrames);
            EXPECT_EQ(old.fadeOut, released ? 200 : 0);
            rig.Frames(static_cast<int>(kFadeFrames) + 1);
            EXPECT_EQ(old.HasSound(), released);
        }
}

TEST(NoteStart, LayersSoundTogetherUpToFour) {
    SongBuilder song = OneSine();
    Instrument& instrument = *song.Note(0, 0, 48, 1, 90).Edit().GetInstrument(0);
    for (int i = 1; i < 5; ++i) instrument.AddSample(MakeSample(SineWave(64)));
    for (int i = 1; i < 5; ++i) instrument.AddKeySample(48, i, 0, 127);
    instrument.GetSample(2)->toneRel = 7;
    PlayerRig rig(song.Build());
    rig.ToRow(0);
    EXPECT_EQ(rig.Track(0).numVoices, 4);
    EXPECT_EQ(rig.Track(0).voices[2].note, 55);
}

TEST(NoteStart, WhatCannotSoundLeavesTheOldNoteAlone) {
    SongBuilder song = OneSine();
    song.Instrument(1, std::make_unique<Instrument>());
    PlayerRig rig(song.Note(0, 0, 48, 1).Note(1, 0, 50, 2).Note(2, 0, 50, 77).Note(3, 0, 110, 1).Build());
    rig.ToRow(3);
    EXPECT_EQ(rig.FirstVoice().note, 48);
    EXPECT_EQ(rig.FirstVoice().fadeCount, 0u);
}

// Whatever a file says of a loop, the voice stays inside its wave, in whole frames.
TEST(NoteStart, LoopPointsOfAFileAreBoundedByTheWave) {
    struct { std::uint32_t start, end; std::uint8_t type; int channels; } const cases[] = {
        {5, 3, 1, 1}, {0, 4000000000u, 1, 1}, {90, 200, 2, 2}, {3, 7, 1, 2}, {100, 100, 2, 1}, {0, 1, 2, 2}, {0, 64, 77, 1}};
    for (const auto& each : cases) {
        SongBuilder song;
        song.SampleInstrument(0, SineWave(64, each.channels), each.channels).Tempo(1).Note(0, 0, 95, 1);
        SampleData& data = *song.Edit().GetInstrument(0)->GetSample(0)->data;
        data.loopStart = each.start;
        data.loopEnd = each.end;
        data.loopType = each.type;
        PlayerRig rig(song.Build());
        rig.ToRow(0);
        const Voice& voice = rig.FirstVoice();
        EXPECT_LE(voice.loopEnd, voice.start + 64 * each.channels);
        EXPECT_TRUE(voice.loopType == VTSAMPLE_LOOP_NONE || voice.loopStart < voice.loopEnd);
        EXPECT_EQ((voice.loopEnd - voice.loopStart) % each.channels, 0);
        for (const float value : rig.Frames(20000)) ASSERT_TRUE(std::isfinite(value));
    }
}

TEST(Instruments, AloneInACellRestartItsEnvelopesOrTakeUpTheKey) {
    for (const bool cutoffEnvelope : {false, true}) {
        SongBuilder song;
        song.Tempo(8).SineInstrument(0, 640, kLoop).SineInstrument(1, 640, kLoop);
        song.Note(0, 0, 48, 1, 20, kNoVolume).Note(1, 0, kNoNote, 1).Note(2, 0, kNoNote, 2).Note(0, 1, kNoNote, 2);
        Instrument& instrument = *song.Edit().GetInstrument(0);
        instrument.volumeEnvelopes[0].enabled = 1;
        instrument.cutoffEnvelopes[0].enabled = instrument.cutoffEnvelopes[1].enabled = cutoffEnvelope;
        instrument.cutoff = 7000;
        PlayerRig rig(song.Build());
        rig.ToRow(0);
        rig.Frames(300);
        rig.Ticks(7);
        const float* before = rig.FirstVoice().position;
        EXPECT_GT(rig.Track(0).volumeEnvelope.position, 7.0f);
        rig.Ticks(1);
        EXPECT_EQ(rig.FirstVoice().position, before);
        EXPECT_LT(rig.Track(0).volumeEnvelope.position, 3.0f);
        EXPECT_EQ(rig.Track(0).noteVolume, 128);
        EXPECT_EQ(rig.Track(0).cutoff, cutoffEnvelope ? 3200.0f : 7000.0f);
        rig.Ticks(8);
        EXPECT_EQ(rig.Track(0).lastInstrument, 1);
        EXPECT_EQ(rig.FirstVoice().note, 48);
        EXPECT_EQ(rig.FirstVoice().position, rig.FirstVoice().start);
        EXPECT_FALSE(rig.Track(1).active) << "nothing was played there";
        rig.player.SetSong(nullptr);              // a song that goes takes its sound along
        EXPECT_FALSE(rig.Track(0).active);
    }
}

TEST(Mutes, SilenceTracksAndInstruments) {
    PlayerRig rig(OneSine().Note(0, 0, 48, 1).Note(0, 1, 48, 1).Note(1, 0, 52, 1).Build());
    rig.ToRow(0);
    rig.player.SetChannelMuted(0, true);
    rig.player.MuteInstrument(0, true);
    rig.player.Render(10);
    EXPECT_TRUE(rig.Track(1).instrumentMuted);
    EXPECT_TRUE(rig.Track(1).active);
    rig.Ticks(2);
    EXPECT_FALSE(rig.Track(0).active);
    rig.player.UnmuteInstruments();
    rig.player.Render(10);
    EXPECT_FALSE(rig.Track(1).instrumentMuted);
}

TEST(JamQueue, StartsNotesInTheTickGridAndHoldsThirtyTwo) {
    PlayerRig rig(OneSine().Build());
    rig.player.PerformStop(0, 1);
    EXPECT_EQ(rig.player.QueueNoteOn(60, 0, 7, 255), 7);
    rig.Ticks(1);
    EXPECT_EQ(rig.FirstVoice(7).note, 60);
    EXPECT_GT(rig.FirstVoice(7).rampLeft, 0.0f);
    const int first = rig.player.QueueNote(60, 0, 100);
    EXPECT_EQ(rig.player.QueueNote(60, 0, 100), (first + 1) % kTracks);
    rig.player.QueueKeyOff(7);
    rig.Ticks(1);
    EXPECT_FALSE(rig.Track(7).active);
    for (int i = 0; i < 32; ++i) rig.player.QueueNoteOn(60, 0, 9, 100);   // each ends the one before in its first tick
    EXPECT_EQ(rig.player.QueueNoteOn(60, 0, 9, 100), 0);
    rig.Ticks(1);
    for (const float value : rig.Frames(400)) EXPECT_LT(std::abs(value), 16384.0f);
}

TEST(CutoffLfo, StepsOnceForEachNote) {
    struct { int wave; float first, second; } const cases[] = {
        {0, 5000, 5000}, {1, 4000, 5000}, {2, 4000, 6000}, {3, 6000, 5500}, {4, 6000, 4500}};
    for (const auto& each : cases) {
        SongBuilder song = OneSine();
        Instrument& instrument = *song.Note(0, 0, 48, 1).Note(1, 0, 48, 1).Edit().GetInstrument(0);
        instrument.cutoffLfoWave = each.wave;
        instrument.cutoffLfoDepth = 1000;
        instrument.cutoffLfoPeriod = 4;
        PlayerRig rig(song.Build());
        rig.ToRow(0);
        EXPECT_NEAR(rig.Track(0).cutoff, each.first, 1.0f) << each.wave;
        rig.Ticks(2);
        EXPECT_NEAR(rig.Track(0).cutoff, each.second, each.wave == 2 ? 2000.0f : 1.0f) << each.wave;
    }
}

}  // namespace
}  // namespace vonta
