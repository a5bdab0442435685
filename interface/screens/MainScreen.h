// The main panel: the list of the kind that the screen below works on, the samples of the selected instrument, the
// song's title, and transport.
#pragma once

#include <string>

#include "interface/screens/Screen.h"

namespace vonta {

class MainScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;

    void OnPlay(ControlRecord& record);
    void OnRecord(ControlRecord& record);
    void OnSolo(ControlRecord& record);
    void OnSoloChannel(ControlRecord& record);
    void OnPanic(ControlRecord& record);
    void OnColours(ControlRecord& record);
    void OnWindowMode(ControlRecord& record);
    void OnBank(ControlRecord& record);
    void OnBlock(ControlRecord& record);
    void OnMute(ControlRecord& record);
    void OnScrollSamples(ControlRecord& record);

    bool IsPlaying(std::int32_t) const;
    bool IsRecording(std::int32_t) const;
    bool IsSolo(std::int32_t) const;
    bool IsSoloChannel(std::int32_t) const;
    bool ShowsColours(std::int32_t) const;
    bool IsBank(std::int32_t) const;
    bool IsBlock(std::int32_t block) const;
    bool IsMuted(std::int32_t row) const;

private:
    int ItemOfRow(int row) const;                // from 1
    int SampleOfRow(int row) const;
    void PaintItems();
    void PaintItem(int row);
    void PaintSamples();
    void PaintMark(int list, int row);           // of a selected row
    void PrintName(const LayoutItem& recess, int y, const std::string& name, std::uint32_t colour);
    std::uint32_t ColourOf(int item) const;      // packed; of the name

    void OnItem(ControlRecord& record);
    void OnSource(ControlRecord& record);
    void OnSample(ControlRecord& record);
    void OnSampleSource(ControlRecord& record);
    void OnSampleSlider(ControlRecord& record);
    void OnTitle(ControlRecord& record);
    void EditInstrumentName(int instrument);
    void EditSampleName(int instrument, int sample);
};

}  // namespace vonta
