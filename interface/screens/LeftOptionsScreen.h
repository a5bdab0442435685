// The left column of buttons: channels, and screens of the upper and the lower half.
#pragma once

#include "interface/screens/Screen.h"

namespace vonta {

class LeftOptionsScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;

    void OnChannels(ControlRecord& record);
    void OnScreen(ControlRecord& record);
    void OnZap(ControlRecord& record);
    void OnUndo(ControlRecord& record);
    void OnRedo(ControlRecord& record);
    bool IsShown(std::int32_t slot) const;
};

}  // namespace vonta
