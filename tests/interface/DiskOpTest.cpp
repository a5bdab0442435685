#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <vector>

#include "tests/support/BuiltPacks.h"
#include "tests/support/DiskRig.h"

namespace vonta {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

Names NamesOf(const DiskList& list) {
    Names names;
    for (int row = 0; row < list.Count(); ++row)
        names.push_back((list.At(row).isDirectory ? "/" : "") + list.At(row).name);
    return names;
}

TEST(DiskList, ShowsTheFilesOfAKindAndAllOnDemand) {
    TempDirectory temp;
    for (const char* name : {"b.XM", "a.mod", "c.vtm", "i.vti", "i.xi", "i.sf2", "i.AKP", "s.wav", "s.raw", "p.dll",
                             "p.so", "k.vts", ".hidden.xm", "xm", ".wav"})
        temp.Write(name, "12345");
    fs::create_directory(temp.Path() / "Zoo.xm");
    fs::create_directory(temp.Path() / ".git");
    ASSERT_EQ(::mkfifo(temp.File("pipe.xm").c_str(), 0600), 0);   // whoever opens it waits for ever
    const struct { FileKind kind; Names rows; } cases[] = {
        {FileKind::Song, {"/..", "/Zoo.xm", "a.mod", "b.XM", "c.vtm"}},
        {FileKind::Instrument, {"/..", "/Zoo.xm", "i.AKP", "i.sf2", "i.vti", "i.xi"}},
        {FileKind::Sample, {"/..", "/Zoo.xm", "s.raw", "s.wav"}},
        {FileKind::Effect, {"/..", "/Zoo.xm", "p.dll", "p.so"}},
        {FileKind::Skin, {"/Zoo.xm", "k.vts"}},
    };
    DiskList list;
    for (const auto& [kind, rows] : cases) {
        EXPECT_TRUE(list.Read(temp.Path(), kind, false));
        EXPECT_EQ(NamesOf(list), rows) << static_cast<int>(kind);
    }
    EXPECT_EQ(list.At(1).size, 5u);
    EXPECT_TRUE(list.Read(temp.Path(), FileKind::Skin, true));
    EXPECT_EQ(list.Count(), 17);
    EXPECT_FALSE(list.IsCut());
    EXPECT_FALSE(list.Read(temp.File("nowhere"), FileKind::Song, false));
    EXPECT_EQ(list.Count(), 0);
}

TEST(SaveNames, FollowTheFormatAndNeverLeadElsewhere) {
    const struct { const char *typed, *native, *xm, *mod, *wav, *instrument, *sample; } cases[] = {
        {"", "noname.vtm", "noname.xm", "noname.mod", "noname", "noname.vti", "noname.wav"},
        {"tune", "tune.vtm", "tune.xm", "tune.mod", "tune", "tune.vti", "tune.wav"},
        {"a.b.c", "a.vtm", "a.xm", "a.mod", "a", "a.b.c", "a.b.c"},
        {"../../x", "x.vtm", "x.xm", "x.mod", "x", "x.vti", "x.wav"},
        {".xm", "noname.vtm", "noname.xm", "noname.mod", "noname", ".xm", ".xm"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(SongFileName(row.typed, SaveFormat::Native), row.native);
        EXPECT_EQ(SongFileName(row.typed, SaveFormat::Xm), row.xm);
        EXPECT_EQ(SongFileName(row.typed, SaveFormat::Mod), row.mod);
        EXPECT_EQ(SongFileName(row.typed, SaveFormat::Wav), row.wav);
        EXPECT_EQ(InstrumentFileName(row.typed), row.instrument);
        EXPECT_EQ(SampleFileName(row.typed), row.sample);
    }
    EXPECT_EQ(ShortName("twenty-four characters.x"), "twenty-four characters.x");
    EXPECT_EQ(ShortName("an evening train through \xC3\xBC" "berlingen.vtm"), "an evening t...ingen.vtm");
}

std::unique_ptr<Song> SmallSong() {
    return SongBuilder().Channels(4).SineInstrument(0, 256).Order({0}).Pattern(0, 16).Note(0, 0, 48, 1, 64, 10, 3).Build();
}

TEST(DiskOp, ASongGoesOutAndComesBackThroughRealClicks) {
    const auto expected = SmallSong();
    for (const auto& [format, suffix] : {std::pair{kSaveNative, ".vtm"}, {kSaveXm, ".xm"}}) {
        DiskRig rig(SmallSong());
        const std::string file = std::string("a phrase") + suffix;
        rig.state.m_szSongName = "a .vtm";       // what is typed goes before the suffix
        rig.Press(kDiskSave);
        rig.PressInSaveQuestion(kSaveName);
        rig.Type("phrase.old.x");
        rig.PressInSaveQuestion(format);
        rig.PressInSaveQuestion(kSaveOther);     // not offered: nothing changes
        rig.PressInSaveQuestion(kSaveGo);
        ASSERT_EQ(rig.directory.List(), (std::set<std::string>{file}));
        EXPECT_EQ(rig.state.m_szSongName, file);
        EXPECT_EQ(rig.state.m_bDialogOpen, format == kSaveXm) << rig.ui.QuestionText();   // which tells what it loses
        rig.ui.CloseQuestion();

        rig.state.NewSong();
        rig.Frame();
        ASSERT_EQ(rig.At(0, 0).note, kNoNote);
        ASSERT_TRUE(rig.ClickFile(file));
        EXPECT_EQ(rig.At(0, 0).note, kNoNote);   // the old song goes on until the next frame
        rig.Frame();
        EXPECT_EQ(rig.At(0, 0), expected->GetPattern(0)->Read(0, 0)) << suffix;
        ASSERT_NE(rig.state.CurrentSong().GetInstrument(0), nullptr);
        EXPECT_EQ(rig.state.CurrentSong().GetInstrument(0)->GetSample(0)->Count(), 256u);
    }
}

TEST(DiskOp, InstrumentsAndSamplesGoOutAndComeBack) {
    DiskRig rig(SmallSong());
    for (const auto& [kind, file] : {std::pair{FileKind::Instrument, "noname.vti"}, {FileKind::Sample, "noname.wav"}}) {
        rig.Press(kDiskKind + static_cast<int>(kind));
        rig.Disk().GoTo(rig.directory.Path());
        rig.Press(kDiskSave);
        rig.Frame();
        rig.state.SelectItem(kListInstruments, 5);
        ASSERT_TRUE(rig.ClickFile(file));
        rig.Frame();
        const Instrument* loaded = rig.state.CurrentSong().GetInstrument(4);
        ASSERT_NE(loaded, nullptr) << file;
        EXPECT_EQ(loaded->GetSample(0)->Count(), 256u) << file;
        rig.state.SelectItem(kListInstruments, 1);
    }
}

TEST(DiskOp, ReplacesAFileOnlyForAYesThatWasMeant) {
    DiskRig rig(SmallSong());
    rig.directory.Write("noname.vtm", "precious");
    const auto save = [&] { rig.Press(kDiskSave); rig.Tap(kKeyEnter); };
    save();
    EXPECT_EQ(rig.ui.QuestionText(), "Overwrite file??\nnoname.vtm");
    rig.Tap(kKeyEnter);                          // No stands first here
    EXPECT_FALSE(rig.state.m_bDialogOpen);
    EXPECT_EQ(rig.directory.Text("noname.vtm"), "precious");
    save();
    rig.Answer(kDialogYes);
    EXPECT_GT(rig.directory.Bytes("noname.vtm").size(), 1000u);
    EXPECT_FALSE(rig.state.m_bDialogOpen);
}

TEST(DiskOp, TellsInWordsWhatFailed) {
    DiskRig rig(SmallSong());
    for (const char* name : {"broken.vtm", "broken.sf2", "broken.vts", "odd.pdf"}) {
        rig.Disk().LoadDropped(rig.directory.Write(name, "Vonta"));
        rig.Frame();
        EXPECT_NE(rig.ui.QuestionText().find(std::string(name) + " was not loaded"), std::string::npos)
            << rig.ui.QuestionText();
        rig.ui.CloseQuestion();
    }
    EXPECT_EQ(rig.config.skin, Config{}.skin);
    EXPECT_EQ(rig.At(0, 0).note, 48);            // the song is as it was
    rig.directory.Write("effect.so", "");
    rig.Press(kDiskKind + static_cast<int>(FileKind::Effect));
    rig.Disk().GoTo(rig.directory.Path());
    rig.Frame();
    ASSERT_TRUE(rig.ClickFile("effect.so"));
    rig.Frame();
    EXPECT_NE(rig.ui.QuestionText().find("effect.so was not loaded"), std::string::npos);
    rig.ui.CloseQuestion();

    rig.Press(kDiskKind);
    rig.state.m_szSongName = "song";
    rig.Disk().GoTo(rig.directory.Path());
    rig.Frame();
    fs::remove_all(rig.directory.Path());
    rig.Disk().SaveSong();
    rig.Frame();
    EXPECT_NE(rig.ui.QuestionText().find("song.vtm was not saved"), std::string::npos) << rig.ui.QuestionText();
}

TEST(DiskOp, EachKindRemembersItsDirectory) {
    DiskRig rig;
    fs::create_directory(rig.directory.Path() / "sub");
    rig.Press(kDiskAll);                         // reads the list anew
    ASSERT_TRUE(rig.ClickFile("sub"));
    rig.Frame();
    const std::string sub = rig.directory.File("sub");
    EXPECT_EQ(rig.Disk().Directory(), sub);
    rig.Press(kDiskKind + 2);
    for (const int button : {kDiskRoot, kDiskUp, kDiskHome}) {
        rig.Press(button);
        rig.Frame();
        EXPECT_EQ(rig.Disk().Directory(), rig.directory.Path());   // which is the root here
    }
    rig.Press(kDiskKind);
    rig.Frame();
    EXPECT_EQ(rig.Disk().Directory(), sub);
    rig.Press(kDiskUp);
    rig.Frame();
    EXPECT_EQ(rig.Disk().Directory(), rig.directory.Path());
    rig.Press(kDiskKind + 7);
    rig.Press(kDiskHome);                        // the skins stay where they are
    rig.Frame();
    EXPECT_EQ(rig.Disk().Directory(), rig.directory.File("Skins"));
}

TEST(DiskOp, TheMainPanelListsWhatIsLoaded) {
    DiskRig rig;
    const struct { FileKind kind; int screen; ListKind list; } cases[] = {
        {FileKind::Synth, kScreenPattern, kListSynths},     {FileKind::Effect, kScreenPattern, kListEffects},
        {FileKind::Song, kScreenMultiFx, kListEffects},     {FileKind::Sample, kScreenMultiFx, kListInstruments},
        {FileKind::Instrument, kScreenSynth, kListInstruments}, {FileKind::Song, kScreenPattern, kListInstruments},
    };
    for (const auto& [kind, screen, list] : cases) {
        rig.ui.ShowScreen(screen);
        rig.Press(kDiskKind + static_cast<int>(kind));
        EXPECT_EQ(rig.ui.CurrentList(), list) << static_cast<int>(kind);
    }
    rig.Press(kDiskKind + static_cast<int>(FileKind::Synth));
    rig.Press(kDiskExit);
    EXPECT_EQ(rig.ui.CurrentList(), kListInstruments);
}

TEST(DiskOp, ListsWhatIsThereNowByWhateverRoadItOpens) {
    DiskRig rig;
    for (int i = 10; i < 40; ++i) rig.directory.Write("song " + std::to_string(i) + ".xm", "");
    rig.TapAction(144);                          // the key of the screen closes it, and opens it
    rig.TapAction(144);
    EXPECT_EQ(rig.Disk().Rows().Count(), 31);
    rig.Click(kDiskOpLayout, kDiskExit);
    rig.directory.Write("song 40.xm", "");
    rig.Click(431 + 40, 22 + 17 * 5 + 8);        // "Disc op" of the panel
    EXPECT_EQ(rig.Disk().Rows().Count(), 32);

    rig.MouseTo(230, 7 + 5);
    rig.input.OnWheel(-2);                       // a row a notch
    rig.Frame();
    rig.ClickFile("song 11.xm", true);           // as if the list stood at its top: two rows above what is there
    EXPECT_EQ(rig.state.m_szSongName, "song 13.xm");
}

TEST(DiskOp, ShowsTheWholeNameUnderTheMouse) {
    DiskRig rig({}, OpenBuiltPacks());
    for (const char* take : {"1", "2"}) rig.directory.Write(std::string("a rather long name of a recording, take ") + take + ".xm", "");
    rig.directory.Write("short.xm", "");
    rig.Press(kDiskAll);
    const auto rows = [&](int x, int y) {        // of the first five, while the mouse is there
        rig.MouseTo(x, y);
        std::vector<std::uint32_t> pixels;
        for (int py = 7; py < 7 + 5 * kDiskRowHeight; ++py)
            for (int px = 208; px < 490; ++px) pixels.push_back(rig.display.PixelAt(px, py));
        return pixels;
    };
    const auto plain = rows(600, 400), first = rows(300, 7 + 14 + 5), second = rows(300, 7 + 28 + 5);
    EXPECT_NE(first, plain);
    EXPECT_NE(first, second);
    EXPECT_EQ(rows(300, 7 + 42 + 5), plain);     // which its row shows whole
}

TEST(DiskOp, AClickPastTheListsEndOrLetGoElsewhereDoesNothing) {
    DiskRig rig;
    rig.directory.Write("a.xm", "x");
    rig.directory.Write("b.xm", "x");
    rig.Disk().GoTo(rig.directory.Path());
    rig.Frame();
    rig.Click(230, 200);
    rig.MouseTo(230, 7 + 14 + 5);
    rig.MouseTo(230, 7 + 14 + 5, true);
    rig.MouseTo(230, 7 + 28 + 5, true);
    rig.MouseTo(230, 7 + 28 + 5);
    EXPECT_FALSE(rig.state.m_bDialogOpen);      // which would tell that there is no song in them
    ASSERT_TRUE(rig.ClickFile("b.xm", true));    // marks it, for the buttons
    rig.Press(kDiskDelete);
    rig.Answer(kDialogYes);
    EXPECT_EQ(rig.directory.List(), (std::set<std::string>{"a.xm"}));
}

}  // namespace
}  // namespace vonta
