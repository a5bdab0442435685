#include "interface/screens/Screens.h"

#include <array>
#include <cstddef>

#include "interface/layout/ComingLayouts.h"
#include "interface/screens/AboutScreen.h"
#include "interface/screens/AdvancedEditScreen.h"
#include "interface/screens/ChannelStatesScreen.h"
#include "interface/screens/ConfigScreen.h"
#include "interface/screens/CpuScanScreen.h"
#include "interface/screens/DiskOpScreen.h"
#include "interface/screens/GameScreen.h"
#include "interface/screens/HelpScreen.h"
#include "interface/screens/LeftOptionsScreen.h"
#include "interface/screens/MainScreen.h"
#include "interface/screens/PatternScreen.h"
#include "interface/screens/QuestionScreen.h"
#include "interface/screens/RightOptionsScreen.h"
#include "interface/screens/SampleEditorScreen.h"
#include "interface/screens/ScopesScreen.h"
#include "interface/screens/SongInfoScreen.h"
#include "interface/screens/VisualScreen.h"

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
    {2, Make<PatternScreen>},   // Pattern
    {4, Make<LeftOptionsScreen>},   // Left options
    {3, Make<RightOptionsScreen>},   // Right options
    {3, Make<DiskOpScreen>},   // Disk Op
    {5, Make<ScopesScreen>},   // Scopes
    {2, Picture<kInstrumentEditorLayout>},   // Instrument editor
    {6, Make<MainScreen>},   // Main panel
    {2, Make<SampleEditorScreen>},   // Sample editor
    {5, Make<ChannelStatesScreen>},   // Channel states
    {4, Make<AboutScreen>},   // About
    {1, Make<ConfigScreen>},   // Config
    {2, Picture<kInstrumentExtendedLayout>},   // Instrument editor, extended
    {2, Picture<kMultiFxLayout>},   // MultiFX
    {2, Picture<kInstrumentFilterLayout>},   // Instrument filter
    {4, Make<CpuScanScreen>},   // CPU scan
    {1, Make<GameScreen>},   // Game
    {1, Make<HelpScreen>},   // Help
    {2, Picture<kMixerLayout>},   // Mixer
    {3, Make<AdvancedEditScreen>},   // Advanced edit
    {1, Make<SongInfoScreen>},   // Song info
    {4, Make<VisualScreen>},   // Visual
    {2, Picture<kTrackEditorLayout>},   // Track editor
    {7, Make<QuestionScreen>},   // Question
    {2, Picture<kMultiFxLayout>},   // Synth
}};

}  // namespace

int GroupOfScreen(int slot) { return kRows[static_cast<std::size_t>(slot)].group; }

std::unique_ptr<Screen> CreateScreen(TrackerInterface& ui, int slot) {
    const Row& row = kRows[static_cast<std::size_t>(slot)];
    return row.make(ui, row.group);
}

}  // namespace vonta
