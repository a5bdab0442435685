// The picture of a game plug-in.
#pragma once

#include "interface/screens/Screen.h"

namespace vonta {

class GameScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;

    void OnLoad(ControlRecord& record);
    void OnExit(ControlRecord& record);
    void OnNothing(ControlRecord&) {}            // without a game there is nothing to play, reset or tell
};

}  // namespace vonta
