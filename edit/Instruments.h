// Instruments as wholes. Slots count from 0; each step's place names the slot that it works on.
#pragma once

#include <memory>

#include "edit/Editor.h"
#include "edit/StepNames.h"

namespace vonta {

// With one empty sample, if the slot is empty.
Instrument& EnsureInstrument(Editor& editor, const Place& at, int slot);
// What a file brought: mute and colour stay those of the slot, if the file says no colour of its own.
void LoadIntoSlot(Editor& editor, const Place& at, std::unique_ptr<Instrument> instrument);
void CopyInstrument(Editor& editor, const Place& at, int source);    // over the selected one; nothing from an empty slot
void ExchangeInstruments(Editor& editor, const Place& at, int source);
void DeleteInstrument(Editor& editor, const Place& at);
void SetInstrumentColour(Editor& editor, const Place& at, std::uint32_t rgb);

}  // namespace vonta
