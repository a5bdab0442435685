#include "interface/keys/Input.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "app/config/KeyTable.h"

namespace vonta {
namespace {

TEST(Input, EveryKeyHasAPlaceOnTheKeyboard) {
    std::map<int, int> places;
    for (int scanCode = -1; scanCode <= 512; ++scanCode) ++places[KeyOfScanCode(scanCode)];
    for (int key = 0; key < kNoKey; ++key) {
        const bool neverSent = key == kKeyLeftAlt || key == kKeyRightAlt;
        EXPECT_EQ(places[key], neverSent ? 0 : key == kKeyBackslash ? 2 : 1) << KeyName(key);
    }
    const struct { int scanCode, key; } cases[] = {{4, kKeyA}, {29, kKeyA + 25}, {30, kKey0 + 1}, {39, kKey0}, {69, kKeyF1 + 11},
                                                   {98, kKeyNumpad0}, {226, kKeyAlt}, {41, kNoKey}};
    for (const auto& c : cases) EXPECT_EQ(KeyOfScanCode(c.scanCode), c.key);
}

TEST(Input, AltGrComesWithTheLeftControl) {
    constexpr int kScanAltGr = 230;
    Input input;
    input.OnKey(kScanAltGr, true);
    input.OnKey(kScanAltGr, false);
    input.Poll();
    ASSERT_EQ(input.EventCount(), 4);
    for (int i = 0; i < 4; ++i) {
        int key = 0;
        bool pressed = false;
        input.GetEvent(i, key, pressed);
        EXPECT_EQ(key, i % 2 == 0 ? kKeyLeftControl : kKeyAltGr);
        EXPECT_EQ(pressed, i < 2);
    }
}

TEST(Input, GivesTwentyEventsAPollAndLosesNoRelease) {
    Input input;
    for (int i = 0; i < 3 * Input::kMaxQueued; ++i) input.OnKey(4, true);
    input.OnKey(4, false);
    int key = 0, presses = 0, releases = 0;
    bool pressed = false;
    for (input.Poll(); input.EventCount() > 0; input.Poll()) {
        EXPECT_LE(input.EventCount(), Input::kMaxEvents);
        for (int i = 0; i < input.EventCount(); ++i) {
            input.GetEvent(i, key, pressed);
            EXPECT_EQ(key, kKeyA);
            ++(pressed ? presses : releases);
        }
    }
    EXPECT_EQ(presses, Input::kMaxQueued);
    EXPECT_EQ(releases, 1);
    input.GetEvent(5, key, pressed);
    EXPECT_EQ(key, kNoKey);
}

TEST(Input, AClickBetweenTwoFramesIsOneAtItsPlaceUnlessTheMouseIsSkipped) {
    Input input;
    std::string seen;
    for (const bool skips : {false, true}) {
        input.OnMouse(10, 10, false, false);
        input.OnMouse(20, 20, true, false);
        input.OnMouse(20, 20, false, false);
        input.OnMouse(30, 30, false, false);
        input.OnWheel(2);
        if (skips) input.SkipMouse();
        for (int i = 0; i < 4; ++i) {
            input.PollMouse();
            seen += std::to_string(input.MouseX()) + (input.Left() ? "L " : " ");
        }
        EXPECT_EQ(input.GetMouseWheel(), skips ? 0 : 2);
    }
    EXPECT_EQ(seen, "10 20L 30 30 30 30 30 30 ");
}

}  // namespace
}  // namespace vonta
