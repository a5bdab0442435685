// The right column of buttons: transport and screens.
#pragma once

#include "interface/screens/Screen.h"

namespace vonta {

class RightOptionsScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;

    void OnPlay(ControlRecord& record);
    void OnRecord(ControlRecord& record);
    void OnStop(ControlRecord& record);
    void OnScreen(ControlRecord& record);
    void OnDiskOp(ControlRecord& record);
    void OnExit(ControlRecord& record);
    bool IsShown(std::int32_t slot) const;
};

}  // namespace vonta
