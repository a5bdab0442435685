#include <gtest/gtest.h>

#include <functional>

#include "formats/Loaders.h"
#include "tests/support/DiskRig.h"

namespace vonta {
namespace {

constexpr int kKeyC = kKeyA + 2, kKeyD = kKeyA + 3, kKeyS = kKeyA + 'S' - 'A', kKeyY = kKeyA + 'Y' - 'A';

std::unique_ptr<Song> SmallSong() { return SongBuilder().SineInstrument(0, 256).Note(0, 0, 48, 1).Build(); }

// A song with its own file, "own.vtm", beside another one.
struct SongRig : DiskRig {
    SongRig() : DiskRig(SmallSong()) {
        state.m_szSongName = "other";
        Disk().SaveSong();
        Frame();
        state.m_szSongName = "own";
        Disk().SaveSong();
        Frame();
        Frame();
    }
    void Change() { state.EnterNoteOff(); state.pending.m_bEditMode = false; Frame(); }
    void Frames() { for (int i = 0; i < 4; ++i) Frame(); }
    std::string FileOfSong() { return std::filesystem::path(player.GetSong().fileName).filename(); }
    Cell FirstCellOf(const std::string& name) {
        LoadReport report;
        bool unknown = false;
        const auto song = LoadModule(directory.File(name), unknown, report);
        return song ? song->GetPattern(0)->Read(0, 0) : Cell{};
    }
};

TEST(ChangedSong, IsAskedForBeforeAnythingTakesItsPlace) {
    const auto loaded = [](SongRig& rig) { return rig.FileOfSong() == "other.vtm"; };
    const struct {
        const char* name;
        std::function<void(SongRig&)> go;
        std::function<bool(SongRig&)> isGone;
        const char* question;
    } ways[] = {
        {"a click", [](SongRig& rig) { rig.ClickFile("other.vtm"); }, loaded, "Load other.vtm??\nown.vtm has changed"},
        {"a drop", [](SongRig& rig) { rig.Disk().LoadDropped(rig.directory.File("other.vtm")); }, loaded,
         "Load other.vtm??\nown.vtm has changed"},
        {"the Zap", [](SongRig& rig) { rig.ui.AskForZap(); rig.ui.AnswerChoice(0); },
         [](SongRig& rig) { return rig.player.GetSong().title == "NEWsong"; }, "Clear the whole song??\nown.vtm has changed"},
        {"leaving", [](SongRig& rig) { rig.ui.AskToQuit(); if (rig.ui.QuestionText().starts_with(' ')) rig.Tap(kKeyY); },
         [](SongRig& rig) { return rig.state.m_bQuit; }, "Gotta go??\nown.vtm has changed"},
    };
    for (const auto& way : ways) {
        SCOPED_TRACE(way.name);
        {
            SongRig rig;                         // nothing has changed
            way.go(rig);
            rig.Frames();
            EXPECT_TRUE(way.isGone(rig));
            EXPECT_FALSE(rig.state.m_bDialogOpen);
        }
        const struct { int key; bool goes, saves; } answers[] = {
            {kKeyC, false, false}, {kKeyD, true, false}, {kKeyS, true, true}, {kKeyEnter, true, true}, {kKeyY, false, false}};
        for (const auto& answer : answers) {
            SongRig rig;
            rig.Change();
            way.go(rig);
            rig.Frame();
            EXPECT_EQ(rig.ui.QuestionText(), way.question);
            rig.Tap(answer.key);
            rig.Frames();
            EXPECT_EQ(way.isGone(rig), answer.goes) << answer.key;
            EXPECT_EQ(rig.FirstCellOf("own.vtm").note, answer.saves ? kNoteOff : 48) << answer.key;
        }
    }
}

TEST(ChangedSong, WithoutAFileGetsANameBeforeItGoesAndStaysIfThereIsNone) {
    DiskRig rig(SmallSong());
    rig.state.MarkChanged();
    rig.ui.AskToQuit();
    rig.Tap(kKeyEnter);
    ASSERT_EQ(rig.ui.Mode(), DialogMode::Save);
    rig.ui.OnEscape();
    rig.Frame();
    EXPECT_FALSE(rig.state.m_bQuit || rig.state.m_bDialogOpen);

    rig.Disk().AskForSong();                     // a save of its own leads nowhere else
    rig.TypeKeys("first");
    rig.Tap(kKeyEnter);
    rig.Frame();
    EXPECT_FALSE(rig.state.m_bQuit || rig.state.IsChanged());

    rig.player.GetSong().SetFileName("");
    rig.state.MarkChanged();
    rig.ui.AskToQuit();
    rig.Tap(kKeyEnter);
    rig.TypeKeys("second");
    rig.Tap(kKeyEnter);
    EXPECT_TRUE(rig.state.m_bQuit);
    EXPECT_EQ(rig.directory.List(), (std::set<std::string>{"first.vtm", "second.vtm"}));
}

TEST(ChangedSong, ThatAForeignFormatCannotHoldIsStillNotSaved) {
    DiskRig rig(SongBuilder().SineInstrument(0, 64).Volume(0, 0, 99).Note(1, 40, 48, 1).Channels(64).Build());
    rig.state.MarkChanged();
    rig.Disk().Choice().m_nSaveFormat = SaveFormat::Xm;
    rig.Disk().SaveSong();
    rig.Frame();
    EXPECT_EQ(rig.ui.Mode(), DialogMode::Report);
    EXPECT_EQ(rig.ui.QuestionText(), "noname.xm is saved, but:");
    EXPECT_TRUE(rig.state.IsChanged());
    EXPECT_EQ(rig.player.GetSong().fileName, "");
}

TEST(SaveQuestion, TakesTheNameAtOnceAndNoKeyReachesThePattern) {
    DiskRig rig(SmallSong());
    rig.state.pending.m_bEditMode = true;
    rig.state.m_szSongName = "former.xm";
    rig.state.SetRow(8);
    rig.Press(kDiskSave);
    EXPECT_TRUE(rig.ui.IsTextSelected());
    EXPECT_EQ(rig.state.m_szSongName, "former");
    rig.ui.OnEscape();
    rig.Frame();
    EXPECT_FALSE(rig.state.m_bDialogOpen);
    EXPECT_EQ(rig.state.m_szSongName, "former.xm");

    rig.Press(kDiskSave);
    rig.TypeKeys("my");
    rig.PressInSaveQuestion(kSaveVorbis);        // a press of the mouse takes nothing from the name
    rig.PressInSaveQuestion(kSaveLossless);
    rig.TypeKeys("beat");
    rig.Key(kKeyEnter, true);
    rig.Type("\r");
    rig.TypeKeys("zxc");                         // in the same moment
    EXPECT_EQ(rig.directory.List(), (std::set<std::string>{"mybeat.vtm"}));
    EXPECT_EQ(rig.state.m_szSongName, "mybeat.vtm");
    EXPECT_EQ(rig.player.GetSong().fileName, rig.directory.File("mybeat.vtm"));
    for (int row = 1; row < 16; ++row) EXPECT_EQ(rig.At(row, 0), Cell{}) << row;
    rig.TypeKeys("z");
    EXPECT_NE(rig.At(8, 0), Cell{});             // now it is the pattern's
}

TEST(LoadReport, StandsInTheWindowAndKeepsTheDamagedOriginal) {
    SongRig rig;
    const std::string whole = rig.directory.Text("own.vtm");
    const std::string cut = whole.substr(0, whole.size() - 300);
    rig.directory.Write("cut.vtm", cut);
    rig.ui.Tell("an earlier message");
    rig.Disk().LoadDropped(rig.directory.File("cut.vtm"));
    rig.Frames();
    EXPECT_EQ(rig.ui.QuestionText(), "an earlier message");
    rig.Tap(kKeyEnter);
    EXPECT_EQ(rig.ui.Mode(), DialogMode::Report);
    EXPECT_EQ(rig.ui.QuestionText(), "cut.vtm was loaded, but:");
    rig.Tap(kKeyEnter);
    EXPECT_TRUE(rig.state.IsChanged());
    EXPECT_EQ(rig.player.GetSong().fileName, rig.directory.File("cut.vtm"));
    rig.Disk().SavePresent();
    rig.Tap(kKeyEnter);
    EXPECT_EQ(rig.ui.QuestionText(), "Overwrite file??\ncut.vtm");
    rig.Tap(kKeyEnter);
    EXPECT_EQ(rig.directory.Text("cut.vtm"), cut);
}

TEST(Backup, ComesBackAsASongThatIsNotSaved) {
    SongRig rig;
    std::filesystem::copy(rig.directory.File("own.vtm"), rig.directory.File("backup.vtm"));
    rig.Disk().LoadBackup(rig.directory.File("backup.vtm"));
    rig.Frames();
    EXPECT_TRUE(rig.state.IsChanged());
    rig.Disk().SavePresent();
    EXPECT_EQ(rig.ui.Mode(), DialogMode::Save);  // it is not saved over the backup
    EXPECT_EQ(rig.state.m_szSongName, "noname");
}

TEST(Escape, ClosesWhatIsOpenBeforeItAsksToLeave) {
    InterfaceRig rig;
    rig.Frame();
    const auto isPlain = [&] { return rig.ui.IsVisible(kScreenPattern) && rig.ui.IsVisible(kScreenScopes); };
    for (const int slot : {kScreenDiskOp, kScreenAdvancedEdit, kScreenAbout, kScreenConfig, kScreenHelp, kScreenMixer}) {
        rig.ui.ShowScreen(slot);
        EXPECT_FALSE(isPlain()) << slot;
        rig.ui.OnEscape();
        EXPECT_TRUE(isPlain()) << slot;
        EXPECT_FALSE(rig.state.m_bDialogOpen);
    }
    rig.ui.ShowScreen(kScreenMixer);
    rig.ui.ShowScreen(kScreenDiskOp);
    rig.ui.OnEscape();
    EXPECT_TRUE(rig.ui.IsVisible(kScreenMixer) && !rig.ui.IsVisible(kScreenDiskOp));
    rig.ui.OnEscape();
    rig.ui.OnEscape();
    EXPECT_TRUE(rig.state.m_bDialogOpen);
}

}  // namespace
}  // namespace vonta
