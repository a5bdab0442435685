// The sample editor: the wave of the selected sample with its selection and loop, the edits and tools that work on it,
// and what of it is heard. It draws the wave and handles the mouse in it in SampleEditorWave.cpp; the numbers that can
// be typed are in SampleEditorNumbers.cpp.
#pragma once

#include <array>
#include <memory>
#include <string>

#include "edit/waves/ResampleWork.h"
#include "edit/waves/WaveEdit.h"
#include "interface/layout/SampleEditorLayout.h"
#include "interface/screens/Screen.h"
#include "interface/view/WaveView.h"

namespace vonta {

class SampleEditorScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintPixels() override;
    void PaintControls() override;
    bool OnWheelAt(int x, int y, int notches) override;
    bool OnAction(int action) override;          // 183 to 189
    bool OnEscape() override;                    // gives up a resampling

    const WaveView& View() const { return view_; }
    bool IsWorking() const { return work_ != nullptr; }

    void OnLoopType(ControlRecord& record);      // param: LoopType
    void OnLoopStart(ControlRecord& record);     // param: -1 or 1, as the next
    void OnLoopEnd(ControlRecord& record);
    template <void (SampleEditorScreen::*operation)()>
    void OnOperation(ControlRecord&) { (this->*operation)(); }
    void OnTool(ControlRecord& record);          // param: WaveTool
    void OnNumber(ControlRecord& record);        // param: SampleNumberField
    void OnPlayAtMouse(ControlRecord& record);
    void OnSignOfWave(ControlRecord&) {}         // has no effect on the data
    bool IsLoopType(std::int32_t type) const;
    bool PlaysAtMouse(std::int32_t) const { return playsAtMouse_; }

    void SelectAll();
    void SelectNone();
    void Delete();
    void Crop();
    void Cut();
    void Copy();
    void Paste();
    void ToggleSignOf();
    void Clone();
    void Leave();
    void ShowSelection();
    void ZoomOut();
    void Play();
    void PlaySelection();
    void Stop();
    void MixDownToMono();
    void ChangeVolume();
    void Crossfade();
    void FindLoop();
    void Resample();

private:
    Place At() const;                            // instrument and sample
    Editor& Edits() const;
    const Sample* OnView() const;                // null if there is none
    void PlayFrom(std::int64_t from, std::int64_t to);   // floats
    void TellOf(LoopWork result);
    void OnCloneAnswer(ControlRecord& record);
    void WorkOn();

    // SampleEditorWave.cpp
    void PaintSelection(const Sample& sample);
    void PaintMarkers(const Sample& sample);
    void PaintProgress();
    void DrawWaves(const Sample& sample);
    void DrawReadings(const Sample& sample);
    void DeclareMarkers(const Sample& sample);
    void DeclareWave();
    void DeclareScroll();
    int MarkerColumn(const Sample& sample, bool end) const;
    void OnMarker(ControlRecord& record);        // param: 0 start, 1 end
    void OnWave(ControlRecord& record);
    void OnScroll(ControlRecord& record);

    // SampleEditorNumbers.cpp
    void DeclareNumbers(const Sample* sample);
    std::string ShownNumber(int field, const Sample* sample) const;
    void CommitNumber();                         // once what was typed has been ended
    void PrintRight(const LayoutItem& item, const std::string& text) const;
    void PrintFacts(const Sample* sample) const;

    WaveView view_;
    SampleClip clipboard_;
    std::int64_t m_nSelAnchor = 0;               // floats: where the present drag began
    std::int64_t grabbed_ = 0;                   // a marker's or the scroll bar's place when the drag began
    std::uint32_t drags_ = 0;                    // how many there were: each is one step
    bool playsAtMouse_ = false;
    int played_ = -1;                            // channel of what was last started here
    std::unique_ptr<ResampleWork> work_;

    std::array<int, kSampleNumberFields> numbers_{0, 0, 1000, 100, 44100};   // of the tools
    int editedNumber_ = -1;                      // that is being typed
    Place editedAt_;
    std::string typed_;
};

}  // namespace vonta
