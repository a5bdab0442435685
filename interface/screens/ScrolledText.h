// A text in a recess that scrolls by lines: with two buttons, a slider and the wheel.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "interface/widgets/MouseRegions.h"

namespace vonta {

class Font;
class Video;

// At most `columns` characters a line; a longer one is broken at its last blank, if there is one. Tabs are blanks up to
// the next multiple of eight, other control characters are left out.
std::vector<std::string> BreakLines(std::string_view utf8, int columns);

class ScrolledText {
public:
    static constexpr std::size_t kMaxBytes = 1 << 20;   // more of a text is not shown

    // All of them items of one table.
    struct Items {
        const LayoutItem &recess, &up, &down, &slider;
    };

    void SetText(std::string_view utf8, int columns);    // back to the first line
    void Scroll(int lines);
    void ScrollTo(float place);                  // 0 to 1
    int First() const { return first_; }
    int Lines() const { return static_cast<int>(lines_.size()); }

    // In both passes.
    void Paint(const Font& font, const Items& items, MouseRegions& regions, const PressedLook& look);

private:
    void OnButton(ControlRecord& record);
    void OnSlider(ControlRecord& record);
    int Last() const;                            // first line of the last page

    std::vector<std::string> lines_;
    int first_ = 0;
    int rows_ = 1;                               // of the recess
};

}  // namespace vonta
