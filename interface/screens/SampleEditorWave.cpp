// The wave on view: its picture, and the mouse in it.
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "interface/screens/SampleEditorScreen.h"
#include "interface/TrackerInterface.h"
#include "interface/widgets/Formatted.h"
#include "platform/Shared.h"

namespace vonta {
namespace {

constexpr float kRowsOfValue = 0.0019989014f;    // pixels from the centre line: 65 at full scale
constexpr int kMonoCentre = 379, kLeftCentre = 313, kRightCentre = 444;   // y
constexpr int kBandHeight = kWaveBottom - kWaveTop;
constexpr int kMarkerSize = 20;
constexpr int kMarkerEndTop = 492;               // y of the end's region
constexpr int kLeastThumb = 8;                   // pixels
constexpr std::uint32_t kHeldEvents = kOnLeftHeld | kOnRightHeld;

const LayoutItem& Item(int id) { return ItemOf(kSampleEditorLayout, id); }

int RowOf(int centre, float value) {
    const float row = static_cast<float>(centre) + value * kRowsOfValue;
    return row >= kWaveTop && row <= kWaveBottom ? static_cast<int>(row) : row < kWaveTop ? kWaveTop : kWaveBottom;
}

// A control of the wave follows the mouse each frame, and beyond its edges.
ControlRecord Following(std::int32_t param) {
    ControlRecord record;
    record.param = param;
    record.events = kHeldEvents;
    record.useTicks = false;
    return record;
}

// Where the thumb of the scroll bar lies on its groove.
struct Thumb {
    int x, width;
};
Thumb ThumbOf(const WaveView& view, int groove) {
    const double total = static_cast<double>(std::max<std::int64_t>(view.Total(), 1));
    const double shown = groove * static_cast<double>(view.Frames()) / total;
    const int width = std::clamp(static_cast<int>(shown), kLeastThumb, groove);
    const double room = std::max(total - static_cast<double>(view.Frames()), 1.0);
    return {static_cast<int>((groove - width) * static_cast<double>(view.First()) / room), width};
}

}  // namespace

void SampleEditorScreen::PaintSelection(const Sample& sample) {
    if (!sample.selActive) return;
    std::int64_t from = view_.ColumnOf(sample.selStart), to = view_.ColumnOf(sample.selEnd);
    if (view_.IsWhole() && std::max(from, to) >= WaveView::kColumns) return;
    if (from == to) to + 1 < WaveView::kColumns ? ++to : --from;
    from = std::max<std::int64_t>(from, 0);
    to = std::min<std::int64_t>(to, WaveView::kColumns);
    if (from >= to) return;
    Surfaces().BlitRect(static_cast<int>(from), kWaveTop, Look().originX, Look().originY, static_cast<int>(to - from),
                        kBandHeight, static_cast<int>(Look().surface), false);
}

int SampleEditorScreen::MarkerColumn(const Sample& sample, bool end) const {
    const std::int64_t column = view_.ColumnOf(end ? sample.data->loopEnd : sample.data->loopStart);
    return static_cast<int>(std::clamp<std::int64_t>(column, -kMarkerSize, WaveView::kColumns + kMarkerSize));
}

void SampleEditorScreen::PaintMarkers(const Sample& sample) {
    if (sample.data->loopType == VTSAMPLE_LOOP_NONE || sample.Count() == 0) return;
    Surfaces().BlitToBack(MarkerColumn(sample, false) - kMarkerSize / 2, kWaveTop,
                          Pictures().LoadSkinBitmap(kLoopStartPicture));
    Surfaces().BlitToBack(MarkerColumn(sample, true) - kMarkerSize / 2, kMarkerEndTop,
                          Pictures().LoadSkinBitmap(kLoopEndPicture));
}

void SampleEditorScreen::PaintProgress() {
    if (!work_) return;
    constexpr Rect kBar{270, 386, 260, 6};
    Surfaces().FillBack(kBar, Surfaces().PackColour(20, 24, 30));
    Surfaces().FillBack({kBar.x, kBar.y, static_cast<int>(kBar.width * work_->Done()), kBar.height},
                        Pictures().Colours().m_colHighlight);
}

void SampleEditorScreen::PaintPixels() {
    const Sample* sample = OnView();
    if (!sample) return;
    DrawWaves(*sample);
    DrawReadings(*sample);
    if (work_)
        Text().m_fontStd.Print(286, 366, Formatted("Resampling %3i %%, Escape ends",
                                                   static_cast<int>(100 * work_->Done())));
}

// Single points of the wave, never a scan of it: the cost is that of the columns, however long the wave is.
void SampleEditorScreen::DrawWaves(const Sample& sample) {
    const float* wave = sample.Wave();
    if (!wave) return;
    const bool stereo = sample.Channels() == 2;
    std::array<std::pair<int, int>, WaveView::kColumns + 1> line;
    const int points = std::min(view_.Points(), static_cast<int>(line.size()));
    for (int side = 0; side < (stereo ? 2 : 1); ++side) {
        const int centre = !stereo ? kMonoCentre : side == 0 ? kLeftCentre : kRightCentre;
        Surfaces().DrawLine(0, centre, WaveView::kColumns - 1, centre, Pictures().Colours().m_colLines);
        for (int i = 0; i < points; ++i) {
            const WaveView::Point point = view_.PointAt(i);
            line[static_cast<std::size_t>(i)] = {point.column, RowOf(centre, wave[point.floats + side])};
        }
        Surfaces().DrawPolyline(line.data(), points, Pictures().Colours().m_colLines);
    }
}

void SampleEditorScreen::DrawReadings(const Sample& sample) {
    const ScopeTap& scope = Player().GetMixer().scope;
    for (int track = 0; track < kTracks; ++track) {
        if (!scope.IsActive(track) || scope.InstrumentOf(track) != At().instrument) continue;
        for (const ScopeTap::Reading& reading : scope.ReadingsOf(track)) {
            if (!sample.Wave() || reading.wave != sample.Wave()) continue;
            const int column = view_.ColumnOfReading(reading.position);
            if (column < 0) continue;
            Surfaces().DrawLine(column, kWaveTop, column, kWaveBottom, Pictures().Colours().m_colHighlight);
        }
    }
}

void SampleEditorScreen::DeclareMarkers(const Sample& sample) {
    if (sample.data->loopType == VTSAMPLE_LOOP_NONE || sample.Count() == 0) return;
    for (const bool end : {false, true}) {
        const int x = MarkerColumn(sample, end) - kMarkerSize / 2, y = end ? kMarkerEndTop : kWaveTop;
        const auto onMarker = Bind<&SampleEditorScreen::OnMarker>(this);
        Regions().AddRegion(x, y, x + kMarkerSize - 1, y + kMarkerSize - 1, onMarker, onMarker, Following(end));
        const int mouseX = Ui().Keys().MouseX(), mouseY = Ui().Keys().MouseY(), column = x + kMarkerSize / 2;
        const bool under = mouseX >= x && mouseX < x + kMarkerSize && mouseY >= y && mouseY < y + kMarkerSize;
        if (under && !Regions().IsBlitMode() && column >= 0 && column < WaveView::kColumns)
            Surfaces().DrawLine(column, kWaveTop, column, kWaveBottom, Pictures().Colours().m_colPoints);
    }
}

void SampleEditorScreen::DeclareWave() {
    const auto onWave = Bind<&SampleEditorScreen::OnWave>(this);
    Regions().AddRegion(0, kWaveTop, WaveView::kColumns - 1, kWaveBottom, onWave, onWave, Following(0));
}

void SampleEditorScreen::DeclareScroll() {
    const LayoutItem& bar = Item(kSmpScroll);
    const auto onScroll = Bind<&SampleEditorScreen::OnScroll>(this);
    Regions().AddRegion(bar.x, bar.y, bar.x + bar.width - 1, bar.y + bar.height - 1, onScroll, onScroll, Following(0));
    if (!Regions().IsBlitMode()) return;
    const Thumb thumb = ThumbOf(view_, bar.width);
    Surfaces().BlitRect(bar.x + thumb.x, bar.y, Look().originX, Look().originY, thumb.width, bar.height,
                        static_cast<int>(Look().surface), false);
}

// The marker keeps its distance to the mouse. Every drag is one step.
void SampleEditorScreen::OnMarker(ControlRecord& record) {
    const Sample* sample = OnView();
    if (!sample || !record.leftNow) return;
    const bool end = record.param == 1;
    if (record.first) {
        grabbed_ = MarkerColumn(*sample, end);
        Edits().Steps().SetGesture(++drags_);
    }
    if (record.first && record.dragX == 0) return;
    const auto floats = view_.FloatsAt(static_cast<int>(grabbed_) + record.dragX);
    (end ? SetLoopEnd : SetLoopStart)(Edits(), At(), floats);
}

// The left button selects, or with Shift plays from the mouse on; the right one lets go of the selection.
void SampleEditorScreen::OnWave(ControlRecord& record) {
    const Sample* sample = OnView();
    if (!sample) return;
    if (!record.leftNow) return SelectNone();
    const std::int64_t here = view_.FloatsAt(record.x);
    if (record.first && (playsAtMouse_ || Ui().ShiftHeld())) {
        m_nSelAnchor = -1;
        PlayFrom(here, sample->Count());
    } else if (record.first) {
        m_nSelAnchor = view_.FloatsAt(record.x - record.dragX);
    }
    if (m_nSelAnchor >= 0) SelectRange(Edits(), At(), std::min(here, m_nSelAnchor), std::max(here, m_nSelAnchor));
}

// Beside the thumb the bar brings it under the mouse.
void SampleEditorScreen::OnScroll(ControlRecord& record) {
    if (view_.IsWhole() || !record.leftNow) return;
    const int groove = Item(kSmpScroll).width, pressed = record.x - record.dragX;
    const Thumb thumb = ThumbOf(view_, groove);
    const bool onThumb = pressed >= thumb.x && pressed < thumb.x + thumb.width;
    if (record.first) grabbed_ = onThumb ? pressed - thumb.x : thumb.width / 2;
    const double part = static_cast<double>(record.x - grabbed_) / std::max(groove - thumb.width, 1);
    view_.ScrollTo(std::llround(std::clamp(part, 0.0, 1.0) * static_cast<double>(view_.Total() - view_.Frames())));
}

bool SampleEditorScreen::OnWheelAt(int x, int y, int notches) {
    if (!OnView() || y < kWaveTop || y > kWaveBottom || x < 0 || x >= WaveView::kColumns) return false;
    view_.ZoomAt(x, notches);
    return true;
}

}  // namespace vonta
