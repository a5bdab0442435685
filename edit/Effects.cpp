#include "edit/Effects.h"

#include <utility>

namespace vonta {

void LoadEffect(Editor& editor, const Place& at, int slot, std::unique_ptr<EffectSlot> effect) {
    const Editor::StepScope step(editor, effect ? kStepLoadEffect : kStepDeleteEffect, at);
    editor.SetEffect(slot, std::move(effect));
}

void LoadSynth(Editor& editor, const Place& at, int slot, std::unique_ptr<SynthPlugin> synth) {
    const Editor::StepScope step(editor, synth ? kStepLoadSynth : kStepDeleteSynth, at);
    editor.SetSynth(slot, std::move(synth));
}

void ClearEffects(Editor& editor, const Place& at) {
    const Editor::StepScope step(editor, kStepClearEffects, at);
    for (int slot = 0; slot < kEffectSlots; ++slot) editor.SetEffect(slot, nullptr);
}

}  // namespace vonta
