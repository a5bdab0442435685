// The table of effect commands: one row each, which the player, the help page and the editor all read.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "song/Instrument.h"
#include "song/Pattern.h"

namespace vonta {

class Sequencer;

enum EffectCode : std::uint8_t {
    kArpeggio = 0, kPortaUp, kPortaDown, kTonePorta, kVibrato, kTonePortaSlide, kVibratoSlide, kTremolo, kSetPan,
    kSampleOffset, kVolumeSlide, kJump, kSetVolume, kBreak, kExtended, kSpeed, kFxOnOff, kFilterOnOff, kNoteCutoff,
    kNoteResonance, kXDelay,
};

enum ExtendedCode : std::uint8_t {
    kFinePortaUp = 1, kFinePortaDown = 2, kPatternLoop = 6, kRetrigger = 9, kFineVolumeUp = 10, kFineVolumeDown = 11,
    kNoteCut = 12, kNoteDelay = 13, kPatternDelay = 14,
};

enum VolumeColumnCode : std::uint8_t {
    kColumnSlideDown = 6, kColumnSlideUp = 7, kColumnFineDown = 8, kColumnFineUp = 9, kColumnPan = 12,
};

// One cell being worked on its row's tick.
struct RowCell {
    Cell cell;
    int channel = 0;
    std::uint8_t effect = 0;                  // after the instrument's map
    std::uint8_t high = 0, low = 0;           // nibbles of the parameter
    std::uint8_t formerCode = 0;              // tick code that ran on the row before
    bool startedNote = false;
    bool songEnd = false;                     // out: this cell ends the song
    std::uint32_t time = 0;                   // milliseconds, the same for the whole row
};

using RowEffect = void (*)(Sequencer& sequencer, RowCell& row);
using TickEffect = void (*)(Sequencer& sequencer, int channel, int param, int tick);

struct EffectRow {
    std::string_view name;                    // ten characters, as the screens show it
    RowEffect onRow = nullptr;                // worked on the row's tick
    TickEffect onTick = nullptr;              // worked on the other ticks once its row has set it running
};

extern const std::array<EffectRow, kEffectCodes> kEffects;

// Whether an `activeEffect` is an arpeggio, after which the note returns.
bool IsArpeggio(std::uint16_t activeEffect);
// The volume that a note of such a cell starts at, above kMaxVolume for the sample's own: a column command is none.
int StartVolume(std::uint16_t cellVolume);

// Volume-column command of a cell whose volume has kVolumeCommand set; once, on the row's tick.
void PerformVolumeColumn(Sequencer& sequencer, int channel, std::uint16_t volume);
// What runs on the ticks between rows.
void PerformTickEffects(Sequencer& sequencer, int channel, int tick);

}  // namespace vonta
