// The program's own page: a picture effect, a line that scrolls, and whom we thank.
// The effect reads "data\abouttable.raw" and "data\abouttexture.raw" of the data pack, and lays "data\aboutgfx.tga"
// over it: see AboutEffect.h.
#pragma once

#include <cstdint>
#include <vector>

#include "interface/screens/Screen.h"

namespace vonta {

class AboutScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;

    void OnExit(ControlRecord& record);

private:
    void ReadEffect();
    void PaintEffect(std::uint32_t milliseconds);
    void PrintScroller(std::uint32_t milliseconds);
    void PrintCredits();

    std::vector<std::uint8_t> table_, texture_;  // empty: no effect
    std::vector<std::uint32_t> pixels_;
    bool read_ = false;
};

}  // namespace vonta
