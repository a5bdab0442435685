#include "interface/Screens.h"

#include <array>
#include <cstddef>

namespace vonta {
namespace {

class PictureScreen final : public Screen {
public:
    PictureScreen(TrackerInterface& ui, int group, const ScreenLayout& layout) : Screen(ui, group), layout_(layout) {}
    void PaintBackground() override { PaintLayout(layout_); }

private:
    const ScreenLayout& layout_;
};

using ScreenFactory = std::unique_ptr<Screen> (*)(TrackerInterface& ui, int group);

template <class Type>
std::unique_ptr<Screen> Make(TrackerInterface& ui, int group) { return std::make_unique<Type>(ui, group); }

template <const ScreenLayout& layout>
std::unique_ptr<Screen> Picture(TrackerInterface& ui, int group) {
    return std::make_unique<PictureScreen>(ui, group, layout);
}

struct Row {
    int group;
    ScreenFactory make;                          // Make<XxxScreen> or Picture<kXxxLayout>
};

// By slot.
constexpr std::array<Row, kScreens> kRows{{
    {2, Make<Screen>},   // Pattern
    {4, Make<Screen>},   // Left options
    {3, Make<Screen>},   // Right options
    {3, Make<Screen>},   // Disk Op
    {5, Make<Screen>},   // Scopes
    {2, Make<Screen>},   // Instrument editor
    {6, Make<Screen>},   // Main panel
    {2, Make<Screen>},   // Sample editor
    {5, Make<Screen>},   // Channel states
    {4, Make<Screen>},   // About
    {1, Make<Screen>},   // Config
    {2, Make<Screen>},   // Instrument editor, extended
    {2, Make<Screen>},   // MultiFX
    {2, Make<Screen>},   // Instrument filter
    {4, Make<Screen>},   // CPU scan
    {1, Make<Screen>},   // Game
    {1, Make<Screen>},   // Help
    {2, Make<Screen>},   // Mixer
    {3, Make<Screen>},   // Advanced edit
    {1, Make<Screen>},   // Song info
    {4, Make<Screen>},   // Visual
    {2, Make<Screen>},   // Track editor
    {7, Make<Screen>},   // Question
    {2, Make<Screen>},   // Synth
}};

}  // namespace

int GroupOfScreen(int slot) { return kRows[static_cast<std::size_t>(slot)].group; }

std::unique_ptr<Screen> CreateScreen(TrackerInterface& ui, int slot) {
    const Row& row = kRows[static_cast<std::size_t>(slot)];
    return row.make(ui, row.group);
}

}  // namespace vonta
