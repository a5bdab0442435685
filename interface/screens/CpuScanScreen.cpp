#include "interface/screens/CpuScanScreen.h"

#include "engine/CpuScan.h"
#include "interface/layout/TextLayouts.h"
#include "interface/TrackerInterface.h"
#include "interface/widgets/Formatted.h"

namespace vonta {
namespace {

constexpr ControlRow<CpuScanScreen> kRows[] = {{kCpuExit, Press<&CpuScanScreen::OnExit>}};
constexpr float kHertzInMegahertz = 0.000001f;

}  // namespace

std::vector<std::string> CpuReport(const CpuScan& scan) {
    const CpuTotals totals = ReadTotals(scan);
    return {Formatted("PRECALCS        %03.2f", static_cast<double>(totals.precalcs)),
            Formatted("CHANNELS        %03.2f", static_cast<double>(totals.channels)),
            Formatted(" Scaling   %03.2f", static_cast<double>(scan.Read(kCpuScaling))),
            Formatted(" Calc. Max %03.2f", static_cast<double>(scan.Read(kCpuPeaks))),
            Formatted(" Filters   %03.2f", static_cast<double>(scan.Read(kCpuFilters))),
            Formatted(" Mixing    %03.2f", static_cast<double>(scan.Read(kCpuMixing))),
            Formatted("DO TICK         %03.2f", static_cast<double>(totals.tick)),
            Formatted("MASTER          %03.2f", static_cast<double>(totals.master)),
            Formatted(" Send      %03.2f", static_cast<double>(scan.Read(kCpuSend))),
            Formatted(" Clipping  %03.2f", static_cast<double>(scan.Read(kCpuClipping))),
            Formatted("EFFECTS         %03.2f", static_cast<double>(totals.effects)),
            {},
            Formatted("TOTAL           %03.2f", static_cast<double>(totals.Total())),
            Formatted("Aprox MHZ       %03.2f", static_cast<double>(scan.CyclesPerSecond() * kHertzInMegahertz))};
}

std::vector<std::string> CpuSlotReport(const CpuScan& scan) {
    constexpr std::uint32_t kScannedSlots = 8;
    std::vector<std::string> lines{" #  Copy Proc. Mix"};
    for (std::uint32_t slot = 0; slot < kScannedSlots; ++slot)
        lines.push_back(Formatted(" %X  %03.2f %03.2f %03.2f", slot, static_cast<double>(scan.Read(kCpuSlotCopy + slot)),
                                  static_cast<double>(scan.Read(kCpuSlotProcess + slot)),
                                  static_cast<double>(scan.Read(kCpuSlotMix + slot))));
    return lines;
}

void CpuScanScreen::PaintBackground() { PaintLayout(kCpuScanLayout); }

void CpuScanScreen::PaintControls() {
    if (!HasPainted()) return;
    const CpuScan& scan = *Player().GetMixer().cpuScan;
    PrintLines(kCpuPlayer, CpuReport(scan));
    PrintLines(kCpuEffects, CpuSlotReport(scan));
    DeclareButtons(this, kCpuScanLayout, kRows);
}

void CpuScanScreen::PrintLines(int recess, const std::vector<std::string>& lines) {
    const LayoutItem& item = ItemOf(kCpuScanLayout, recess);
    int y = item.y + 4;
    for (const std::string& line : lines) {
        Text().m_fontStd.PrintClipped(item.x + 8, y, (item.width - 12) / 8, line);
        y += kTextRowHeight;
    }
}

void CpuScanScreen::OnExit(ControlRecord&) { Ui().ToggleScreen(kScreenCpuScan); }

}  // namespace vonta
