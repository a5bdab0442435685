// What wrappers hold of the document. A script may keep a wrapper of a part longer than the part lives: a song is
// replaced, an instrument moved or dropped. So none is trusted to be there: each use asks Find, which looks the part up
// in what owns it.
#pragma once

#include <memory>
#include <optional>

#include "engine/SndPlayer.h"
#include "song/Song.h"

namespace vonta {

// A song that a script made or loaded, as long as the player has not taken it; else the one that the player has.
struct HeldSong {
    std::unique_ptr<Song> owned;
    Song* song = nullptr;

    explicit HeldSong(std::unique_ptr<Song> taken) : owned(std::move(taken)), song(owned.get()) {}
    explicit HeldSong(Song& players) : song(&players) {}
    Song* Find() const;                              // null once it has gone
    bool IsCurrent() const;                          // the player has it
};

struct HeldInstrument {
    std::unique_ptr<Instrument> owned;               // until a song takes it
    std::shared_ptr<HeldSong> song;
    Instrument* instrument = nullptr;

    explicit HeldInstrument(std::unique_ptr<Instrument> taken) : owned(std::move(taken)), instrument(owned.get()) {}
    HeldInstrument(std::shared_ptr<HeldSong> parent, Instrument* part) : song(std::move(parent)), instrument(part) {}
    Instrument* Find() const;
};

struct HeldSample {
    std::unique_ptr<Sample> owned;                   // until an instrument takes it
    std::shared_ptr<HeldInstrument> instrument;
    Sample* sample = nullptr;

    explicit HeldSample(std::unique_ptr<Sample> taken) : owned(std::move(taken)), sample(owned.get()) {}
    HeldSample(std::shared_ptr<HeldInstrument> parent, Sample* part) : instrument(std::move(parent)), sample(part) {}
    Sample* Find() const;
};

// A change of what the player may be reading: if the song is its own, it is held between two blocks while this lives.
class SongEdit {
public:
    enum class Frees : bool { Nothing, Sound };      // waves, instruments: what notes that sound point into

    SongEdit(const HeldSong* song, Frees frees = Frees::Nothing);

private:
    std::optional<CycleHold> hold_;
};

inline const HeldSong* SongOf(const HeldInstrument& held) { return held.song.get(); }
inline const HeldSong* SongOf(const HeldSample& held) { return held.instrument ? SongOf(*held.instrument) : nullptr; }

}  // namespace vonta
