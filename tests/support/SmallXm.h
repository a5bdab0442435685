// A song file that sounds and lasts for half a second and a row before it begins, and one that runs in a circle.
#pragma once

#include <string>
#include <vector>

#include "tests/support/XmBuilder.h"

namespace vonta::test {

inline XmBuilder SmallXm() {
    XmBuilder xm;
    xm.title = "A small song";
    // Four rows of one channel and of another: C-4 of instrument 1 at first, then nothing.
    xm.patterns = {{4, {0x83, 49, 1, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80}, 9, 0, {}}};
    XmInstrumentRecipe instrument;
    instrument.name = "Square";
    instrument.samples = {{.name = "Up and down", .wave = {64, 0, 128, 0}, .loopStart = 0, .loopLength = 4, .type = 1}};
    xm.instruments = {instrument};
    return xm;
}

// The third row jumps back to the first.
inline XmBuilder CircleXm() {
    XmBuilder xm = SmallXm();
    xm.patterns = {{4, {0x83, 49, 1, 0x80, 0x80, 0x80, 0x98, 11, 0, 0x80, 0x80, 0x80}, 9, 0, {}}};
    return xm;
}

inline std::string AsText(const std::vector<std::uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

}  // namespace vonta::test
