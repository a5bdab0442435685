// What the song consists of, and its comment.
#pragma once

#include <string>

#include "interface/screens/Screen.h"
#include "interface/screens/ScrolledText.h"

namespace vonta {

class SongInfoScreen final : public Screen {
public:
    using Screen::Screen;
    void PaintBackground() override;
    void PaintControls() override;
    bool OnWheel(int notches) override;

    void OnExit(ControlRecord& record);

private:
    void PrintValue(int id, const std::string& text);

    ScrolledText comment_;
    std::string shown_;                          // the comment that is broken into lines
};

}  // namespace vonta
