// The pattern view: the rows around the cursor, which stays in the middle, as text; the selection by mouse; and the
// scrollbar when the song has more channels than are shown.
#pragma once

#include <array>
#include <cstdint>

#include "interface/screens/Screen.h"
#include "interface/view/PatternView.h"

namespace vonta {

class PatternScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;

    void OnSelect(ControlRecord& record);
    void OnSelectOutside(ControlRecord& record);
    void OnLeft(ControlRecord& record);
    void OnRight(ControlRecord& record);
    void OnScroll(ControlRecord& record);

private:
    const PatternView& View() const;
    const EditValues& Values() const;
    int ShownTracks() const;                     // of the song, in the view
    int Rows() const;                            // of the view, with the header's
    bool HasScrollbar() const;
    bool IsRow(int row) const;                   // of the pattern

    void PaintRowGrounds();
    void PaintSelection();
    void PaintTrackLines();
    void PaintCursor();
    void PaintHeader();
    void PaintRow(int row, int y);
    void PaintCell(int row, int track, int y, std::uint32_t colour);
    void DeclareScrollbar();
    std::uint32_t CellColour(const Cell& cell, int row, int channel, std::uint32_t plain) const;
    void TakeInstrumentColours();
    void ScrollTo(int firstChannel);

    std::array<std::uint32_t, kMaxInstruments> colours_{};   // of this frame, packed; 0: the plain one
};

}  // namespace vonta
