#include <gtest/gtest.h>

#include "interface/layout/DiskOpLayout.h"
#include "tests/desktop/DesktopRig.h"

namespace vonta::test {
namespace {

TEST(Saving, TheNameIsTypedAtOnceAndAChangedSongIsNotLeftBehind) {
    Desktop desktop;
    desktop.Start();
    EXPECT_EQ(desktop.Title(), "Vonta Tracker beta 0.81");
    desktop.Keys("space z space");
    Desktop::Rest(500);
    EXPECT_EQ(desktop.Title(), "*new song - Vonta Tracker beta 0.81");
    desktop.Keys("ctrl+d");
    desktop.Click(kDiskOpLayout, kDiskSave);
    desktop.Type("mybeat");
    desktop.Keys("Return");
    Desktop::Rest(700);
    EXPECT_EQ(desktop.Title(), "mybeat.vtm - Vonta Tracker beta 0.81");
    const auto saved = desktop.Load("mybeat.vtm");
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->GetPattern(0)->Read(0, 0).note, 48);

    desktop.Keys("Escape space x space Escape y");   // closes the Disk Op; then asks, and y is no answer
    EXPECT_EQ(desktop.Load("mybeat.vtm")->GetPattern(0)->Read(1, 0).note, kNoNote);
    desktop.Keys("Return");                          // saves, and goes
    EXPECT_EQ(desktop.Wait(), 0);
    EXPECT_EQ(desktop.Load("mybeat.vtm")->GetPattern(0)->Read(1, 0).note, 50);
}

}  // namespace
}  // namespace vonta::test
