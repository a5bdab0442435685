#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/support/InterfaceRig.h"

namespace vonta {
namespace {

// One region of 101 by 11 pixels, and what it was told.
struct Region {
    Region() : regions(rig.video, rig.ui.Pictures()) {}

    void Declare(std::uint32_t events, bool useTicks = true, bool drag = true) {
        ControlRecord record;
        record.events = events;
        record.useTicks = useTicks;
        regions.AddRegion(100, 100, 200, 110, Bind<&Region::OnClick>(this),
                          drag ? Bind<&Region::OnDrag>(this) : ControlCallback{}, record);
    }
    void OnClick(ControlRecord& record) { calls += 'c'; last = record; }
    void OnDrag(ControlRecord& record) { calls += 'd'; last = record; }

    // A frame: 'o' the mouse is outside, 'L' and 'R' are down, a digit is the ticks that have passed. Its calls.
    std::string Step(const std::string& step) {
        const auto has = [&](char what) { return step.find(what) != std::string::npos; };
        MouseState mouse{has('o') ? 90 : 150, 105};
        mouse.left = has('L');
        mouse.right = has('R');
        mouse.leftEdge = mouse.left && !left;
        mouse.rightEdge = mouse.right && !right;
        mouse.ticks = step.back() >= '0' && step.back() <= '9' ? step.back() - '0' : 0;
        left = mouse.left;
        right = mouse.right;
        calls.clear();
        regions.Update(mouse, 3);
        return calls.empty() ? "." : calls;
    }

    InterfaceRig rig;
    MouseRegions regions;
    ControlRecord last;
    std::string calls;
    bool left = false, right = false;
};

TEST(MouseRegions, CallsByTheEventsOfTheRegion) {
    const struct {
        const char* what;
        std::uint32_t events;
        bool useTicks, drag;
        const char *steps, *calls;
    } cases[] = {
        {"a click is the release inside", kOnRelease, true, true, "L L9 - L -", ". . c . c"},
        {"not outside", kOnRelease, true, true, "L oL o- -", ". . . ."},
        {"back inside counts", kOnRelease, true, true, "L oL L -", ". . . c"},
        {"a press elsewhere captures nothing", kOnRelease | kOnLeftHeld, false, true, "oL L -", ". . ."},
        {"press", kOnLeftPress, true, true, "L L9 - R -", "c . . . ."},
        {"right press", kOnRightPress, true, true, "R R9 - L -", "c . . . ."},
        {"held waits, then repeats", kOnLeftPress | kOnLeftHeld, true, true, "L L2 L2 L1 L0 L4 -", "c . c c . cccc ."},
        {"held without ticks", kOnLeftHeld, false, true, "L L0 L5 -", ". c c ."},
        {"held outside drags", kOnLeftHeld, true, true, "L oL2 L5 oL1 -", ". dd cc d ."},
        {"or clicks", kOnLeftHeld | kOnLeftHeldOutside, true, false, "L oL2 -", ". cc ."},
        {"or does nothing", kOnLeftHeld, true, false, "L oL2 -", ". . ."},
        {"right held repeats at once and never drags", kOnRightHeld, true, true, "R R5 oR5 -", ". ccccc . ."},
        {"both at once let go", kOnBothPress | kOnRelease, true, true, "LR LR9 -", "c . ."},
        {"both held", kOnBothHeld, true, true, "LR LR4 oLR1 -", ". c d ."},
        {"a second button while the first is held", kOnLeftPress | kOnRightPress, true, true, "L LR -", "c c ."},
        {"nothing in the events lets go all the same", 0, true, true, "L L9 - L", ". . . ."},
    };
    for (const auto& test : cases) {
        Region region;
        region.Declare(test.events, test.useTicks, test.drag);
        std::istringstream steps(test.steps);
        std::string calls, step;
        while (steps >> step) calls.append(region.Step(step)).append(" ");
        EXPECT_EQ(calls, test.calls + std::string(" ")) << test.what;
    }
}

TEST(MouseRegions, TellsWhereTheMouseIsAndWhatIsDown) {
    Region region;
    region.Declare(kOnLeftPress | kOnRightPress | kOnLeftHeld, false);
    region.Step("L");
    EXPECT_TRUE(region.last.first && region.last.leftHeld && !region.last.rightHeld && region.last.leftPressed);
    EXPECT_FLOAT_EQ(region.last.relX, 0.5f);
    region.Step("L");
    EXPECT_FALSE(region.last.first);
    region.Step("oL");
    EXPECT_EQ(region.last.x, -10);
    EXPECT_EQ(region.last.relX, 0);              // drawn to the end that it is beyond
    EXPECT_EQ(region.last.dragX, -60);
    region.Step("LR");
    EXPECT_TRUE(region.last.leftHeld && region.last.rightHeld && region.last.rightPressed);
}

TEST(MouseRegions, TheCaptureOutlivesTheListAndTheFirstRegionOfTheListWins) {
    Region region, other;
    region.Declare(kOnRelease);
    region.regions.AddRegion(0, 0, 799, 599, Bind<&Region::OnClick>(&other));
    region.Step("L");
    region.regions.Clear();
    EXPECT_EQ(region.Step("-"), "c");
    EXPECT_EQ(other.calls, "");
    for (int i = 0; i < 1000; ++i) region.Declare(kOnRelease);
    EXPECT_EQ(region.regions.List().size(), std::size_t{MouseRegions::kMaxRegions});
}

}  // namespace
}  // namespace vonta
