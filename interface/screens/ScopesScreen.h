// The scopes panel: the levels and waves of the output, the pattern list, the numbers of the song and its clock.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "interface/screens/Screen.h"

namespace vonta {

class ScopesScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;
    void PaintPixels() override;

    template <void (TrackerState::*operation)(int)>
    void OnChange(ControlRecord& record) { (State().*operation)(record.param); }
    template <void (TrackerState::*operation)()>
    void OnOperation(ControlRecord&) { (State().*operation)(); }
    void OnPositionSlider(ControlRecord& record);

private:
    void DeclareSlider();
    void PrintPatternList();
    void PrintNumbers();
    void PrintPresentTempo();
    void PrintClock();
    void PaintLevel(int side);

    std::array<float, 2> level_{}, peak_{};      // 0 to 1; they fall back slowly
    std::uint32_t playedMs_ = 0;                 // when it last played
    std::uint32_t lastPaint_ = 0;                // milliseconds
};

}  // namespace vonta
