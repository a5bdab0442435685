// The base of the 24 screens: a layout table and a few paint functions. A screen draws what it is given and declares
// controls whose callbacks call operations; it keeps no copy of the song.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "interface/widgets/MouseRegions.h"

namespace vonta {

class Skin;
class SndPlayer;
class TrackerInterface;
class TrackerState;
class Video;
struct Config;
class Font;
struct Fonts;
struct Song;
template <class S> struct ControlRow;
enum ListKind : int;

// In slot order.
enum ScreenSlot : int {
    kScreenPattern, kScreenLeftOptions, kScreenRightOptions, kScreenDiskOp, kScreenScopes, kScreenInstrumentEditor,
    kScreenMain, kScreenSampleEditor, kScreenChannels, kScreenAbout, kScreenConfig, kScreenInstrumentExtended,
    kScreenMultiFx, kScreenInstrumentFilter, kScreenCpuScan, kScreenGame, kScreenHelp, kScreenMixer,
    kScreenAdvancedEdit, kScreenSongInfo, kScreenVisual, kScreenTrackEditor, kScreenQuestion, kScreenSynth,
};
constexpr int kScreens = 24;

class Screen {
public:
    Screen(TrackerInterface& ui, int group) : ui_(ui), group_(group) {}
    virtual ~Screen() = default;
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    virtual void PaintBackground() {}
    virtual void PaintPixels() {}               // the back surface is locked; regions are recorded
    virtual void PaintControls() {}             // twice a frame: see MouseRegions
    virtual void Init() {}                      // once, before the first frame
    virtual void OnShown() {}                   // each time it comes into view, by whatever road
    virtual bool OnWheel(int notches) { (void)notches; return false; }   // up is positive; true if taken
    // The same for what has a use for the wheel under the mouse, however the wheel is bound.
    virtual bool OnWheelAt(int x, int y, int notches) { (void)x, (void)y, (void)notches; return false; }
    virtual bool OnAction(int action) { (void)action; return false; }    // a key action that is the screen's own; true if taken

    virtual bool OnEscape() { return false; }   // true if there was something of the screen's own to end

    // The list of the main panel that this screen works on, if it says.
    virtual std::optional<ListKind> List() const { return {}; }

    int Group() const { return group_; }        // 1 to 7
    bool IsVisible() const { return visible_; }
    void SetVisible(bool on) {
        if (!std::exchange(visible_, on) && on) OnShown();
    }

protected:
    TrackerInterface& Ui() const { return ui_; }
    // Shortcuts to what every screen works with; defined in Screen.cpp.
    TrackerState& State() const;
    SndPlayer& Player() const;
    Song& CurrentSong() const;
    Config& Settings() const;
    Video& Surfaces() const;
    Skin& Pictures() const;
    Fonts& Text() const;
    MouseRegions& Regions() const;

    void PrintCentred(const LayoutItem& item, const Font& font, std::string_view text) const;
    // Blits the layout's bitmap at its place and remembers the pressed look for the controls.
    void PaintLayout(const ScreenLayout& layout);
    const PressedLook& Look() const { return look_; }
    bool HasPainted() const { return look_.surface != ControlRecord::kNoSurface; }   // before: no controls

    // The buttons of a table, and one of them. Not before the layout was painted. x, y: where the layout counts from.
    template <class S, std::size_t rows>
    void DeclareButtons(S* screen, const ScreenLayout& layout, const ControlRow<S> (&table)[rows], int x = 0, int y = 0);
    void DeclareButton(const LayoutItem& item, ControlCallback onClick, const ControlRecord& record, bool latched);

private:
    TrackerInterface& ui_;
    int group_;
    bool visible_ = false;
    PressedLook look_;
};

// One row a control of a screen: which item of the layout, what a press does, and when it is drawn latched. A row with a
// count stands for as many, their ids counting up, their params by paramStep.
template <class S>
struct ControlRow {
    int id;
    void (*press)(void* screen, ControlRecord& record);   // Press<&S::Operation>
    std::int32_t param = 0;
    std::uint32_t events = kOnRelease;
    bool (S::*latched)(std::int32_t param) const = nullptr;
    int count = 1, paramStep = 1;
};

// Buttons that count: on the press, and again while they are held.
constexpr std::uint32_t kRepeating = kOnLeftPress | kOnLeftHeld;

template <class S, std::size_t rows>
void Screen::DeclareButtons(S* screen, const ScreenLayout& layout, const ControlRow<S> (&table)[rows], int x, int y) {
    for (const ControlRow<S>& row : table)
        for (int number = 0; number < row.count; ++number) {
            ControlRecord record;
            record.param = row.param + number * row.paramStep;
            record.events = row.events;
            const bool latched = row.latched && (screen->*row.latched)(record.param);
            DeclareButton(MovedBy(ItemOf(layout, row.id + number), x, y), {screen, row.press}, record, latched);
        }
}

}  // namespace vonta
