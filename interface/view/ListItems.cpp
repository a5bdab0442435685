#include "interface/view/ListItems.h"

#include <algorithm>
#include <cmath>

#include "platform/Shared.h"

namespace vonta {
namespace {

EffectSlot* EffectAt(const TrackerState& state, int item) {
    if (item < 1 || item > kEffectSlots) return nullptr;
    return state.Player().GetMixer().effects[static_cast<std::size_t>(item - 1)].get();
}

// Rises to its height, stays, falls; dark for the last quarter.
float Wave(float at) {
    at -= std::floor(at);
    if (at < 0.25f) return 4 * at;
    if (at < 0.5f) return 1;
    return at < 0.75f ? (0.25f - (at - 0.5f)) * 4 : 0;
}

}  // namespace

std::string NameOfItem(const TrackerState& state, ListKind list, int item) {
    if (list == kListEffects) {
        const EffectSlot* effect = EffectAt(state, item);
        return effect ? effect->GetName() : std::string();
    }
    if (list == kListSynths) {
        const SynthPlugin* synth = state.CurrentSong().GetSynth(item - 1);
        return synth ? synth->GetName() : std::string();
    }
    const Instrument* instrument = state.CurrentSong().GetInstrument(item - 1);
    return instrument ? instrument->name : std::string();
}

bool IsItemMuted(const TrackerState& state, ListKind list, int item) {
    if (list == kListEffects) {
        const EffectSlot* effect = EffectAt(state, item);
        return effect && effect->muted;
    }
    if (list == kListSynths) {
        const SynthPlugin* synth = state.CurrentSong().GetSynth(item - 1);
        return synth && synth->muted;
    }
    const Instrument* instrument = state.CurrentSong().GetInstrument(item - 1);
    return instrument && instrument->muted;
}

void MuteNotesToCome(SndPlayer& player, int slot, bool on) {
    if (Instrument* instrument = player.GetSong().GetInstrument(slot)) Store(instrument->muted, std::uint8_t{on});
}

void ToggleItemMute(TrackerState& state, ListKind list, int item) {
    const std::uint8_t muted = IsItemMuted(state, list, item) ? 0 : 1;
    if (list == kListInstruments) {
        if (!state.CurrentSong().GetInstrument(item - 1)) return;
        MuteNotesToCome(state.Player(), item - 1, muted != 0);
        state.Player().MuteInstrument(item - 1, muted != 0);   // those that sound
    } else if (list == kListEffects) {
        if (EffectSlot* effect = EffectAt(state, item)) Store(effect->muted, muted);
    } else if (SynthPlugin* synth = state.CurrentSong().GetSynth(item - 1)) {
        Store(synth->muted, muted);
    }
}

std::uint32_t RainbowColour(float place) {
    place = std::clamp(place, 0.0f, 1.0f);
    const auto byte = [](float value) { return static_cast<std::uint32_t>(Wave(value) * 255.0f); };
    return byte(place + 0.33f) << 16 | byte(place + 0.66f) << 8 | byte(place);
}

}  // namespace vonta
