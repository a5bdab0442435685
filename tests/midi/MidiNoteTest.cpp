// From the cells of a pattern to the messages that leave a port.
#include <gtest/gtest.h>

#include "midi/DrvMIDIOUTSystem.h"
#include "midi/OpenMidi.h"
#include "tests/support/LogCapture.h"
#include "tests/support/PlayerRig.h"
#include "tests/support/ScriptedMidi.h"
#include "tests/support/TestDevice.h"

namespace vonta {
namespace {

using Messages = std::vector<std::uint32_t>;

// Instrument 0 plays on MIDI channel 2 of output 0 and has no sample; a song of one tick a row, so that row n is
// performed by tick n + 1.
SongBuilder MidiSong() {
    SongBuilder song;
    song.Channels(4).Tempo(1);
    auto instrument = std::make_unique<Instrument>();
    instrument->midi = {.enabled = 1, .channel = 2, .program = 5};
    song.Instrument(0, std::move(instrument));
    return song;
}

MidiSettings& Midi(SongBuilder& song, int instrument = 0) { return song.Edit().GetInstrument(instrument)->midi; }

// A player with two scripted outputs.
struct MidiRig {
    explicit MidiRig(std::unique_ptr<Song> song) : player(std::move(song)) {
        for (const int port : {0, 1}) {
            midi->outputs.push_back({.name = "Synth"});
            auto output = std::make_unique<DrvMIDIOUTSystem>(midi);
            output->Open(port);
            player.player.GetMixer().midiOut[static_cast<std::size_t>(port)] = std::move(output);
        }
    }
    Messages Ticks(int count, int port = 0) {
        player.Ticks(count);
        for (const int each : {0, 1}) {
            midi->outputs[static_cast<std::size_t>(each)].sent.clear();
            player.player.GetMixer().midiOut[static_cast<std::size_t>(each)]->Flush(0xFFFFFFFE);
        }
        return midi->outputs[static_cast<std::size_t>(port)].sent;
    }
    std::shared_ptr<test::ScriptedMidi> midi = std::make_shared<test::ScriptedMidi>();
    PlayerRig player;
};

TEST(MidiNote, SendsItsSettingsOnceAndThenOnlyWhatChanges) {
    auto song = MidiSong();
    Midi(song) = {.enabled = 1, .channel = 2, .program = 5, .volume = 90, .pan = 33, .bank = 0x0123,
                  .sendVolume = 1, .sendPan = 1, .sendBank = 1};
    song.Note(0, 0, 60, 1, 100).Note(1, 1, 62, 1, 100).Note(2, 2, 64, 1, 100);
    MidiRig rig(song.Build());
    EXPECT_EQ(rig.Ticks(1), (Messages{0x2320B2, 0x0100B2, 0x05C2, 0x5A07B2, 0x2108B2, 0x643C92}));
    EXPECT_EQ(rig.Ticks(1), Messages{0x643E92});
    rig.player.player.GetSong().GetInstrument(0)->midi.volume = 91;
    EXPECT_EQ(rig.Ticks(1), (Messages{0x5B07B2, 0x644092}));
}

TEST(MidiNote, TheCacheIsOneForEachChannelOfAnOutput) {
    auto song = MidiSong();
    for (int i = 1; i <= 3; ++i) {
        song.Instrument(i, std::make_unique<Instrument>());
        Midi(song, i) = Midi(song);
    }
    Midi(song, 1).program = 6;                            // same channel
    Midi(song, 2).channel = 3;
    Midi(song, 3).device = 1;
    for (int row = 0; row < 5; ++row) song.Note(row, row % 4, 60, 1 + row % 4, 100);
    MidiRig rig(song.Build());
    EXPECT_EQ(rig.Ticks(1), (Messages{0x05C2, 0x643C92}));
    EXPECT_EQ(rig.Ticks(1), (Messages{0x06C2, 0x643C92}));
    EXPECT_EQ(rig.Ticks(1), (Messages{0x05C3, 0x643C93}));
    EXPECT_EQ(rig.Ticks(1, 1), (Messages{0x05C2, 0x643C92}));
    EXPECT_EQ(rig.Ticks(1), (Messages{0x003C82, 0x05C2, 0x643C92}));   // the channel last had program 6
}

TEST(MidiNote, PitchAndVelocityComeFromCellInstrumentAndSample) {
    struct Case {
        const char* what;
        int note, volume;
        std::int8_t midiTranspose;
        int sampleVolume;                                 // below 0: no sample
        std::uint32_t message;
    };
    for (const auto& c : {
             Case{"as in the cell", 60, 77, 0, -1, 0x4D3C92}, {"volume 128 is full", 60, 128, 0, -1, 0x7F3C92},
             {"no volume, no sample", 60, kNoVolume, 0, -1, 0x7F3C92}, {"the sample's volume", 60, kNoVolume, 0, 40, 0x283C92},
             {"the sample's volume is capped", 60, kNoVolume, 0, 128, 0x7F3C92}, {"volume 0", 60, 0, 0, -1, 0x003C92},
             {"transposed", 60, 100, 12, -1, 0x644892}, {"not below 0", 3, 100, -12, -1, 0x640092},
             {"not above 127", 90, 100, 60, -1, 0x647F92},
         }) {
        auto song = MidiSong();
        Midi(song).transpose = c.midiTranspose;
        if (c.sampleVolume >= 0) {
            Instrument& instrument = *song.Edit().GetInstrument(0);
            instrument.AddSample(MakeSample(SineWave(64)));
            instrument.MapAllKeys();
            instrument.GetSample(0)->volume = static_cast<std::uint8_t>(c.sampleVolume);
        }
        song.Note(0, 0, c.note, 1, c.volume);
        MidiRig rig(song.Build());
        EXPECT_EQ(rig.Ticks(1), (Messages{0x05C2, c.message})) << c.what;
    }
}

TEST(MidiNote, TheSamplesAndTheInstrumentsTransposeCountWithASampleOnly) {
    for (const bool sample : {false, true}) {
        auto song = MidiSong();
        Instrument& instrument = *song.Edit().GetInstrument(0);
        instrument.transpose = 3;
        if (sample) {
            instrument.AddSample(MakeSample(SineWave(64)));
            instrument.MapAllKeys();
            instrument.GetSample(0)->toneRel = 4;
        }
        song.Note(0, 0, 60, 1, 100);
        MidiRig rig(song.Build());
        EXPECT_EQ(rig.Ticks(1).back(), sample ? 0x644392u : 0x643C92u);
    }
}

TEST(MidiNote, ANoteEndsByTheNextOneAKeyOffAMuteAndAStop) {
    auto song = MidiSong();
    song.Note(0, 0, 60, 1, 100).Note(1, 0, 62, 1, 100).Note(2, 0, kNoteOff).Note(3, 0, 64, 1, 100);
    MidiRig rig(song.Build());
    rig.Ticks(1);
    EXPECT_EQ(rig.Ticks(1), (Messages{0x003C82, 0x643E92}));
    EXPECT_EQ(rig.Ticks(1), Messages{0x003E82});
    EXPECT_EQ(rig.Ticks(1), Messages{0x644092});
    rig.player.player.PerformStop(0, 1);
    EXPECT_EQ(rig.Ticks(0), Messages{0x004082});
    EXPECT_EQ(rig.Ticks(3), Messages{});
}

TEST(MidiNote, AnEffectWithAControllerSendsItInsteadOfRunning) {
    auto song = MidiSong();
    Midi(song).controllers[12] = 74;
    song.Note(0, 0, 60, 1, 100).Effect(1, 0, 12, 0x20).Effect(2, 0, 12, 0xFF).Effect(3, 0, 10, 0x0F)
        .Note(4, 0, kNoteOff).Effect(5, 0, 12, 0x20);
    MidiRig rig(song.Build());
    rig.Ticks(1);
    EXPECT_EQ(rig.Ticks(1), Messages{0x204AB2});
    EXPECT_EQ(rig.Ticks(1), Messages{0x7F4AB2});          // a data byte is at most 127
    EXPECT_EQ(rig.Ticks(1), Messages{});                  // no controller for this effect
    rig.Ticks(1);
    EXPECT_EQ(rig.Ticks(1), Messages{});                  // no note, no controller
}

TEST(MidiNote, AnOutputThatDoesNotExistSwallowsTheNote) {
    auto song = MidiSong();
    Midi(song).device = 100;
    song.Note(0, 0, 60, 1, 100).Note(1, 0, 62, 1, 100);
    MidiRig rig(song.Build());
    EXPECT_EQ(rig.Ticks(2), Messages{});
}

// The lines of a start, from the sound device's to the MIDI inputs'.
TEST(MidiStart, OpensOutputsAndThenInputsBehindTheSoundDevice) {
    const auto opener = [](MidiOutTable outputs, MidiInTable inputs) {
        auto midi = std::make_shared<test::ScriptedMidi>();
        midi->outputs.push_back({.name = "Synth"});
        midi->inputs.push_back({.name = "Keys"});
        OpenMidi(midi, outputs, inputs);
    };
    SndPlayer player(nullptr, opener);
    const LogCapture log;
    ASSERT_EQ(player.StartSound(nullptr, 2, 0, nullptr, 44100, std::make_unique<TestDevice>()), 0);
    EXPECT_TRUE(log.Has("\t- nosound started\n\t- Starting MIDI OUT\n\t\t- MIDIOut started (0): Synth\n"
                        "\t- Starting MIDI IN\n\t\t- Trying to init MIDI In device: 0\n"));
    EXPECT_EQ(player.GetMixer().midiIn[0]->GetName(), "Keys");
    EXPECT_FALSE(player.GetMixer().midiOut[1]);
}

TEST(MidiNote, OfAnInstrumentThatLeavesIsLetGoAlone) {
    auto song = MidiSong();
    song.Instrument(1, std::make_unique<Instrument>());
    Midi(song, 1) = Midi(song);
    Midi(song, 1).channel = 3;
    song.Note(0, 0, 60, 1, 100).Note(0, 1, 62, 2, 100);
    MidiRig rig(song.Build());
    rig.Ticks(1);
    rig.player.player.StopInstrument(0);
    EXPECT_EQ(rig.Ticks(0), Messages{0x003C82});
    EXPECT_EQ(rig.player.Track(1).midi.midiActive, 1);
}

TEST(MidiNote, IsLetGoWhereverItsTrackIsEnded) {
    struct { const char* name; void (*end)(SndPlayer& player); } const cases[] = {
        {"a killed channel", [](SndPlayer& player) { player.KillChannel(0); }},
        {"the song from its beginning", [](SndPlayer& player) { player.PerformPlay(0); }},
        {"a host's jump", [](SndPlayer& player) { player.SeekToTick(0); }},
        {"a muted track", [](SndPlayer& player) { player.SetChannelMuted(0, true); player.DoTick(); }},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        MidiRig rig(MidiSong().Note(0, 0, 60, 1, 100).Build());
        rig.Ticks(1);
        each.end(rig.player.player);
        EXPECT_EQ(rig.Ticks(0), Messages{0x003C82});
    }
}

TEST(MidiNote, WithoutAnInstrumentNumberIsAsLoudAsTheOneBeforeAndNeverANoteOff) {
    auto song = MidiSong();
    song.Note(0, 0, 60, 1).Note(1, 0, 62).Note(2, 0, 64, 1, 50).Note(3, 0, 65).Volume(4, 0, 0).Note(5, 0, 67);
    MidiRig rig(song.Build());
    EXPECT_EQ(rig.Ticks(1).back(), 0x7F3C92u);
    EXPECT_EQ(rig.Ticks(1).back(), 0x7F3E92u);
    EXPECT_EQ(rig.Ticks(1).back(), 0x324092u);
    EXPECT_EQ(rig.Ticks(1).back(), 0x324192u);
    rig.Ticks(1);
    EXPECT_EQ(rig.Ticks(1).back(), 0x014392u);
}

}  // namespace
}  // namespace vonta
