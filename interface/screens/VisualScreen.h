// The picture of a visual plug-in.
#pragma once

#include "interface/screens/Screen.h"

namespace vonta {

class VisualScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;

    void OnLoad(ControlRecord& record);
    void OnExit(ControlRecord& record);
};

}  // namespace vonta
