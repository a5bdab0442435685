// The kinds of changes. Every write to a song on view is one of them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "edit/Change.h"
#include "edit/Field.h"
#include "edit/Hold.h"
#include "engine/SndPlayer.h"
#include "platform/Shared.h"

namespace vonta {

// Cells, each by itself: what typing, blocks and transposes leave behind.
class CellsChange final : public Change {
public:
    void Add(int pattern, int row, int track, const Cell& former);
    void Swap(SndPlayer& player, Way way) override;
    std::size_t Bytes() const override { return sizeof *this + cells_.capacity() * sizeof(Entry); }
    void Mark(Touched& touched) const override;
    bool Append(Change& next) override;

private:
    struct Entry {
        std::uint8_t pattern, row, track;
        Cell other;
    };
    static_assert(sizeof(Entry) == 10);

    std::vector<Entry> cells_;
};

// The row count of a pattern. What lies behind a shorter one's end is emptied by a CellsChange before it.
class RowsChange final : public Change {
public:
    RowsChange(int pattern, int rows) : pattern_(pattern), other_(rows) {}
    void Swap(SndPlayer& player, Way way) override;
    std::size_t Bytes() const override { return sizeof *this; }
    void Mark(Touched& touched) const override { touched.Add({Part::Kind::Pattern, static_cast<std::uint8_t>(pattern_)}); }

private:
    int pattern_;
    std::int32_t other_;
};

// What the audio side reads by one store is exchanged so; anything larger while the block cycle is held.
template <class T>
constexpr bool kOneStore = std::is_arithmetic_v<T> || std::is_enum_v<T>;

template <class T>
class ValueChange final : public Change {
public:
    // at: where the value stands now, to tell later changes of the same one
    ValueChange(Field<T> field, const T* at, T other) : field_(std::move(field)), at_(at), other_(std::move(other)) {}

