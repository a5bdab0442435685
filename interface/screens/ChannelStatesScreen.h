// The cells of the channels, over the lower part of the scopes panel: which are muted, marked or sound, and their waves.
#pragma once

#include "interface/screens/Screen.h"

namespace vonta {

struct Rect;

class ChannelStatesScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;
    void PaintPixels() override;

    void OnChannel(ControlRecord& record);       // param: the channel

private:
    int CellsOfRow() const;
    Rect CellOf(int channel) const;
    template <class Paint> void ForEachCell(Paint paint) const;
    void PaintCell(int channel, const Rect& cell);
    void PaintMark(int channel, const Rect& cell);
};

}  // namespace vonta
