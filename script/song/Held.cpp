#include "script/song/Held.h"

#include <algorithm>

#include "script/Scripting.h"
#include "script/song/ScriptPlayer.h"

namespace vonta {
namespace {

template <class Places, class Part>
Part* FindIn(const Places& places, Part* part) {
    const bool there = std::ranges::any_of(places, [part](const auto& place) { return place.get() == part; });
    return there ? part : nullptr;
}

}  // namespace

bool HeldSong::IsCurrent() const {
    const Scripting* const scripting = Scripting::Current();
    return scripting && const_cast<Scripting*>(scripting)->Player().Has(*this);
}

Song* HeldSong::Find() const { return owned || IsCurrent() ? song : nullptr; }

Instrument* HeldInstrument::Find() const {
    if (owned) return instrument;
    const Song* const parent = song ? song->Find() : nullptr;
    return parent ? FindIn(parent->instruments, instrument) : nullptr;
}

Sample* HeldSample::Find() const {
    if (owned) return sample;
    const Instrument* const parent = instrument ? instrument->Find() : nullptr;
    return parent ? FindIn(parent->samples, sample) : nullptr;
}

SongEdit::SongEdit(const HeldSong* song, Frees frees) {
    if (!song || !song->IsCurrent()) return;
    SndPlayer& player = *Scripting::Current()->Player().Get();
    hold_.emplace(player);
    if (frees == Frees::Sound) player.StopNotes();
}

}  // namespace vonta
