#include "interface/view/CellText.h"

#include <algorithm>
#include <array>

#include "interface/view/PatternView.h"
#include "interface/widgets/Formatted.h"

namespace vonta {
namespace {

constexpr int kNotes = 128, kNoteTexts = 130;
constexpr std::string_view kEffects = "0123456789ABCDEFGHIJKLMNOPQRSTUVWX";

using NoteName = std::array<char, kNoteLength>;

constexpr std::array<NoteName, kNoteTexts> MakeNoteNames() {
    constexpr std::string_view kNames = "C-C#D-D#E-F-F#G-G#A-A#B-", kOctaves = "0123456789A";
    std::array<NoteName, kNoteTexts> names{};
    for (std::size_t note = 0; note < kNotes; ++note)
        names[note] = {kNames[note % 12 * 2], kNames[note % 12 * 2 + 1], kOctaves[note / 12]};
    names[kNoNote] = {'$', '$', '$'};
    names[kNoteOff] = {'*', '+', ','};
    return names;
}
constexpr auto kNoteNames = MakeNoteNames();

std::string Digits(int value) { return Formatted("%02X", static_cast<unsigned>(value)); }

}  // namespace

std::string_view NoteText(int note) {
    const NoteName& name = kNoteNames[static_cast<std::size_t>(note >= 0 && note < kNoteTexts ? note : kNoNote)];
    return {name.data(), name.size()};
}

char EffectCharacter(int effect) {
    return kEffects[static_cast<std::size_t>(std::clamp(effect, 0, static_cast<int>(kEffects.size()) - 1))];
}

std::string CellText(const Cell& cell, const PatternView& view) {
    std::string text(NoteText(cell.note));
    if (view.instrument.font) text += cell.instrument ? Digits(cell.instrument) : "  ";
    if (view.volume.font) text += cell.volume < kNoVolume ? Digits(cell.volume) : "$$";
    if (view.effect.font) text += EffectCharacter(cell.effect) + Digits(cell.param);
    return text;
}

std::string RowText(int row, bool hex) { return hex ? Digits(row) : Formatted("%02i", row % 100); }

}  // namespace vonta
