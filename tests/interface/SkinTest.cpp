#include "interface/skin/Skin.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/support/VideoRig.h"

namespace vonta {
namespace {

using test::PackBuilder;

constexpr std::uint32_t kOwn = 0xFF0000, kDefault = 0x0000FF;

// One pixel each of the bitmaps that tell versions apart.
PackBuilder SmallSkin(const char* marker, std::uint32_t colour) {
    PackBuilder skin;
    skin.Add(marker, {});
    for (const int number : {1, 7, 11, 77, 78, 83, 195, 258}) skin.Picture(EntryOfBitmap(number).name, 64, 1, colour);
    return skin.Picture("skin\\Colors\\font1.tga", 1, 1, colour);
}

struct SkinRig : VideoRig {
    ResourcePacks packs;
    Skin skin{video, packs};

    SkinRig() : VideoRig(32) { packs.m_pDefaultSkin = Pack(SmallSkin("skin\\Version081", kDefault), "Default.vts"); }
    std::string Write(const char* marker) { return SmallSkin(marker, kOwn).WriteTo(directory.File("Own.vts")); }
    std::uint32_t ColourOf(int number) {
        video.BlitToBack(0, 0, skin.LoadSkinBitmap(number));
        return Shown(0, 0);
    }
};

TEST(Skin, TakesFromTheDefaultSkinWhatTheChosenOneIsTooOldFor) {
    const struct { const char* marker; int version; std::uint32_t main, list, knob; } cases[] = {
        {"skin\\Version076w", 7600, kOwn, kDefault, kDefault},
        {"skin\\Version078", 7800, kOwn, kDefault, kOwn},
        {"skin\\Version081", 8100, kOwn, kOwn, kOwn},
        {"skin\\Version079", -1, kDefault, kDefault, kDefault}};
    for (const auto& c : cases) {
        SkinRig rig;
        EXPECT_EQ(GetSkinVersion(rig.Write(c.marker)), c.version);
        ASSERT_TRUE(rig.skin.SetSkin(rig.directory.File("Own.vts"))) << c.marker;
        EXPECT_EQ(rig.ColourOf(1), c.main) << c.marker;
        EXPECT_EQ(rig.ColourOf(7), c.list) << c.marker;
        EXPECT_EQ(rig.ColourOf(258), c.knob) << c.marker;
        EXPECT_EQ(rig.skin.Colours().m_colText, kDefault);
    }
}

TEST(Skin, ASkinThatCannotBeOpenedChangesNothing) {
    SkinRig rig;
    const int slot = rig.skin.LoadSkinBitmap(1);
    EXPECT_FALSE(rig.skin.SetSkin(rig.directory.File("none.vts")));
    EXPECT_FALSE(rig.skin.SetSkin(rig.directory.Write("text.vts", "not a pack at all")));
    EXPECT_EQ(rig.skin.LoadSkinBitmap(1), slot);
    EXPECT_EQ(rig.ColourOf(1), kDefault);
    EXPECT_EQ(GetSkinVersion(rig.directory.File("none.vts")), kNoSkinVersion);
}

TEST(Skin, EveryNumberHasOneEntryWithAVersionOrNeither) {
    SkinRig rig;
    std::set<std::pair<std::string, int>> entries;
    for (int number = -1; number <= kBitmaps; ++number) {
        const BitmapEntry entry = EntryOfBitmap(number);
        EXPECT_EQ(entry.name.empty(), BitmapVersion(number) == 0) << number;
        EXPECT_LE(entry.name.size(), PackFile::kNameLength) << entry.name;
        if (entry.name.empty()) {
            EXPECT_EQ(rig.skin.LoadSkinBitmap(number), Video::kNoSlot);
        } else {
            EXPECT_TRUE(entries.insert({entry.name, entry.strip}).second) << entry.name;
        }
    }
    EXPECT_EQ(EntryOfBitmap(8).name, "skin\\BGrounds\\InsListp.tga");
    EXPECT_EQ(EntryOfBitmap(386).name, "skin\\Buttons\\rb\\63.tga");
    EXPECT_EQ(EntryOfBitmap(114).strip, 32);
    int progress = 0;
    rig.skin.SetProgress([&] { ++progress; });
    rig.skin.LoadAll(true);
    EXPECT_EQ(progress, static_cast<int>(entries.size()) - 1);   // all but that of the data pack, which is not there
    EXPECT_EQ(rig.video.WidthOf(rig.skin.LoadSkinBitmap(114)), 2);
}

TEST(Skin, ThePianoIsBuiltOnItsBackgroundOnceForEachSkin) {
    SkinRig rig;
    PackBuilder skin;
    skin.Add("skin\\Version081", {}).Picture(EntryOfBitmap(11).name, 800, 300, 0x00FF00);
    skin.Picture(EntryOfBitmap(78).name, 14, 20, 0xFFFFFF).Picture(EntryOfBitmap(77).name, 8, 10, 0x010101);
    skin.WriteTo(rig.directory.File("Own.vts"));
    ASSERT_TRUE(rig.skin.SetSkin(rig.directory.File("Own.vts")));
    rig.skin.BuildPendingPiano();
    rig.video.BlitToBack(0, 0, rig.skin.LoadSkinBitmap(11));
    const struct { int x, y; std::uint32_t colour; } expected[] = {
        {7, 264, 0x00FF00}, {8, 264, 0xFFFFFF},  {17, 264, 0x010101},  {17, 274, 0xFFFFFF}, {31, 264, 0x010101},
        {45, 264, 0xFFFFFF}, {101, 264, 0xFFFFFF}, {115, 264, 0x010101}, {791, 264, 0xFFFFFF}, {20, 263, 0x00FF00}};
    for (const auto& e : expected) EXPECT_EQ(rig.Shown(e.x, e.y), e.colour) << e.x << ',' << e.y;
}

}  // namespace
}  // namespace vonta
