// Advanced edit: buttons that work on whole ranges of cells, and on instruments and samples.
#pragma once

#include "interface/screens/Screen.h"

namespace vonta {

class AdvancedEditScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;

    void OnTranspose(ControlRecord& record);     // param: of the table
    void OnReplace(ControlRecord& record);       // param: the scope
    template <void (TrackerState::*operation)()>
    void OnOperation(ControlRecord&) { (State().*operation)(); }
    void OnExit(ControlRecord& record);

private:
    void PrintNumbers();
};

}  // namespace vonta
