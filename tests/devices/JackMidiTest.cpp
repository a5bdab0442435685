// MIDI through a real JACK server, which each test starts for itself. Without jackd these tests fail.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "audio/CreateDevice.h"
#include "engine/SndPlayer.h"
#include "formats/Loaders.h"
#include "midi/NoteMessage.h"
#include "midi/OpenMidi.h"
#include "tests/devices/JackPeer.h"
#include "tests/support/JackRecorder.h"
#include "tests/support/JackServerProcess.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RunVonta.h"
#include "tests/support/SongBuilder.h"

namespace vonta {
namespace {

using test::Await;
using Messages = std::vector<std::uint32_t>;

// Stands before an output and notes when notes are sent and when the output is flushed. Audio thread; read after it.
class WatchedOutput final : public DrvMIDIOUT {
public:
    explicit WatchedOutput(std::unique_ptr<DrvMIDIOUT> output) : output_(std::move(output)) {
        noteTimes.reserve(1000);
        flushes.reserve(10000);
    }
    void NoteOn(int note, int channel, int velocity, std::uint32_t time) override {
        noteTimes.push_back(time);
        output_->NoteOn(note, channel, velocity, time);
    }
    void NoteOff(int note, int channel, std::uint32_t time) override { output_->NoteOff(note, channel, time); }
    void ProgramChange(int channel, int program, std::uint32_t time) override { output_->ProgramChange(channel, program, time); }
    void ControlChange(int channel, int controller, int value, std::uint32_t time) override {
        output_->ControlChange(channel, controller, value, time);
    }
    void Flush(std::uint32_t now) override {
        if (flushes.size() < flushes.capacity()) flushes.push_back(now);
        output_->Flush(now);
    }
    void SetDelay(std::uint32_t ms) override { output_->SetDelay(ms); }

