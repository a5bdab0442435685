#include "interface/screens/ScrolledText.h"

#include <algorithm>

#include "interface/layout/TextLayouts.h"
#include "interface/video/Font.h"

namespace vonta {
namespace {

constexpr int kTabStop = 8;
constexpr int kMargin = 4;                       // pixels around the text

bool Continues(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// Puts one line into the list, in pieces that fit.
class LineBreaker {
public:
    LineBreaker(std::vector<std::string>& lines, int columns) : lines_(lines), columns_(std::max(columns, 1)) {}

    void Add(char byte) {
        if (byte == '\t') return AddTab();
        if (static_cast<unsigned char>(byte) < ' ') return;
        if (!Continues(byte)) {
            if (width_ == columns_) Break();
            ++width_;
        }
        line_ += byte;
    }

    void End() {
        lines_.push_back(std::move(line_));
        line_.clear();
        width_ = 0;
    }

private:
    void AddTab() {
        do Add(' ');
        while (width_ % kTabStop != 0);
    }

    void Break() {
        const auto blank = line_.find_last_of(' ');
        const bool atBlank = blank != std::string::npos && line_.find_first_not_of(' ') < blank;
        std::string rest = atBlank ? line_.substr(blank + 1) : std::string();
        if (atBlank) line_.resize(blank);
        End();
        line_ = std::move(rest);
        width_ = static_cast<int>(std::count_if(line_.begin(), line_.end(), [](char byte) { return !Continues(byte); }));
    }

    std::vector<std::string>& lines_;
    int columns_;
    std::string line_;
    int width_ = 0;                              // characters of line_
};

}  // namespace

std::vector<std::string> BreakLines(std::string_view utf8, int columns) {
    std::vector<std::string> lines;
    LineBreaker breaker(lines, columns);
    for (const char byte : utf8)
        if (byte == '\n') breaker.End();
        else breaker.Add(byte);
    if (!utf8.empty() && utf8.back() != '\n') breaker.End();
    return lines;
}

void ScrolledText::SetText(std::string_view utf8, int columns) {
    lines_ = BreakLines(utf8.substr(0, kMaxBytes), columns);
    first_ = 0;
}

int ScrolledText::Last() const { return std::max(Lines() - rows_, 0); }
void ScrolledText::Scroll(int lines) { first_ = std::clamp(first_ + lines, 0, Last()); }

void ScrolledText::ScrollTo(float place) {
    first_ = static_cast<int>(std::clamp(place, 0.0f, 1.0f) * static_cast<float>(Last()) + 0.5f);
}

void ScrolledText::Paint(const Font& font, const Items& items, MouseRegions& regions, const PressedLook& look) {
    rows_ = std::max((items.recess.height - 2) / kTextRowHeight, 1);
    Scroll(0);
    const int end = std::min(first_ + rows_, Lines());
    const int columns = (items.recess.width - 2 * kMargin) / std::max(font.Advance(), 1);
    for (int line = first_; line < end; ++line)
        font.PrintClipped(items.recess.x + kMargin, items.recess.y + 1 + (line - first_) * kTextRowHeight, columns,
                          lines_[static_cast<std::size_t>(line)]);

    ControlRecord record;
    record.events = kOnLeftPress | kOnLeftHeld;
    record.param = -1;
    regions.Button(items.up, Bind<&ScrolledText::OnButton>(this), look, record);
    record.param = 1;
    regions.Button(items.down, Bind<&ScrolledText::OnButton>(this), look, record);
    const LayoutItem& slider = items.slider;
    regions.VSlider({slider.x, slider.y, slider.x + slider.width - 1, slider.y + slider.height - 1, Last() + 1, 0, first_},
                    Bind<&ScrolledText::OnSlider>(this), Bind<&ScrolledText::OnSlider>(this), look);
}

void ScrolledText::OnButton(ControlRecord& record) { Scroll(record.param); }
void ScrolledText::OnSlider(ControlRecord& record) { ScrollTo(record.relY); }

}  // namespace vonta
