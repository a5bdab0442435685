// The modal question in its forms. Its fields are the interface's; what the save question offers is the Disk
// Op's.
#pragma once

#include <string>
#include <vector>

#include "interface/layout/QuestionLayouts.h"
#include "interface/screens/Screen.h"
#include "interface/screens/ScrolledText.h"

namespace vonta {

class QuestionScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;
    bool OnWheel(int notches) override;          // of the report

    static bool FitsDialog(const std::string& text);
    void SetReport(const std::vector<std::string>& lines);

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
    void PaintAnswerFaces();
    LayoutItem PlaceOfAnswer(int index) const;
    void PaintText();
    void PaintSave();
    void PaintName(const LayoutItem& field);
    void PaintReport();
    void OnAnswer(ControlRecord& record);
    void OnName(ControlRecord& record);

    ScrolledText report_;
};

}  // namespace vonta
