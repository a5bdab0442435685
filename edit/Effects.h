// Plug-ins of the song: effects in the mixer's slots, and synths. Null empties a slot.
#pragma once

#include <memory>

#include "edit/Editor.h"
#include "edit/StepNames.h"

namespace vonta {

void LoadEffect(Editor& editor, const Place& at, int slot, std::unique_ptr<EffectSlot> effect);
void LoadSynth(Editor& editor, const Place& at, int slot, std::unique_ptr<SynthPlugin> synth);
void ClearEffects(Editor& editor, const Place& at);

}  // namespace vonta
