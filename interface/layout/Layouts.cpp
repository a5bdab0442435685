#include <array>

#include "interface/layout/AdvancedEditLayout.h"
#include "interface/layout/ComingLayouts.h"
#include "interface/layout/ConfigLayout.h"
#include "interface/layout/DiskOpLayout.h"
#include "interface/layout/FunLayouts.h"
#include "interface/layout/Layout.h"
#include "interface/layout/MainLayout.h"
#include "interface/layout/OptionsLayouts.h"
#include "interface/layout/PatternLayout.h"
#include "interface/layout/QuestionLayouts.h"
#include "interface/layout/SampleEditorLayout.h"
#include "interface/layout/ScopesLayout.h"
#include "interface/layout/TextLayouts.h"

namespace vonta {
namespace {

// A row a picture; its table is in the header of its name.
constexpr std::array kLayouts = {
    &kScopesLayout,
    &kLeftOptionsLayout,
    &kRightOptionsLayout,
    &kMainLayout,
    &kDiskOpLayout,
    &kInstrumentEditorLayout,
    &kPatternLayout,
    &kConfigLayout,
    &kSampleEditorLayout,
    &kAboutLayout,
    &kInstrumentFilterLayout,
    &kCpuScanLayout,
    &kDialogLayout,
    &kHelpLayout,
    &kAdvancedEditLayout,
    &kSongInfoLayout,
    &kVisualLayout,
    &kMultiFxLayout,
    &kInstrumentExtendedLayout,
    &kGameLayout,
    &kMixerLayout,
    &kZapLayout,
    &kReportLayout,
    &kNoticeLayout,
    &kLoadingLayout,
    &kTrackEditorLayout,
    &kPatternScrollLayout,
    &kSaveLayout,
    &kConsoleLayout,
};

}  // namespace

std::span<const ScreenLayout* const> AllLayouts() { return kLayouts; }

}  // namespace vonta