    std::vector<std::uint32_t> noteTimes, flushes;

private:
    std::unique_ptr<DrvMIDIOUT> output_;
};

// Our program: a player in real time with the system's MIDI.
struct Program {
    SndPlayer player{CreateDevice, OpenSystemMidi};
    Program() { EXPECT_EQ(player.StartSound(nullptr, static_cast<int>(DeviceKind::NoSound), 0, nullptr, 44100), 0); }
    void Play(std::unique_ptr<Song> song) {
        player.SetSong(std::move(song));
        player.SetMixerOn(true);
        player.Play(0);
    }
};

std::unique_ptr<Song> FourNotes() {
    SongBuilder song;
    song.Channels(4).Tempo(6).Bpm(250).Pattern(0, 64).SineInstrument(0, 1024, {VTSAMPLE_LOOP_FORDWARD, 0, 1024});
    song.Edit().GetInstrument(0)->midi = {.enabled = 1, .channel = 2, .program = 5, .volume = 90, .pan = 33,
                                          .bank = 0x0123, .sendVolume = 1, .sendPan = 1, .sendBank = 1};
    song.Edit().GetInstrument(0)->midi.controllers[12] = 74;
    for (int row = 0; row < 4; ++row) song.Note(2 * row, 0, 60 + row, 1, 100);
    song.Effect(7, 0, 12, 0x20).Note(8, 0, kNoteOff);
    return song.Build();
}

const Messages kFourNotes{
    0x2320B2, 0x0100B2, 0x05C2, 0x5A07B2, 0x2108B2, 0x643C92,          // bank, program, volume, pan, note
    0x003C82, 0x643D92, 0x003D82, 0x643E92, 0x003E82, 0x643F92, 0x204AB2, 0x003F82};

TEST(JackMidiOut, ANoteOfAPatternArrivesAsItsBytesAtItsTimePlusTheDelayWithinOneBlock) {
    test::JackServerProcess server;
    for (const std::uint32_t delay : {0u, 100u}) {
        test::JackPeer peer;
        Program program;
        auto& port = program.player.GetMixer().midiOut[0];
        ASSERT_TRUE(port);
        auto owned = std::make_unique<WatchedOutput>(std::move(port));
        WatchedOutput& output = *owned;
        port = std::move(owned);
        output.SetDelay(delay);
        program.Play(FourNotes());
        ASSERT_TRUE(Await([&peer] { return peer.Count() >= kFourNotes.size(); }));
        program.player.SetMixerOn(false);
        ASSERT_EQ(peer.Messages(), kFourNotes);

        std::vector<std::uint32_t> arrivals;
        for (const test::Received& each : peer.All())
            if ((each.message & 0xF0) == 0x90) arrivals.push_back(each.time);
        ASSERT_EQ(output.noteTimes.size(), arrivals.size());
        for (std::size_t i = 0; i < arrivals.size(); ++i) {
            const std::uint32_t due = output.noteTimes[i] + delay;
            const auto block = std::find_if(output.flushes.begin(), output.flushes.end(),
                                            [due](std::uint32_t now) { return now >= due; });
            ASSERT_NE(block, output.flushes.end());
            EXPECT_GE(arrivals[i], due);
            EXPECT_LE(arrivals[i], *block + 50) << "left at the block of " << *block;   // the server's cycle and the machine
        }
    }
}

TEST(JackMidiIn, NotesSentInSound) {
    test::JackServerProcess server;
    test::JackPeer peer;
    Program program;
    SongBuilder song;
    song.Channels(4).SineInstrument(0, 1024, {VTSAMPLE_LOOP_FORDWARD, 0, 1024});
    program.Play(song.Build());
    ASSERT_TRUE(program.player.GetMixer().midiIn[0]);
    DrvMIDIIN& input = *program.player.GetMixer().midiIn[0];
    EXPECT_EQ(input.GetName(), "Peer:keys");

    std::uint32_t message = 0;
    const auto read = [&] { return Await([&] { return input.Read(&message) != 0; }); };
    peer.Press({0xF0, 1, 2, 3, 0xF7});                     // no short message: passes by
    peer.Press({0x93, 60, 100});
    ASSERT_TRUE(read());
    EXPECT_EQ(message, 0x643C93u);
    EXPECT_NE(input.GetLastTime(), 0u);
    const NoteMessage note = DecodeNote(message);
    ASSERT_EQ(note.kind, NoteMessage::Kind::On);
    program.player.QueueNoteOn(note.note, 0, 1, note.velocity);
    EXPECT_TRUE(Await([&program] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));    // let some blocks run between the looks
        const MixerPause pause(program.player);
        return program.player.GetChannel(1).Sounding();
    }));
    peer.Press({0x93, 60, 0});
    ASSERT_TRUE(read());
    EXPECT_EQ(DecodeNote(message).kind, NoteMessage::Kind::Off);
    EXPECT_EQ(input.Read(&message), 0);
}

// `vonta play` with a song beside it.
struct PlayedSong {
    explicit PlayedSong(SongBuilder& song) {
        DiskStream stream;
        EXPECT_TRUE(stream.Open(directory.File("song.vtm"), "wb"));
        EXPECT_EQ(SaveFile(&stream, SaveMode::Module, *song.Build(), {}), 0);
    }
    test::Program Play(const char* device, const char* option) const {
        return {{"play", "song.vtm", "--device", device, option, "0"}, directory.Path()};
    }
    TempDirectory directory;
};

TEST(JackMidiOut, PlaySendsNotesToThePortThatIsAskedForWhateverTheSongSaysAndLetsThemGoWhenItIsInterrupted) {
    test::JackServerProcess server;
    test::JackPeer peer;
    SongBuilder song;
    song.Pattern(0, 64).Tempo(30).SineInstrument(0, 1024);
    song.Edit().GetInstrument(0)->midi = {.enabled = 1, .device = 7, .channel = 2, .program = 5};
    const PlayedSong played(song.Note(0, 0, 60, 1, 100));
    test::Program program = played.Play("nosound", "--midi-out");
    ASSERT_TRUE(Await([&peer] { return peer.Count() >= 2; }));
    program.Interrupt();
    program.Wait();
    EXPECT_EQ(peer.Messages(), (Messages{0x05C2, 0x643C92, 0x003C82}));
    EXPECT_EQ(test::RunVonta({"play", "song.vtm", "--device", "nosound", "--midi-out", "3"}, played.directory.Path()).err,
              "vonta: no MIDI output 3 is there; 'vonta devices' lists them\n");
}

