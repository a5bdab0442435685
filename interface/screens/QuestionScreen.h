// The modal question in its three forms. Its fields are the interface's; what the save question offers is the Disk
// Op's.
#pragma once

#include "interface/layout/QuestionLayouts.h"
#include "interface/screens/Screen.h"

namespace vonta {

class QuestionScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;

    void OnYes(ControlRecord& record);
    void OnNo(ControlRecord& record);
    void OnChoice(ControlRecord& record);
    void OnFormat(ControlRecord& record);
    void OnCompress(ControlRecord& record);
    void OnBits(ControlRecord& record);
    void OnRate(ControlRecord& record);
    void OnByParts(ControlRecord& record);
    bool IsFormat(std::int32_t format) const;
    bool IsCompress(std::int32_t compress) const;
    bool IsBits(std::int32_t bits) const;
    bool IsByParts(std::int32_t) const;

private:
    const ScreenLayout& Layout() const;          // of the present mode
    void PaintAnswers();
    void PaintAnswer(const LayoutItem& item, ControlCallback onClick, const PressedLook& look, const char* caption);
    void PaintOnlyAnswer();
    void PaintText();
    void PaintSave();
    void OnName(ControlRecord& record);
};

}  // namespace vonta
