// What the pattern view shows of a cell, as characters. '$' and "*+," are signs of the pattern's fonts: an empty dot
// and the note off.
#pragma once

#include <string>
#include <string_view>

#include "song/Pattern.h"

namespace vonta {

struct PatternView;

constexpr int kNoteLength = 3, kInstrumentLength = 2, kVolumeLength = 2, kEffectLength = 3;   // characters of the fields

std::string_view NoteText(int note);             // "C#4"; any number that is no note shows as empty
char EffectCharacter(int effect);                // '0' to 'X'; the last for what is beyond
// The fields that the layout has, one behind the other.
std::string CellText(const Cell& cell, const PatternView& view);
std::string RowText(int row, bool hex);          // two characters; of decimal numbers the last two digits

}  // namespace vonta
