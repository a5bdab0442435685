// The player on its timer's thread while the interface paints and edits. What fails here fails under the thread checker.
#include <gtest/gtest.h>

#include <thread>

#include "audio/DrvNoSound.h"
#include "tests/support/InterfaceRig.h"

namespace vonta {
namespace {

std::unique_ptr<Song> Busy() {
    SongBuilder song;
    song.Channels(8).Tempo(2).Bpm(250).Order({0, 1, 0});
    for (int i = 0; i < 4; ++i) song.SineInstrument(i, 500, {VTSAMPLE_LOOP_FORDWARD, 0, 500});
    for (int row = 0; row < 64; ++row)
        for (int track = 0; track < 8; ++track) song.Note(row, track, 40 + row % 24, 1 + track % 4, 64, row % 21, row);
    return song.Build();
}

TEST(Threads, TheInterfacePaintsAndEditsWhatIsBeingPlayed) {
    InterfaceRig rig(Busy());
    ASSERT_EQ(rig.player.StartSound(nullptr, static_cast<int>(DeviceKind::NoSound), 0, nullptr, 44100,
                                    std::make_unique<DrvNoSound>()), 0);
    rig.device = nullptr;
    rig.player.SetSong(Busy());
    rig.player.SetMixerOn(true);
    TrackerState& state = rig.state;
    using Operation = void (*)(TrackerState&);
    const Operation operations[] = {
        [](TrackerState& s) { s.EnterNoteOff(); s.InsertLine(); s.DeleteBack(); },
        [](TrackerState& s) { s.ExpandPattern(); s.ShrinkPattern(); s.ChangeRows(-3); },
        [](TrackerState& s) { s.CopyPattern(); s.ChangeShownPattern(1); s.PastePattern(); },
        [](TrackerState& s) { s.Transpose(Scope::Song, false, 1); s.ChangeChannels(2); },
        [](TrackerState& s) { s.InsertPosition(); s.ChangePosition(1); s.DeletePosition(); s.ChangeChannels(-2); },
        [](TrackerState& s) { s.ChangeBpm(3); s.ChangeTempo(1); s.ToggleMute(2); s.ToggleSoloOf(1); s.PlayRow(); },
        [](TrackerState& s) { s.SelectItem(kListInstruments, 2); s.CopyInstrument(); s.ToggleSolo(); },
        [](TrackerState& s) { s.ExchangeInstruments(); s.ExchangeSamples(); s.EnsureSample(6, 2); },
        [](TrackerState& s) { s.DeleteSample(); s.DeleteInstrument(); s.ToggleSoloChannel(); },
        [](TrackerState& s) { s.ClearEffects(); s.ClearPatterns(); },
        [](TrackerState& s) { s.requests.song.object = Busy(); s.ClearInstruments(); },
        [](TrackerState& s) { s.NewSong(); },
        [](TrackerState& s) { while (s.Undo()) {} s.Redo(); s.Redo(); },
        [](TrackerState& s) { while (s.Redo()) {} s.Undo(); s.Transpose(Scope::Pattern, false, 1); },
        [](TrackerState& s) { s.requests.song.object = Busy(); s.Play(0, true); }};
    rig.player.Play(0);
    for (int turn = 0; turn < 6 * static_cast<int>(std::size(operations)); ++turn) {
        operations[static_cast<std::size_t>(turn) % std::size(operations)](state);
        rig.now += 20;
        rig.ui.OnNote(40 + turn % 20, false, 100);
        rig.ui.PollInput();
        rig.ui.PollMouse();
        rig.ui.Paint();
        std::this_thread::sleep_for(std::chrono::milliseconds(4));
    }
    EXPECT_TRUE(rig.player.IsPlaying());
    rig.player.SetMixerOn(false);
    EXPECT_EQ(inCallback, 0);
}

}  // namespace
}  // namespace vonta
