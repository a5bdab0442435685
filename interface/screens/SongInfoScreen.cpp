#include "interface/screens/SongInfoScreen.h"

#include <algorithm>

#include "interface/layout/TextLayouts.h"
#include "interface/TrackerInterface.h"
#include "interface/widgets/Formatted.h"

namespace vonta {
namespace {

constexpr ControlRow<SongInfoScreen> kRows[] = {{kInfoExit, Press<&SongInfoScreen::OnExit>}};

const LayoutItem& Item(int id) { return ItemOf(kSongInfoLayout, id); }

template <class Table>
int CountFilled(const Table& table) {
    return static_cast<int>(std::count_if(table.begin(), table.end(), [](const auto& object) { return object != nullptr; }));
}

}  // namespace

void SongInfoScreen::PaintBackground() {
    PaintLayout(kSongInfoLayout);
    if (shown_ == CurrentSong().comments) return;
    shown_ = CurrentSong().comments;
    comment_.SetText(shown_, (Item(kInfoText).width - 8) / std::max(Text().m_fontStd.Advance(), 1));
}

void SongInfoScreen::PaintControls() {
    if (!HasPainted()) return;
    const Song& song = CurrentSong();
    PrintValue(kInfoTitle, song.title);
    PrintValue(kInfoFile, State().m_szSongName);
    PrintValue(kInfoChannels, Formatted(" %2i", song.numChannels));
    PrintValue(kInfoPatterns, Formatted("%3i", CountFilled(song.patterns)));
    PrintValue(kInfoInstruments, Formatted("%3i", song.CountInstruments()));
    PrintValue(kInfoEffects, Formatted(" %2i", CountFilled(Player().GetMixer().effects)));
    PrintValue(kInfoSynths, Formatted("%3i", CountFilled(song.synths)));
    DeclareButtons(this, kSongInfoLayout, kRows);
    comment_.Paint(Text().m_fontStd, {Item(kInfoText), Item(kInfoUp), Item(kInfoDown), Item(kInfoScroll)}, Regions(), Look());
}

void SongInfoScreen::PrintValue(int id, const std::string& text) {
    const LayoutItem& field = Item(id);
    Text().m_fontStd.PrintClipped(field.x + 4, field.y, (field.width - 8) / 8, text);
}

bool SongInfoScreen::OnWheel(int notches) {
    comment_.Scroll(-notches);
    return true;
}

void SongInfoScreen::OnExit(ControlRecord&) { Ui().ToggleScreen(kScreenSongInfo); }

}  // namespace vonta
