// What the engine is busy with, in percent of one processor.
#pragma once

#include <string>
#include <vector>

#include "interface/screens/Screen.h"

namespace vonta {

class CpuScan;

// The lines of the report: those of the player, and those of the effect slots under their head.
std::vector<std::string> CpuReport(const CpuScan& scan);
std::vector<std::string> CpuSlotReport(const CpuScan& scan);

class CpuScanScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;

    void OnExit(ControlRecord& record);

private:
    void PrintLines(int recess, const std::vector<std::string>& lines);
};

}  // namespace vonta
