// The numbers of the sample editor: loop points and what the tools are given. A click begins a new number, and when its
// typing has ended it counts, if there is one.
#include <algorithm>
#include <charconv>

#include "interface/screens/SampleEditorScreen.h"
#include "interface/TrackerInterface.h"
#include "interface/widgets/Formatted.h"

namespace vonta {
namespace {

constexpr int kMargin = 4;                       // pixels between a number and the edge of its box
constexpr int kCloneX = 26, kInstrumentSourceY = 250, kSampleSourceY = 264;   // beside the marker of the loop's start
constexpr int kDecimal = 10, kHexadecimal = 16;

struct NumberRow {
    int base, least, most;
};
// By SampleNumberField.
constexpr NumberRow kNumbers[kSampleNumberFields] = {
    {kHexadecimal, 0, 0x7FFFFFFF},
    {kHexadecimal, 0, 0x7FFFFFFF},
    {kDecimal, 1, 9999999},                      // frames
    {kDecimal, 0, 10000},                        // percent
    {kDecimal, ResampleWork::kLeastRate, ResampleWork::kMostRate},   // Hz
};

bool IsLoopPoint(int field) { return field == kNumberLoopStart || field == kNumberLoopEnd; }

}  // namespace

void SampleEditorScreen::PrintRight(const LayoutItem& item, const std::string& text) const {
    const Font& font = Text().m_fontStd;
    const int x = item.x + item.width - kMargin - font.WidthOf(text);
    font.PrintColoured(std::max(x, item.x + kMargin), item.y, Pictures().Colours().m_colText, text);
}

std::string SampleEditorScreen::ShownNumber(int field, const Sample* sample) const {
    if (field == editedNumber_) return typed_;
    if (!IsLoopPoint(field)) return Formatted("%i", numbers_[static_cast<std::size_t>(field)]);
    if (!sample) return {};
    return Formatted("%07X", field == kNumberLoopStart ? sample->data->loopStart : sample->data->loopEnd);
}

void SampleEditorScreen::DeclareNumbers(const Sample* sample) {
    for (int field = 0; field < kSampleNumberFields; ++field) {
        const LayoutItem& item = ItemOf(kSampleEditorLayout, NumberId(field));
        ControlRecord record;
        record.param = field;
        Regions().TextField(item.x, item.y, item.x + item.width - 1, item.y + item.height - 1, typed_,
                            Bind<&SampleEditorScreen::OnNumber>(this), {}, record);
        PrintRight(item, ShownNumber(field, sample));
    }
}

void SampleEditorScreen::OnNumber(ControlRecord& record) {
    CommitNumber();
    if (IsLoopPoint(record.param) && !OnView()) return;
    editedNumber_ = record.param;
    editedAt_ = At();
    typed_.clear();
    Ui().StartTextEdit(typed_);
}

void SampleEditorScreen::CommitNumber() {
    const int field = std::exchange(editedNumber_, -1);
    if (field < 0) return;
    const NumberRow& row = kNumbers[field];
    int value = 0;
    const auto [end, error] = std::from_chars(typed_.data(), typed_.data() + typed_.size(), value, row.base);
    if (end == typed_.data()) return;            // no number
    value = error != std::errc{} ? row.most : std::clamp(value, row.least, row.most);
    if (!IsLoopPoint(field)) numbers_[static_cast<std::size_t>(field)] = value;
    else if (editedAt_ == At()) (field == kNumberLoopStart ? SetLoopStart : SetLoopEnd)(Edits(), At(), value);
}

// How many frames are selected, or there are; of a clone, what it plays.
void SampleEditorScreen::PrintFacts(const Sample* sample) const {
    if (!sample) return;
    const bool selected = sample->selActive && sample->selEnd > sample->selStart;
    const std::int64_t floats = selected ? sample->selEnd - sample->selStart : std::int64_t{sample->Count()};
    PrintRight(ItemOf(kSampleEditorLayout, kSmpLength),
               Formatted("%lli", static_cast<long long>(floats / sample->Channels())));
    if (!sample->data->isClone) return;
    const bool linked = !sample->data->cloneOf.expired();
    const SampleNumber source = SampleNumber::OfCloneId(sample->data->cloneId);
    const int instrument = linked && source.instrument < 0xFF ? source.instrument + 1 : 0;
    const std::uint32_t colour = Pictures().Colours().m_colText;
    Text().m_fontStd.PrintColoured(kCloneX, kInstrumentSourceY, colour,
                                   Formatted("Instr. Source: %02X", static_cast<unsigned>(instrument)));
    Text().m_fontStd.PrintColoured(kCloneX, kSampleSourceY, colour,
                                   Formatted("Sample Source: %02i", linked ? source.sample : 0));
}

}  // namespace vonta
