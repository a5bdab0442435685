#include <gtest/gtest.h>

#include <set>

#include "tests/support/InterfaceRig.h"

namespace vonta {
namespace {

std::set<int> Visible(const TrackerInterface& ui) {
    std::set<int> slots;
    for (int slot = 0; slot < kScreens; ++slot)
        if (ui.IsVisible(slot)) slots.insert(slot);
    return slots;
}

const std::set<int> kDefaultLayout{kScreenPattern, kScreenLeftOptions, kScreenRightOptions,
                                   kScreenScopes,  kScreenMain,        kScreenChannels};

TEST(ScreenGroups, AScreenTakesItsAreaAndGivesItBack) {
    const struct { int slot; std::set<int> visible; } cases[] = {
        {kScreenConfig, {kScreenPattern, kScreenConfig}},
        {kScreenDiskOp, {kScreenPattern, kScreenDiskOp, kScreenMain}},
        {kScreenAdvancedEdit, {kScreenPattern, kScreenAdvancedEdit, kScreenMain}},
        {kScreenAbout, {kScreenPattern, kScreenAbout, kScreenRightOptions, kScreenMain}},
    };
    InterfaceRig rig;
    EXPECT_EQ(Visible(rig.ui), kDefaultLayout);
    for (const auto& [slot, visible] : cases) {
        rig.ui.ShowScreen(kScreenHelp);          // whatever is there before
        rig.ui.ToggleScreen(slot);
        EXPECT_EQ(Visible(rig.ui), visible) << slot;
        rig.ui.ShowOnly(slot);
        EXPECT_EQ(Visible(rig.ui), visible) << slot;
        rig.ui.ToggleScreen(slot);
        EXPECT_EQ(Visible(rig.ui), kDefaultLayout) << slot;
    }
}

TEST(ScreenGroups, EveryScreenHidesAgainAndTheHalvesDoNotTouch) {
    InterfaceRig rig;
    for (int slot = 0; slot < kScreens; ++slot) {
        if (kDefaultLayout.contains(slot) || slot == kScreenQuestion) continue;
        rig.ui.ToggleScreen(kScreenSampleEditor);
        rig.ui.ToggleScreen(slot);
        const bool bottom = rig.ui.GetScreen(slot).Group() == 2;
        EXPECT_EQ(rig.ui.IsVisible(kScreenSampleEditor), !bottom) << slot;
        if (bottom && slot != kScreenSampleEditor) rig.ui.ToggleScreen(slot);
        else if (!bottom) rig.ui.ToggleScreen(slot), rig.ui.ToggleScreen(kScreenSampleEditor);
        EXPECT_EQ(Visible(rig.ui), kDefaultLayout) << slot;
    }
}

}  // namespace
}  // namespace vonta
