#include <algorithm>
#include <array>
#include <initializer_list>

#include "interface/screens/Screens.h"
#include "interface/TrackerInterface.h"

namespace vonta {
namespace {

constexpr int kGroupWhole = 1, kGroupBottom = 2, kGroupTop = 3, kGroupInfo = 4, kGroupChannels = 5, kGroupMain = 6,
              kGroupQuestion = 7;

struct Group {
    std::initializer_list<int> hides, shows;     // slots; shown by default, in this order
    std::initializer_list<int> within;           // groups that lie in its area
};

// By group, from 1.
const std::array<Group, kScreenGroups> kGroups{{
    {{kScreenConfig, kScreenHelp, kScreenSongInfo, kScreenGame}, {}, {kGroupTop, kGroupMain}},
    {{kScreenPattern, kScreenInstrumentEditor, kScreenSampleEditor, kScreenInstrumentExtended, kScreenMultiFx,
      kScreenInstrumentFilter, kScreenMixer, kScreenTrackEditor, kScreenSynth}, {kScreenPattern}, {}},
    {{kScreenDiskOp, kScreenRightOptions}, {kScreenRightOptions}, {kGroupInfo}},
    {{kScreenAbout, kScreenVisual, kScreenCpuScan, kScreenLeftOptions}, {kScreenLeftOptions}, {kGroupChannels}},
    {{kScreenAdvancedEdit, kScreenChannels, kScreenScopes}, {kScreenChannels, kScreenScopes}, {}},
    {{kScreenMain}, {kScreenMain}, {}},
    {{}, {}, {}},                                // the question comes and goes on its own
}};

const Group& GroupAt(int group) { return kGroups[static_cast<std::size_t>(group - 1)]; }

}  // namespace

void TrackerInterface::HideGroup(int group) {
    for (const int slot : GroupAt(group).hides) GetScreen(slot).SetVisible(false);
    for (const int inner : GroupAt(group).within) HideGroup(inner);
}

void TrackerInterface::ResetGroup(int group) {
    for (const int slot : GroupAt(group).shows) GetScreen(slot).SetVisible(true);
    for (const int inner : GroupAt(group).within) ResetGroup(inner);
}

// A screen of the upper half starts from the default layout; one of the lower half replaces what is there. The two do
// not touch each other.
void TrackerInterface::ShowScreen(int slot) {
    if (IsVisible(slot)) return;
    const int group = GetScreen(slot).Group();
    if (group == kGroupQuestion) return;
    const int area = group == kGroupBottom ? kGroupBottom : kGroupWhole;
    HideGroup(area);
    ResetGroup(area);
    if (IsVisible(slot)) return;
    HideGroup(group);
    GetScreen(slot).SetVisible(true);
}

void TrackerInterface::ToggleScreen(int slot) {
    if (!IsVisible(slot)) return ShowScreen(slot);
    const int group = GetScreen(slot).Group();
    HideGroup(group);
    ResetGroup(group);
}

// From what covers most to the lower half.
bool TrackerInterface::CloseTopScreen() {
    for (const int group : {kGroupWhole, kGroupTop, kGroupInfo, kGroupChannels, kGroupBottom})
        for (const int slot : GroupAt(group).hides) {
            const auto& kept = GroupAt(group).shows;
            if (!IsVisible(slot) || std::find(kept.begin(), kept.end(), slot) != kept.end()) continue;
            ToggleScreen(slot);
            return true;
        }
    return false;
}

ListKind TrackerInterface::CurrentList() const {
    for (const auto& screen : m_screens)
        if (screen->IsVisible())
            if (const auto list = screen->List()) return *list;
    if (IsVisible(kScreenSynth)) return kListSynths;
    return IsVisible(kScreenMultiFx) ? kListEffects : kListInstruments;
}

}  // namespace vonta
