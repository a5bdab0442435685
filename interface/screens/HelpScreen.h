// Three texts of the data pack, read at the first opening. One that cannot be read is an empty page.
#pragma once

#include <array>

#include "interface/screens/Screen.h"
#include "interface/screens/ScrolledText.h"

namespace vonta {

class HelpScreen final : public Screen {
public:
    static constexpr int kPages = 3;

    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;
    bool OnWheel(int notches) override;

    const ScrolledText& Page(int page) const { return pages_[static_cast<std::size_t>(page)]; }
    void OnPage(ControlRecord& record);
    void OnExit(ControlRecord& record);
    bool IsPage(std::int32_t page) const { return page == page_; }

private:
    void ReadTexts();

    std::array<ScrolledText, kPages> pages_;
    int page_ = 0;
    bool read_ = false;
};

}  // namespace vonta