    void Swap(SndPlayer& player, Way) override {
        T* value = field_.find(player.GetSong());
        if (!value) return;
        if constexpr (kOneStore<T>) {
            const T former = vonta::Load(*value);
            vonta::Store(*value, other_);
            other_ = former;
        } else if constexpr (std::is_same_v<T, std::string>) {   // the audio side reads no texts
            std::swap(*value, other_);
        } else {
            const Hold hold(player);
            std::swap(*value, other_);
        }
    }
    std::size_t Bytes() const override { return sizeof *this; }
    void Mark(Touched& touched) const override { touched.Add(field_.part); }
    bool Covers(const Change& later) const override {
        const auto* other = dynamic_cast<const ValueChange*>(&later);
        return other && other->at_ == at_;
    }

private:
    Field<T> field_;
    const T* at_;
    T other_;
};

// The speed that the song begins with, and with it that of what plays.
class SpeedChange final : public Change {
public:
    SpeedChange(std::uint32_t bpm, std::uint32_t tempo) : bpm_(bpm), tempo_(tempo) {}
    void Swap(SndPlayer& player, Way way) override;
    std::size_t Bytes() const override { return sizeof *this; }
    void Mark(Touched& touched) const override { touched.Add({}); }
    bool Covers(const Change& later) const override { return dynamic_cast<const SpeedChange*>(&later) != nullptr; }

private:
    std::uint32_t bpm_, tempo_;
};

class MasterVolumeChange final : public Change {
public:
    explicit MasterVolumeChange(float value) : value_(value) {}
    void Swap(SndPlayer& player, Way way) override;
    std::size_t Bytes() const override { return sizeof *this; }
    void Mark(Touched& touched) const override { touched.Add({}); }
    bool Covers(const Change& later) const override { return dynamic_cast<const MasterVolumeChange*>(&later) != nullptr; }

private:
    float value_;
};

class PatternChange final : public Change {
public:
    PatternChange(int number, std::unique_ptr<Pattern> other) : number_(number), other_(std::move(other)) {}
    void Swap(SndPlayer& player, Way way) override;
    std::size_t Bytes() const override { return sizeof *this + (other_ ? sizeof(Pattern) : 0); }
    void Mark(Touched& touched) const override { touched.Add({Part::Kind::Pattern, static_cast<std::uint8_t>(number_)}); }

private:
    int number_;
    std::unique_ptr<Pattern> other_;
};

class InstrumentChange final : public Change {
public:
    InstrumentChange(int slot, std::unique_ptr<Instrument> other) : slot_(slot), other_(std::move(other)) {}
    void Swap(SndPlayer& player, Way way) override;
    std::size_t Bytes() const override;
    void Mark(Touched& touched) const override;
    bool TakesParts() const override { return other_ != nullptr; }   // what fills an empty slot takes nothing

private:
    int slot_;
    std::unique_ptr<Instrument> other_;
    std::uint32_t rate_ = 0;                     // Hz, at which the other's own synth was last worked
};

// A whole sample of an instrument that is there.
class SampleChange final : public Change {
public:
    SampleChange(int instrument, int sample, std::unique_ptr<Sample> other)
        : instrument_(instrument), sample_(sample), other_(std::move(other)) {}
    void Swap(SndPlayer& player, Way way) override;
    std::size_t Bytes() const override;
    void Mark(Touched& touched) const override;
    bool TakesParts() const override { return other_ != nullptr; }   // what fills an empty slot takes nothing

private:
    int instrument_, sample_;
    std::unique_ptr<Sample> other_;
};

// Two instruments, or two samples, change places.
class PlacesChange final : public Change {
public:
    struct Where { int instrument, sample; };    // sample -1: the whole instrument
    PlacesChange(const Where& a, const Where& b) : a_(a), b_(b) {}
    void Swap(SndPlayer& player, Way way) override;
    std::size_t Bytes() const override { return sizeof *this; }
    void Mark(Touched& touched) const override;
    bool TakesParts() const override { return true; }

private:
    Where a_, b_;
};

// The wave of a sample, its loop and the selection on it; clones of the sample go on playing what it holds.
class WaveChange final : public Change {
public:
    // other: a wave of its own or a clone's link, of nobody else
    WaveChange(int instrument, int sample, std::unique_ptr<Sample> other)
        : instrument_(instrument), sample_(sample), other_(std::move(other)) {}
    void Swap(SndPlayer& player, Way way) override;
    std::size_t Bytes() const override;
    void Mark(Touched& touched) const override;

private:
    int instrument_, sample_;
    std::unique_ptr<Sample> other_;
};

// A plug-in of the song, with what the file said of one that could not be loaded.
class SynthChange final : public Change {
public:
    // rate: at which `other` was initialised, Hz
    SynthChange(int slot, std::unique_ptr<SynthPlugin> other, std::uint32_t rate)
        : slot_(slot), other_(std::move(other)), rate_(rate) {}
    void Swap(SndPlayer& player, Way way) override;
    std::size_t Bytes() const override { return sizeof *this + missing_.size(); }
    void Mark(Touched& touched) const override { touched.Add({}); }
    bool TakesParts() const override { return other_ != nullptr; }

private:
    int slot_;
    std::unique_ptr<SynthPlugin> other_;
    std::vector<std::uint8_t> missing_;
    std::uint32_t rate_;
};

class EffectChange final : public Change {
public:
    EffectChange(int slot, std::unique_ptr<EffectSlot> other, std::uint32_t rate)
        : slot_(slot), other_(std::move(other)), rate_(rate) {}
    void Swap(SndPlayer& player, Way way) override;
    std::size_t Bytes() const override { return sizeof *this + missing_.size(); }
    void Mark(Touched& touched) const override { touched.Add({}); }
    bool TakesParts() const override { return other_ != nullptr; }

private:
    int slot_;
    std::unique_ptr<EffectSlot> other_;
    std::vector<std::uint8_t> missing_;
    std::uint32_t rate_;
};

// Another song: the whole old one waits here, with its effects.
class SongChange final : public Change {
public:
    // saved: the journal's mark of the state that is on disk, which belongs to the song
    SongChange(std::unique_ptr<Song> other, std::uint64_t& saved, std::uint64_t otherSaved)
        : other_(std::move(other)), saved_(saved), otherSaved_(otherSaved) {}
    void Swap(SndPlayer& player, Way way) override;
    std::size_t Bytes() const override;
    void Mark(Touched& touched) const override { touched.Add({Part::Kind::Song}); }
    bool TakesParts() const override { return true; }

private:
    std::unique_ptr<Song> other_;
    std::uint64_t& saved_;
    std::uint64_t otherSaved_;
};

}  // namespace vonta
