#include "interface/screens/HelpScreen.h"

#include <algorithm>
#include <string>

#include "app/pack/PackFile.h"
#include "interface/TrackerInterface.h"
#include "interface/layout/TextLayouts.h"

namespace vonta {
namespace {

using Self = HelpScreen;

constexpr const char* kTexts[HelpScreen::kPages] = {"data\\effects.txt", "data\\bugs.txt", "data\\faqs.txt"};

constexpr ControlRow<Self> kRows[] = {
    {kHelpEffects, Press<&Self::OnPage>, 0, kOnRelease, &Self::IsPage, HelpScreen::kPages},
    {kHelpExit, Press<&Self::OnExit>},
};

const LayoutItem& Item(int id) { return ItemOf(kHelpLayout, id); }

std::string ReadEntry(PackFile* pack, const char* name) {
    if (!pack || !pack->Find(name)) return {};
    std::string text(std::min<std::size_t>(pack->Remaining(), ScrolledText::kMaxBytes), '\0');
    return pack->Read(text.data(), text.size()) ? text : std::string();
}

}  // namespace

void HelpScreen::ReadTexts() {
    if (read_) return;
    read_ = true;
    const int columns = (Item(kHelpText).width - 8) / std::max(Text().m_fontStd.Advance(), 1);
    for (std::size_t page = 0; page < pages_.size(); ++page)
        pages_[page].SetText(ReadEntry(Ui().Packs().m_pDataPack.get(), kTexts[page]), columns);
}

void HelpScreen::PaintBackground() {
    ReadTexts();
    PaintLayout(kHelpLayout);
}

void HelpScreen::PaintControls() {
    if (!HasPainted()) return;
    DeclareButtons(this, kHelpLayout, kRows);
    pages_[static_cast<std::size_t>(page_)].Paint(
        Text().m_fontStd, {Item(kHelpText), Item(kHelpUp), Item(kHelpDown), Item(kHelpScroll)}, Regions(), Look());
}

bool HelpScreen::OnWheel(int notches) {
    pages_[static_cast<std::size_t>(page_)].Scroll(-notches);
    return true;
}

void HelpScreen::OnPage(ControlRecord& record) { page_ = std::clamp(record.param, 0, kPages - 1); }
void HelpScreen::OnExit(ControlRecord&) { Ui().ToggleScreen(kScreenHelp); }

}  // namespace vonta