TEST(JackMidiIn, KeysPlayTheFirstInstrumentWhilePlayRuns) {
    test::JackServerProcess server;
    test::JackPeer peer;
    const PlayedSong played(SongBuilder().Tempo(30).SineInstrument(0, 1024, {VTSAMPLE_LOOP_FORDWARD, 0, 1024}));
    const test::Program program = played.Play("asio", "--midi-in");
    ASSERT_TRUE(Await([&peer] { return peer.PortsOf("Vonta Tracker").size() == 2; }));
    JackRecorder recorder({"Vonta Tracker:Output 1 left"}, 4800);
    ASSERT_EQ(recorder.Missing(), "");
    const auto peak = [&recorder] {
        recorder.Record(4800);
        return std::ranges::max(recorder.Track(0));
    };
    EXPECT_EQ(peak(), 0.0f);
    peer.Press({0x90, 60, 127});
    EXPECT_TRUE(Await([&] { return peak() > 0.01f; }));
    peer.Press({0x80, 60, 0});
    EXPECT_TRUE(Await([&] { return peak() == 0.0f; }));
}

TEST(JackMidi, DevicesListsThePorts) {
    test::JackServerProcess server;
    test::JackPeer peer;
    const std::string out = test::RunVonta({"devices"}, ".").out;
    EXPECT_NE(out.find("  midi-out       0  Peer:synth\n  midi-in        0  Peer:keys\n"), std::string::npos) << out;
}

TEST(JackMidi, TheStartOpensEveryPortUnderTheProgramsName) {
    test::JackServerProcess server;
    test::JackPeer peer;
    const LogCapture log;
    for (int start = 0; start < 2; ++start) {              // its own ports are no devices to it
        Program program;
        EXPECT_TRUE(log.Has("\t- Starting MIDI OUT\n"
                            "\t\t- MIDIOut started (0): Peer:synth\n"
                            "\t- Starting MIDI IN\n"
                            "\t\t- Trying to init MIDI In device: 0\n"
                            "\t\t\t- MIDI In Procedure Opened.\n"
                            "\t\t- MIDI In device (0) initialized\n"
                            "\t\t- MIDIIn started(0): Peer:keys\n"));
        EXPECT_FALSE(program.player.GetMixer().midiOut[1]);
        EXPECT_FALSE(program.player.GetMixer().midiIn[1]);
        ASSERT_TRUE(Await([&peer] { return peer.PortsOf("Vonta Tracker").size() == 2; }));   // the last start's are gone
        const auto ports = peer.PortsOf("Vonta Tracker");
        EXPECT_TRUE(ports[0].ends_with(":MIDI Out 0")) << ports[0];
        EXPECT_TRUE(ports[1].ends_with(":MIDI In 0")) << ports[1];
    }
    EXPECT_TRUE(log.Has("\t\t\t- MIDI In Procedure Closed.\n"));
    EXPECT_TRUE(Await([&peer] { return peer.PortsOf("Vonta Tracker").empty(); }));
    Program first;
    OpenSystemMidi(first.player.GetMixer().midiOut, first.player.GetMixer().midiIn);
    EXPECT_FALSE(first.player.GetMixer().midiOut[1]);
}

TEST(JackMidi, AServerThatGoesAwayStopsNothing) {
    test::JackServerProcess server;
    auto peer = std::make_unique<test::JackPeer>();
    const auto start = std::chrono::steady_clock::now();
    {
        Program program;
        DrvMIDIOUT& output = *program.player.GetMixer().midiOut[0];
        output.NoteOn(60, 0, 100, 0);
        output.Flush(0);
        ASSERT_TRUE(Await([&peer] { return peer->Count() == 1; }));
        server.Stop();
        for (int i = 0; i < 200; ++i) {
            for (int note = 0; note < 100; ++note) output.NoteOn(note, 0, 100, 0);
            output.Flush(0);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(15));
}

TEST(JackMidi, WithoutAServerThereAreNoDevicesOfItAndNothingIsComplainedOf) {
    setenv("JACK_DEFAULT_SERVER", "vonta-test-no-such-server", 1);
    testing::internal::CaptureStderr();
    {
        Program program;
        program.player.SetMixerOn(true);
        program.player.SetMixerOn(false);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    unsetenv("JACK_DEFAULT_SERVER");
}

}  // namespace
}  // namespace vonta
