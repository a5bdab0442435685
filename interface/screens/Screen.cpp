#include "interface/screens/Screen.h"

#include "interface/TrackerInterface.h"

namespace vonta {

TrackerState& Screen::State() const { return ui_.State(); }
SndPlayer& Screen::Player() const { return ui_.State().Player(); }
const Song& Screen::CurrentSong() const { return ui_.State().CurrentSong(); }
Config& Screen::Settings() const { return ui_.State().Settings(); }
Video& Screen::Surfaces() const { return ui_.Surfaces(); }
Skin& Screen::Pictures() const { return ui_.Pictures(); }
Fonts& Screen::Text() const { return ui_.Text(); }
MouseRegions& Screen::Regions() const { return ui_.Regions(); }

void Screen::PrintCentred(const LayoutItem& item, const Font& font, std::string_view text) const {
    font.Print(item.x + (item.width - font.WidthOf(text)) / 2, item.y + (item.height - Font::kHeight) / 2, text);
}

void Screen::PaintLayout(const ScreenLayout& layout) {
    const int picture = Pictures().LoadSkinBitmap(layout.bitmap);
    Surfaces().BlitToBack(layout.x, layout.y, picture);
    look_ = {layout.x, layout.y, static_cast<std::uint32_t>(Pictures().LoadSkinBitmap(layout.pressedBitmap))};
}

void Screen::DeclareButton(const LayoutItem& item, ControlCallback onClick, const ControlRecord& record, bool latched) {
    if (latched) Regions().LatchedButton(item, onClick, look_, record);
    else Regions().Button(item, onClick, look_, record);
}

}  // namespace vonta
