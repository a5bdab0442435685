#include <gtest/gtest.h>

#include "interface/layout/DiskOpLayout.h"
#include "interface/layout/OptionsLayouts.h"
#include "interface/layout/QuestionLayouts.h"
#include "interface/layout/ScopesLayout.h"
#include "tests/desktop/DesktopRig.h"
#include "tests/support/SmallXm.h"
#include "tests/support/WavBuilder.h"

namespace vonta::test {
namespace {

constexpr int kListTop = 7;
constexpr int kInstrumentX = 600, kInstrumentTop = 4, kInstrumentRow = 15;
constexpr int kPhrase = 8;                           // notes

// A square wave of so many frames a turn.
std::string Square(int frames) {
    std::vector<int> values;
    for (int i = 0; i < 4000; ++i) values.push_back(i / (frames / 2) % 2 == 0 ? 8000 : -8000);
    return AsText(WavBuilder::SixteenBit(values).Build());
}

void LoadSampleFile(Desktop& desktop, int instrument, int row) {
    desktop.Click(kInstrumentX, kInstrumentTop + kInstrumentRow * instrument + 7);
    desktop.Click(kDiskOpLayout, kDiskKind + 2);
    desktop.Click(280, kListTop + kDiskRowHeight * row + 7);
    Desktop::Rest(400);
}

// The save question, from the Disk Op.
void SaveAs(Desktop& desktop, const std::string& name, int format) {
    desktop.Click(kDiskOpLayout, kDiskKind + 0);
    desktop.Click(kDiskOpLayout, kDiskSave);
    desktop.Type(name);
    desktop.Click(kSaveLayout, format);
    desktop.Click(kSaveLayout, kSaveGo);
    Desktop::Rest(700);
}

// Eight notes of two instruments, with volumes and effects, written from above to below column by column.
void TypePhrase(Desktop& desktop) {
    desktop.Keys("space Home KP_1 z x c v KP_2 q w e r");
    desktop.Keys("Home Right Right Right 4 4 4 4 3 3 3 3");
    desktop.Keys("Home Right 0 1 2 3 4 5 6 7");
    desktop.Keys("Home Right a a a a a a a a Home Right 0 0 0 0 0 0 0 0");
    desktop.Keys("Home Right f f f f f f f f Home");
}

Cell Typed(int row) {
    constexpr std::uint8_t kLower[4] = {48, 50, 52, 53}, kUpper[4] = {60, 62, 64, 65};
    const bool lower = row < 4;
    const auto digit = static_cast<std::uint16_t>(row);
    return {lower ? kLower[row] : kUpper[row - 4], static_cast<std::uint8_t>(lower ? 1 : 2),
            static_cast<std::uint16_t>((lower ? 0x40 : 0x30) + digit), 0x0A, 0x0F};
}

Cell Raised(Cell cell) {
    ++cell.note;
    return cell;
}

class WritingASong : public testing::TestWithParam<DesktopRecipe> {};

TEST_P(WritingASong, FromTheFirstNoteToTheSavedFileWithKeysAndMouseAlone) {
    Desktop desktop(GetParam());
    desktop.songs_.Write("a.wav", Square(100));
    desktop.songs_.Write("b.wav", Square(40));
    desktop.Start();
    desktop.Click(kLeftOptionsLayout, kLeftSub);     // eight channels: their volumes are in view
    desktop.Keys("ctrl+d");
    LoadSampleFile(desktop, 0, 1);                   // behind the directory above
    LoadSampleFile(desktop, 1, 2);
    TypePhrase(desktop);

    // The block to the next track, half a tone higher.
    desktop.Keys("Home");
    desktop.Hold("alt", "Down Down Down Down Down Down Down Down F4");
    desktop.Keys("Home Tab alt+F5 shift+F2");
    desktop.Keys("ctrl+d");
    desktop.Click(kScopesLayout, kScopesInsert);
    desktop.Keys("space ctrl+d");

    SaveAs(desktop, "phrase", kSaveNative);
    SaveAs(desktop, "phrase", kSaveXm);
    desktop.Keys("Return Escape");                   // it tells that XM has fewer volumes; then the Disk Op closes
    ASSERT_EQ(desktop.Quit(), 0);

    const auto song = desktop.Load("phrase.vtm");
    ASSERT_TRUE(song);
    const Pattern& pattern = *song->GetPattern(0);
    for (int row = 0; row < kPhrase; ++row) {
        EXPECT_EQ(pattern.Read(row, 0), Typed(row)) << row;
        EXPECT_EQ(pattern.Read(row, 1), Raised(Typed(row))) << row;
    }
    EXPECT_EQ(song->GetPatternPosLenght(), 2u);
    const auto xm = desktop.Load("phrase.xm");
    ASSERT_TRUE(xm);
    EXPECT_EQ(xm->GetPattern(0)->Read(5, 1).note, pattern.Read(5, 1).note);

    // What the window mixes down is what the command line renders.
    desktop.Start("phrase.vtm");
    desktop.Keys("ctrl+d");
    SaveAs(desktop, "window", kSaveWav);
    desktop.Keys("Escape");
    ASSERT_EQ(desktop.Quit(), 0);
    ASSERT_EQ(RunVonta({"render", "phrase.vtm", "-o", "line"}, desktop.songs_.Path()).status, 0);
    EXPECT_FALSE(desktop.songs_.Bytes("line.wav").empty());
    EXPECT_EQ(desktop.songs_.Bytes("window.wav"), desktop.songs_.Bytes("line.wav"));
}

INSTANTIATE_TEST_SUITE_P(Desktops, WritingASong,
                         testing::Values(DesktopRecipe{24, 2}, DesktopRecipe{24, 1.5}, DesktopRecipe{16, 1}));

}  // namespace
}  // namespace vonta::test
