// What the main panel lists, whichever kind it is: instruments of the song, its synths, or the effect slots.
#pragma once

#include <cstdint>
#include <string>

#include "interface/view/TrackerState.h"

namespace vonta {

// item counts from 1; one without an object is empty, not muted, and cannot be muted.
std::string NameOfItem(const TrackerState& state, ListKind list, int item);
bool IsItemMuted(const TrackerState& state, ListKind list, int item);
void ToggleItemMute(TrackerState& state, ListKind list, int item);
void MuteNotesToCome(SndPlayer& player, int slot, bool on);      // of an instrument; no step, as all mutes

constexpr std::uint32_t kPlainInstrument = 0xE0E0E0;

// 0x00RRGGBB of a place on the rainbow, 0 to 1.
std::uint32_t RainbowColour(float place);

}  // namespace vonta
