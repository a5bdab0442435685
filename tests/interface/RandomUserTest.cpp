// Somebody who presses whatever there is. The number of events is that of VONTA_RANDOM_EVENTS, if it is set.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <set>

#include "audio/DrvNoSound.h"
#include "formats/Loaders.h"
#include "tests/support/BuiltPacks.h"
#include "tests/support/InterfaceRig.h"
#include "tools/DemoSong.h"

namespace vonta {
namespace {

constexpr int kDefaultEvents = 20000;
constexpr unsigned kSeed = 20261122;

class RandomUser {
public:
    explicit RandomUser(std::unique_ptr<DrvSound> device = nullptr)
        : rig_(ComposeDemoSong(), OpenBuiltPacks(), 32, std::move(device)) {
        std::filesystem::create_directory(rig_.directory.Path() / "Skins");
        std::filesystem::copy_file(std::string(VONTA_DATA_DIR) + "/demo.vtm", rig_.directory.File("demo.vtm"));
        rig_.directory.Write("broken.xm", "Extended Module: no more than this");
    }

    void Act() {
        if (rig_.ui.IsEditingText() && Chance(60)) return Type();
        if (Below(300) == 0) return GoHome();
        static constexpr void (RandomUser::*kActs[])() = {
            &RandomUser::PressKey, &RandomUser::PressKey, &RandomUser::PressKey, &RandomUser::LetKeyGo,
            &RandomUser::LetKeyGo, &RandomUser::LetKeyGo, &RandomUser::UseMouse, &RandomUser::UseMouse,
            &RandomUser::UseMouse, &RandomUser::UseMouse, &RandomUser::UseMouse, &RandomUser::TurnWheel,
            &RandomUser::Type,     &RandomUser::Wait,     &RandomUser::TakeSteps};
        (this->*kActs[Below(std::size(kActs))])();
    }

    // Every count and range of the song is inside its limits, and it comes back from a file.
    void ExpectASoundSong() {
        const std::string path = rig_.directory.File("end.vtm");
        DiskStream out;
        ASSERT_TRUE(out.Open(path, "wb"));
        const MixerPause pause(rig_.player);
        Song& song = rig_.player.GetSong();
        song.SetStartTempo(std::max(song.StartTempo(), kMinTempo));   // 0 holds the rows; no file begins so
        ASSERT_EQ(SaveFile(&out, SaveMode::Module, song, {}), 0);
        bool unknown = false;
        LoadReport report;
        ASSERT_TRUE(LoadModule(path, unknown, report)) << report.error;
        EXPECT_TRUE(report.repairs.empty()) << report.repairs.front();
        EXPECT_FALSE(unknown);
    }

private:
    std::size_t Below(std::size_t count) { return random_() % count; }
    bool Chance(int percent) { return Below(100) < static_cast<std::size_t>(percent); }

    void PressKey() {
        static constexpr int kUsual[] = {kKeyLeftShift, kKeyLeftControl, kKeyAlt, kKeyUp, kKeyDown, kKeyLeft, kKeyRight};
        const int key = Chance(20) ? kUsual[Below(std::size(kUsual))] : static_cast<int>(Below(kKeyCodes));
        rig_.Key(key, true);
        held_.insert(key);
        if (Chance(70)) Frame();
    }

    void LetKeyGo() {
        if (held_.empty()) return;
        const auto key = std::next(held_.begin(), static_cast<std::ptrdiff_t>(Below(held_.size())));
        rig_.Key(*key, false);
        held_.erase(key);
    }

    // Mostly on a control, now and then anywhere, or beside the picture.
    void UseMouse() {
        std::vector<MouseRegion> regions = rig_.ui.Regions().List();
        if (Chance(20))                          // lists and texts answer to the right button, and are few
            std::erase_if(regions, [](const MouseRegion& region) { return !(region.record.events & kOnRightPress); });
        int x = static_cast<int>(Below(840)) - 20, y = static_cast<int>(Below(640)) - 20;
        if (!regions.empty() && Chance(80)) {
            const MouseRegion& region = regions[Below(regions.size())];
            x = region.x0 + static_cast<int>(Below(static_cast<std::size_t>(std::max(region.x1 - region.x0, 0)) + 1));
            y = region.y0 + static_cast<int>(Below(static_cast<std::size_t>(std::max(region.y1 - region.y0, 0)) + 1));
        }
        const bool left = Chance(50), right = Chance(20);
        if (left || right) rig_.ui.EndTextEdit();
        rig_.input.OnMouse(x, y, left, right);
        if (Chance(80)) Frame();
        if (Chance(70)) rig_.input.OnMouse(x, y, false, false);
    }

    // Back to the pattern and the panels, where most is to be done.
    void GoHome() {
        constexpr int kMainScreenAction = 150;
        while (!held_.empty()) LetKeyGo();
        Frame();
        rig_.TapAction(kMainScreenAction);
    }

    void TurnWheel() {
        rig_.input.OnWheel((static_cast<float>(Below(9)) - 4) / 2);
        Frame();
    }

    void Type() {
        static constexpr const char* kTyped[] = {"a", "/", "\xC3\x9F", "\xE2\x82\xAC", "\b", "\r", "\x1b", "..", "%s", " "};
        rig_.ui.OnCharacter(kTyped[Below(std::size(kTyped))]);
        if (Chance(3)) rig_.ui.OnEscape();
        if (Chance(3)) rig_.ui.ForgetKeys();
    }

    void TakeSteps() {
        for (std::size_t steps = Below(4); steps > 0; --steps) rig_.ui.Undo();
        for (std::size_t steps = Below(4); steps > 0; --steps) rig_.ui.Redo();
        if (Chance(50)) Frame();
    }

    void Wait() {
        if (rig_.device) rig_.Sound(static_cast<int>(Below(60)));
        Frame(static_cast<int>(Below(400)));
    }

    void Frame(int milliseconds = InterfaceRig::kFrameMs) {
        rig_.Frame(milliseconds);
        rig_.state.m_bQuit = false;
    }

    InterfaceRig rig_;
    std::mt19937 random_{kSeed};
    std::set<int> held_;
};

TEST(RandomUser, BreaksNothing) {
    const char* wanted = std::getenv("VONTA_RANDOM_EVENTS");
    const int events = wanted ? std::atoi(wanted) : kDefaultEvents;
    std::printf("%d events, seed %u\n", events, kSeed);
    RandomUser user;
    for (int i = 0; i < events; ++i) {
        user.Act();
        if (i % 5000 == 4999) user.ExpectASoundSong();
        if (HasFatalFailure()) FAIL() << "after " << i + 1 << " events";
    }
    user.ExpectASoundSong();
}

// What the interface reads and writes while the block cycle runs on its own thread.
TEST(RandomUser, DisturbsNoSoundThatRuns) {
    constexpr int kEvents = 2000;
    RandomUser user(std::make_unique<DrvNoSound>());
    for (int i = 0; i < kEvents; ++i) user.Act();
    user.ExpectASoundSong();
}

}  // namespace
}  // namespace vonta
