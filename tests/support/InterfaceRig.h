// The real interface on a display that nobody sees, with a player that sounds only when told and a clock that stands
// still between frames. A test presses keys and buttons, runs frames and looks at the song.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "interface/TrackerInterface.h"
#include "interface/screens/DiskOpScreen.h"
#include "platform/HeadlessWindow.h"
#include "tests/support/SongBuilder.h"
#include "tests/support/TempDirectory.h"
#include "tests/support/TestDevice.h"

namespace vonta {

// The program around the interface: remembers what was asked of it.
struct RigHost final : InterfaceHost {
    explicit RigHost(std::string directory) : startDir(std::move(directory)) {}
    void SaveConfig() override { ++configSaves; }
    void SaveEnvironment() override { ++environmentSaves; }
    void RequestVideoRestart() override { ++videoRestarts; }
    const std::string& GetStartDir() const override { return startDir; }
    int MixDown(const std::string&, const MixdownOptions&, std::string& error, std::vector<std::string>&) override {
        error = "none here";
        return 1;
    }
    void KeepFormer(const std::string&) override {}
    bool HasSoundDevice() const override { return true; }

    std::string startDir;
    int configSaves = 0, environmentSaves = 0, videoRestarts = 0;
};

// Work goes on in it while this lives.
class WorkingDirectory {
public:
    explicit WorkingDirectory(const std::filesystem::path& path) { std::filesystem::current_path(path); }
    ~WorkingDirectory() {
        std::error_code ignored;
        std::filesystem::current_path(before_, ignored);
    }
    WorkingDirectory(const WorkingDirectory&) = delete;
    WorkingDirectory& operator=(const WorkingDirectory&) = delete;

private:
    std::filesystem::path before_ = std::filesystem::current_path();
};

class InterfaceRig {
public:
    static constexpr int kFrameMs = 20;

    // Without a song the default one. Without packs there is nothing to see, but all controls are there. At 16, 24 or
    // 32 bits a pixel. A device of its own plays on its own thread; Sound is not for that.
    explicit InterfaceRig(std::unique_ptr<Song> song = nullptr, ResourcePacks resources = {}, int bits = 32,
                          std::unique_ptr<DrvSound> own = nullptr)
        : packs(std::move(resources)) {
        if (!own) {
            auto manual = std::make_unique<TestDevice>();
            device = manual.get();
            device->record = false;
            own = std::move(manual);
        }
        config.flags &= ~std::uint32_t{kFullscreen};
        display.desktopBits = bits;
        ui.SetClock([this] { return now; });
        player.StartSound(nullptr, static_cast<int>(DeviceKind::NoSound), 0, nullptr, 44100, std::move(own));
        player.SetMixerOn(true);
        ui.Start(true);
        ui.DiskOp().SetRoot(directory.Path());   // whatever a test presses, it deletes nothing of its user's
        const MixerPause pause(player);
        player.SetSong(std::move(song));
        state.MarkSaved();
    }
    ~InterfaceRig() { player.SetMixerOn(false); }

    // What has arrived is worked, the interface painted and shown; then files are saved and loaded, and the player takes
    // its commands.
    void Frame(int milliseconds = kFrameMs) {
        now += static_cast<std::uint32_t>(milliseconds);
        ui.PollInput();
        ui.PollMouse();
        ui.Paint();
        video.Present();
        ui.DiskOp().WorkNow();
        if (device) device->timer.Fire();
    }
    // So many milliseconds of sound, in blocks as a device takes them.
    void Sound(int milliseconds) {
        for (int i = 0; i < milliseconds; i += 10) {
            device->position = (device->position + kBytesOf10Ms) % device->ringBytes;
            device->timer.Fire();
        }
    }

    // Keys by our own codes; modifiers of KeyModifierMask.
    void Key(int key, bool pressed) { input.OnKey(ScanCodeOf(key), pressed); }
    void Tap(int key, int modifiers = 0) {
        Modifiers(modifiers, true);
        Key(key, true);
        Key(key, false);
        Modifiers(modifiers, false);
        Frame();
    }
    // As the bindings have it.
    void TapAction(int action) {
        const KeyAction& binding = config.keyTable[static_cast<std::size_t>(action)];
        Tap(binding.key, (binding.control ? kMaskControl : 0) | (binding.shift ? kMaskShift : 0) |
                             (binding.alt ? kMaskAlt : 0));
    }
    void Modifiers(int mask, bool pressed) {
        if (mask & kMaskControl) Key(kKeyLeftControl, pressed);
        if (mask & kMaskShift) Key(kKeyLeftShift, pressed);
        if (mask & kMaskAlt) Key(kKeyAlt, pressed);
    }
    // Characters as the window sends them.
    void Type(const std::string& text) {
        for (const char character : text) ui.OnCharacter({&character, 1});
    }

    // The mouse, in the picture.
    void MouseTo(int x, int y, bool left = false, bool right = false) {
        input.OnMouse(x, y, left, right);
        Frame();
    }
    void Click(int x, int y, bool right = false) {
        MouseTo(x, y);
        MouseTo(x, y, !right, right);
        MouseTo(x, y);
    }
    void Click(const ScreenLayout& layout, int id, bool right = false) {
        const LayoutItem item = MovedBy(ItemOf(layout, id), layout.x - layout.OriginX(), layout.y - layout.OriginY());
        Click(item.x + item.width / 2, item.y + item.height / 2, right);
    }

    // A frame, and what it shows in a rectangle.
    std::vector<std::uint32_t> Pixels(int x, int y, int width, int height, int milliseconds = kFrameMs) {
        Frame(milliseconds);
        std::vector<std::uint32_t> pixels;
        for (int row = y; row < y + height; ++row)
            for (int column = x; column < x + width; ++column) pixels.push_back(display.PixelAt(column, row));
        return pixels;
    }
    std::vector<std::uint32_t> Pixels(const LayoutItem& item) { return Pixels(item.x, item.y, item.width, item.height); }

    // The pattern on view, to be written behind the journal's back.
    Pattern& OnView() { return *player.GetSong().GetPattern(state.PatternNumber()); }
    Cell At(int row, int track) { return state.ShownPattern().Read(row, track); }

    static int ScanCodeOf(int key) {
        for (int code = 0; code < 512; ++code)
            if (KeyOfScanCode(code) == key) return code;
        return 0;
    }

    static constexpr std::uint32_t kBytesOf10Ms = 441 * 4;

    TempDirectory directory;
    WorkingDirectory workingDirectory{directory.Path()};
    RigHost host{directory.Path()};
    std::uint32_t now = 1u << 20;                // milliseconds
    Config config;
    Environment environment;
    SndPlayer player;
    TestDevice* device = nullptr;                // the player's, unless it has its own
    HeadlessDisplay display;
    ResourcePacks packs;
    Video video{display};
    Input input;
    TrackerState state{player, config, environment};
    TrackerInterface ui{host, state, video, input, packs};
};

}  // namespace vonta
