// The pattern editor by its keys: what a key leaves in the cells, and where the cursor stands after it.
#include <gtest/gtest.h>

#include "interface/view/CellText.h"
#include "interface/view/PatternView.h"
#include "tests/support/InterfaceRig.h"

namespace vonta {
namespace {

enum Action : int {
    kDelete = 9, kInsert, kBack, kCutTrack, kPasteTrack = 14, kCutPattern, kPastePattern = 17, kCutBlock, kCopyBlock, kPasteBlock,
    kNoteOffKey = 30, kDown = 95, kLeft, kRight, kDigit0, kClearCell = 135, kInsertLine = 138, kBackLine,
    kWriteMacro = 151, kReadMacro = 161,
};

std::string Notes(const Pattern& pattern, int track, int rows) {
    std::string text;
    for (int row = 0; row < rows; ++row) {
        const int note = pattern.Read(row, track).note;
        text += note == kNoNote ? "." : note == kNoteOff ? "=" : std::to_string(note);
    }
    return text;
}

// Notes 1 to 6 down the first two tracks of a pattern of six rows, in record mode.
struct Six {
    Six() : rig(Song()) {
        rig.state.pending.m_bEditMode = true;
        rig.Frame();
    }
    static std::unique_ptr<vonta::Song> Song() {
        SongBuilder builder;
        builder.SineInstrument(0, 256).Pattern(0, 6);
        for (int row = 0; row < 6; ++row) builder.Note(row, 0, row + 1, 1).Note(row, 1, row + 1, 2);
        return builder.Build();
    }
    std::string Notes(int track = 0) { return vonta::Notes(rig.state.ShownPattern(), track, rig.state.PatternRows()); }
    InterfaceRig rig;
};

TEST(Editing, TheCursorWalksTheColumnsThatTheLayoutShows) {
    struct Case { int visible; std::vector<int> columns; };
    const Case cases[] = {{4, {0, 1, 2, 3, 4, 5, 6, 7}}, {8, {0, 1, 2, 3, 4, 5, 6, 7}}, {16, {0, 1, 2, 5, 6, 7}},
                          {24, {0, 1, 2}}, {32, {0}}};
    for (const Case& c : cases) {
        InterfaceRig rig(SongBuilder().Channels(40).Build());
        EditValues& at = rig.state.pending;
        rig.state.SetVisibleChannels(c.visible);
        std::vector<std::pair<int, int>> places;
        for (int track = 0; track < 40; ++track)
            for (const int column : c.columns) places.emplace_back(track, column);
        for (const auto& [track, column] : places) {
            ASSERT_EQ(std::pair(at.m_nCursorChannel, at.m_nCursorColumn), std::pair(track, column)) << c.visible;
            ASSERT_GE(at.m_nCursorChannel, rig.state.frame.m_nFirstChannel);
            ASSERT_LT(at.m_nCursorChannel, at.m_nFirstChannel + c.visible) << c.visible;
            rig.TapAction(kRight);
        }
        EXPECT_EQ(std::pair(at.m_nCursorChannel, at.m_nFirstChannel), std::pair(0, 0));
        for (auto place = places.rbegin(); place != places.rend(); ++place) {
            rig.TapAction(kLeft);
            ASSERT_EQ(std::pair(at.m_nCursorChannel, at.m_nCursorColumn), *place) << c.visible;
        }
    }
}

TEST(Editing, AChangeOfChannelsKeepsTheCursorInTheSongAndTheView) {
    struct Case { int channels, visible, cursor, first, column; int wantCursor, wantFirst, wantColumn; };
    const Case cases[] = {{12, 8, 12, 4, 7, 0, 0, 0},    // beyond the song
                          {12, 8, 11, 9, 7, 11, 4, 7},   // the view beyond the song
                          {40, 16, 3, 10, 4, 10, 10, 2}, // left of the view, on a volume that is not shown
                          {40, 24, 5, 0, 6, 5, 0, 0},    // on an effect that is not shown
                          {40, 0, 39, 8, 1, 39, 8, 0}};  // as many as fit
    for (const Case& c : cases) {
        InterfaceRig rig(SongBuilder().Channels(c.channels).Build());
        rig.state.pending.m_nCursorChannel = c.cursor;
        rig.state.pending.m_nFirstChannel = c.first;
        rig.state.pending.m_nCursorColumn = c.column;
        rig.state.pending.m_nWantedChannels = c.visible;
        rig.Frame();
        const EditValues& at = rig.state.frame;
        EXPECT_EQ(std::tuple(at.m_nCursorChannel, at.m_nFirstChannel, at.m_nCursorColumn),
                  std::tuple(c.wantCursor, c.wantFirst, c.wantColumn)) << c.channels << ' ' << c.visible;
    }
}

TEST(Editing, ADigitChangesItsHalfOfTheField) {
    struct Case { int column, digit; Cell before, after; bool advances; };
    const Cell none;
    const Case cases[] = {
        {1, 15, {60, 0x00}, {60, 128}, true},   {1, 2, {60, 0x13}, {60, 0x23}, true},  {2, 5, {60, 0x80}, {60, 128}, true},
        {2, 5, {60, 0x10}, {60, 0x15}, true},   {3, 4, none, {128, 0, 0x40}, true},    {3, 8, {128, 0, 0x15}, {128, 0, 128}, true},
        {3, 9, {128, 0, 0x15}, {128, 0, 0x15}, false}, {3, 2, {128, 0, 128}, {128, 0, 0x20}, true},
        {4, 7, none, {128, 0, 7}, true},        {4, 7, {128, 0, 0x31}, {128, 0, 0x37}, true},
        {4, 7, {128, 0, 128}, {128, 0, 128}, false},   {4, 3, {128, 0, kVolumeCommand | 0x42}, {128, 0, 3}, true},
        {5, 11, {128, 0, 129, 1, 2}, {128, 0, 129, 11, 2}, true},
        {6, 15, {128, 0, 129, 1, 0x23}, {128, 0, 129, 1, 0xF3}, true},
        {7, 15, {128, 0, 129, 1, 0x23}, {128, 0, 129, 1, 0x2F}, true}};
    for (const Case& c : cases) {
        InterfaceRig rig;
        rig.state.SetVisibleChannels(8);
        rig.state.pending.m_nCursorColumn = c.column;
        rig.OnView().Write(0, 0, c.before);
        rig.TapAction(kDigit0 + c.digit);
        EXPECT_EQ(rig.At(0, 0), c.before) << "outside record mode";
        rig.state.pending.m_bEditMode = true;
        rig.TapAction(kDigit0 + c.digit);
        EXPECT_EQ(rig.At(0, 0), c.after) << c.column << ' ' << c.digit;
        EXPECT_EQ(rig.state.CursorRow(), c.advances ? 1 : 0) << c.column << ' ' << c.digit;
    }
}

TEST(Editing, KeysMoveTheCellsOfATrackOrOfAll) {
    struct Case { int action, row; const char *first, *second; int wantRow; };
    const Case cases[] = {
        {kInsert, 2, "12.345", "123456", 3},     {kInsert, 5, "12345.", "123456", 0},
        {kInsertLine, 0, ".12345", ".12345", 1}, {kBack, 3, "12456.", "123456", 2},
        {kBack, 0, "23456.", "123456", 5},       {kBack, 5, "12346.", "123456", 4},
        {kBackLine, 3, "12356.", "12356.", 2},   {kBackLine, 5, "12345.", "12345.", 4},
        {kDelete, 5, "12345.", "123456", 0},     {kClearCell, 1, "1.3456", "123456", 2},
        {kNoteOffKey, 1, "1=3456", "123456", 2}, {kCutTrack, 3, "......", "123456", 3},
        {kCutPattern, 3, "......", "......", 3}};
    for (const Case& c : cases) {
        Six six;
        six.rig.state.SetRow(c.row);
        six.rig.TapAction(c.action);
        EXPECT_EQ(six.Notes(0), c.first) << c.action << " at " << c.row;
        EXPECT_EQ(six.Notes(1), c.second) << c.action << " at " << c.row;
        EXPECT_EQ(six.rig.state.CursorRow(), c.wantRow) << c.action << " at " << c.row;
    }
}

TEST(Editing, AnAdvanceWrapsAtTheEndAndNoneWhileTheSongPlays) {
    Six six;
    six.rig.state.SetRow(5);
    six.rig.state.m_nCursorAdd = 0;
    six.rig.Tap(kKeyA + 25);
    EXPECT_EQ(six.rig.state.CursorRow(), 5);
    six.rig.state.m_nCursorAdd = 3;
    six.rig.Tap(kKeyA + 25);
    EXPECT_EQ(six.rig.state.CursorRow(), 2);
    six.rig.player.Play(kPlayPattern | kPlayFromHere);
    six.rig.Frame();
    const int row = six.rig.state.CursorRow();
    six.rig.Tap(kKeyA + 25);
    EXPECT_EQ(six.rig.state.CursorRow(), row);
}

TEST(Editing, ABlockIsCutOffAtTheEdgesAndWrapsNowhere) {
    Six six;
    TrackerState& state = six.rig.state;
    state.pending.selection = {true, 1, 9, 0, 4};          // from below the end upwards, to the left
    six.rig.TapAction(kCopyBlock);
    state.SetRow(5);
    six.rig.TapAction(kPasteBlock);
    EXPECT_EQ(six.Notes(0), "123455");
    state.pending.m_nCursorChannel = 1;
    state.SetRow(0);
    six.rig.TapAction(kPasteBlock);
    EXPECT_EQ(vonta::Notes(state.ShownPattern(), 2, 6), "56....");   // the second track as it was copied
    EXPECT_EQ(six.Notes(1), "56....");
    six.rig.TapAction(kCutBlock);
    EXPECT_EQ(six.Notes(0), "1234..");
    state.JumpToTrack(0);
    state.SelectionOff();
    six.rig.TapAction(kCutBlock);
    EXPECT_EQ(six.Notes(0), "1234..");
}

TEST(Editing, ClipboardsGoFromPatternToPatternAndAnEmptyOneClearsNothing) {
    Six six;
    six.rig.TapAction(kPasteTrack);
    six.rig.TapAction(kPastePattern);
    EXPECT_EQ(six.Notes(), "123456");
    six.rig.TapAction(kCutTrack);
    six.rig.state.ChangeShownPattern(3);                   // of which there is none yet
    six.rig.TapAction(kPasteTrack);
    EXPECT_EQ(vonta::Notes(*six.rig.state.CurrentSong().GetPattern(3), 0, 7), "123456.");
}

TEST(Editing, TypingOnANumberWithoutAPatternMakesIt) {
    InterfaceRig rig;
    rig.state.ChangeShownPattern(7);
    const Pattern* shared = &rig.state.ShownPattern();
    rig.Tap(kKeyA + 25);
    EXPECT_EQ(rig.state.CurrentSong().GetPattern(7), nullptr) << "not in record mode";
    rig.state.pending.m_bEditMode = true;
    rig.Tap(kKeyA + 25);
    const Pattern* own = rig.state.CurrentSong().GetPattern(7);
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(&rig.state.ShownPattern(), own);
    EXPECT_EQ(own->Read(0, 0).note, 48);
    EXPECT_EQ(shared->Read(0, 0), Cell{});
}

TEST(Editing, NotesGoRoundTheMarkedChannelsThatAreNotMuted) {
    struct Case { std::vector<int> marked, muted; std::uint32_t flags; bool fromMidi; std::vector<int> tracks; };
    const Case cases[] = {{{1, 3, 7}, {3}, kMultichannelEdit, false, {1, 7, 1, 7}},
                          {{3, 1}, {}, kMultichannelRecord, true, {3, 1, 3, 1}},
                          {{1}, {}, kMultichannelRecord, false, {0, 0}},    // another flag
                          {{}, {}, kMultichannelEdit, false, {0, 0}},
                          {{9, 40}, {}, kMultichannelEdit, false, {9, 9}},  // one is beyond the song
                          {{2}, {2}, kMultichannelEdit, false, {0}}};
    for (const Case& c : cases) {
        InterfaceRig rig;
        rig.config.flags |= c.flags | kRecordVelocity;
        rig.state.pending.m_bEditMode = true;
        for (const int channel : c.muted) rig.state.ToggleMute(channel);
        for (const int channel : c.marked) rig.state.MarkChannel(channel, true);
        std::vector<int> tracks;
        for (int row = 0; row < static_cast<int>(c.tracks.size()); ++row) {
            rig.ui.OnNote(50, c.fromMidi, 90);
            for (int track = 0; track < kTracks; ++track)
                if (rig.At(row, track) == Cell{50, 1, static_cast<std::uint16_t>(c.fromMidi ? 90 : kNoVolume), 0, 0})
                    tracks.push_back(track);
        }
        EXPECT_EQ(tracks, c.tracks) << c.flags << ' ' << c.marked.size();
    }
}

TEST(Editing, AMacroIsTheVolumeOrTheEffectByTheColumn) {
    Six six;
    InterfaceRig& rig = six.rig;
    rig.state.SetVisibleChannels(8);
    rig.OnView().Write(0, 0, {1, 1, 0x33, 4, 0x55});
    rig.TapAction(kReadMacro + 2);
    EXPECT_EQ(rig.environment.macros[2], (CommandMacro{4, 0x55, kNoVolume}));
    rig.state.pending.m_nCursorColumn = kColumnVolumeLow;
    rig.TapAction(kReadMacro + 2);
    EXPECT_EQ(rig.environment.macros[2], (CommandMacro{4, 0x55, 0x33}));
    EXPECT_EQ(rig.host.environmentSaves, 2);
    rig.state.SetRow(3);
    rig.TapAction(kWriteMacro + 2);
    EXPECT_EQ(rig.At(3, 0), (Cell{4, 1, 0x33, 0, 0}));
    rig.state.pending.m_nCursorColumn = kColumnInstrumentLow;
    rig.TapAction(kWriteMacro + 2);
    EXPECT_EQ(rig.At(4, 0), (Cell{5, 1, kNoVolume, 4, 0x55}));
}

TEST(Editing, KeysSelectWhatTheMouseSelects) {
    for (const int visible : {4, 8, 16, 24, 32}) {
        const PatternView& view = ViewOf(visible);
        InterfaceRig rig(SongBuilder().Channels(40).Build());
        rig.state.SetVisibleChannels(visible);
        for (int track = 0; track < visible; ++track) {
            rig.state.SetRow(20);
            rig.state.JumpToTrack(track);
            rig.state.SelectionOff();
            rig.Frame();
            rig.Modifiers(kMaskAlt, true);
            for (int i = 0; i < 3; ++i) rig.Tap(kKeyDown);
            rig.Modifiers(kMaskAlt, false);
            const Selection byKeys = rig.state.frame.selection;
            EXPECT_EQ(byKeys, (Selection{true, track, 20, track, 22})) << visible;
            EXPECT_EQ(rig.state.CursorRow(), 23);
            const int x = view.firstCell + track * view.width + view.width / 2, y = kViewTop + kCursorRowY + 4;
            rig.MouseTo(x, y - 3 * kRowHeight);
            rig.MouseTo(x, y - 3 * kRowHeight, true);
            rig.MouseTo(x, y - 3 * kRowHeight, true);
            rig.MouseTo(x, y - kRowHeight, true);
            rig.MouseTo(x, y - kRowHeight);
            EXPECT_EQ(rig.state.frame.selection, byKeys) << visible << " track " << track;
        }
        rig.MouseTo(400, 400, false, true);
        rig.MouseTo(400, 400, false, true);
        EXPECT_FALSE(rig.state.frame.selection.m_bSelection);
        rig.MouseTo(400, 400);
    }
}

TEST(Editing, CellsReadAsMusiciansWriteThem) {
    struct Case { Cell cell; int visible; const char* text; };
    const Case cases[] = {{{60, 0x1F, 0x40, 13, 0x0A}, 8, "C-51F40D0A"}, {{}, 4, "$$$  $$000"},
                          {{127, 128, 129, 33, 255}, 8, "G-A80$$XFF"},    {{kNoteOff, 0, 128, 20, 1}, 8, "*+,  80K01"},
                          {{1, 2, 3, 4, 5}, 16, "C#002405"},              {{1, 0, 3, 4, 5}, 16, "C#0  405"},
                          {{1, 0}, 24, "C#0  "},                          {{1, 2}, 32, "C#0"},
                          {{200, 0, 129, 99, 0}, 8, "$$$  $$X00"}};
    for (const Case& c : cases) EXPECT_EQ(CellText(c.cell, ViewOf(c.visible)), c.text);
    EXPECT_EQ(RowText(123, false), "23");
    EXPECT_EQ(RowText(200, false), "00");
    EXPECT_EQ(RowText(123, true), "7B");
}

}  // namespace
}  // namespace vonta
