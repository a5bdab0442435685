#include "interface/Screens.h"

#include <array>
#include <cstddef>

#include "interface/layout/ComingLayouts.h"
#include "interface/layout/ConfigLayout.h"
#include "interface/layout/DiskOpLayout.h"
#include "interface/layout/FunLayouts.h"
#include "interface/layout/MainLayout.h"
#include "interface/layout/OptionsLayouts.h"
#include "interface/layout/TextLayouts.h"

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
    {4, Picture<kLeftOptionsLayout>},   // Left options
    {3, Picture<kRightOptionsLayout>},   // Right options
    {3, Picture<kDiskOpLayout>},   // Disk Op
    {5, Make<Screen>},   // Scopes
    {2, Picture<kInstrumentEditorLayout>},   // Instrument editor
    {6, Picture<kMainLayout>},   // Main panel
    {2, Picture<kSampleEditorLayout>},   // Sample editor
    {5, Make<Screen>},   // Channel states
    {4, Picture<kAboutLayout>},   // About
    {1, Picture<kConfigLayout>},   // Config
    {2, Picture<kInstrumentExtendedLayout>},   // Instrument editor, extended
    {2, Picture<kMultiFxLayout>},   // MultiFX
    {2, Picture<kInstrumentFilterLayout>},   // Instrument filter
    {4, Picture<kCpuScanLayout>},   // CPU scan
    {1, Picture<kGameLayout>},   // Game
    {1, Picture<kHelpLayout>},   // Help
    {2, Picture<kMixerLayout>},   // Mixer
    {3, Make<Screen>},   // Advanced edit
    {1, Picture<kSongInfoLayout>},   // Song info
    {4, Picture<kVisualLayout>},   // Visual
    {2, Picture<kTrackEditorLayout>},   // Track editor
    {7, Make<Screen>},   // Question
    {2, Picture<kMultiFxLayout>},   // Synth
}};

}  // namespace

int GroupOfScreen(int slot) { return kRows[static_cast<std::size_t>(slot)].group; }

std::unique_ptr<Screen> CreateScreen(TrackerInterface& ui, int slot) {
    const Row& row = kRows[static_cast<std::size_t>(slot)];
    return row.make(ui, row.group);
}

}  // namespace vonta
