// The hands on a song: every write of a user goes through here and is remembered, so that it can be taken back.
//
// The operations of the editors stand beside it, one file an area: Cells.h, Ranges.h, Clipboards.h, OrderList.h,
// Numbers.h, Instruments.h, Samples.h, Effects.h, WholeSong.h. They open a step, and write with what is below; whoever
// reads the song may do so directly. Interface thread only.
#pragma once

#include <memory>
#include <string_view>

#include "edit/Changes.h"
#include "edit/Field.h"
#include "edit/Journal.h"

namespace vonta {

class Editor {
public:
    explicit Editor(SndPlayer& player) : player_(player), journal_(player) {}
    Editor(const Editor&) = delete;
    Editor& operator=(const Editor&) = delete;

    SndPlayer& Player() const { return player_; }
    Song& GetSong() const { return player_.GetSong(); }
    Journal& Steps() { return journal_; }
    const Journal& Steps() const { return journal_; }

    bool IsChanged() const { return journal_.IsChanged(); }      // since it was last saved or loaded
    void MarkSaved() { journal_.MarkSaved(); }
    void MarkChanged() { journal_.MarkChanged(); }

    // A step of the user's, from here to the end of the object. Inside another one it is part of that.
    class StepScope {
    public:
        StepScope(Editor& editor, std::string_view name, const Place& place) : journal_(editor.journal_) {
            journal_.Begin(name, place);
        }
        ~StepScope() { journal_.End(); }
        StepScope(const StepScope&) = delete;
        StepScope& operator=(const StepScope&) = delete;

    private:
        Journal& journal_;
    };

    // --- Writes, inside a StepScope. Each does nothing where nothing would change. Numbers outside write nothing.
    void SetCell(int pattern, int row, int track, const Cell& cell);
    void SetRows(int pattern, int rows);                         // 1 to 256; what is cut off can be had back
    void SetPattern(int number, std::unique_ptr<Pattern> pattern);       // or null; raises the song's count
    // Null if the number has no pattern and none can be made. rows: of a new one.
    Pattern* EnsurePattern(int number, int rows = kDefaultRows);

    template <class T>
    void Set(const Field<T>& field, T value);

    // The field has its value already; `former` is what it held.
    template <class T>
    void Wrote(const Field<T>& field, T former);

    void SetSpeed(std::uint32_t bpm, std::uint32_t tempo);       // at the song's start, and of what plays
    void SetMasterVolume(float value);                           // likewise

    // Each takes the object or null; what was there goes into the journal. Counts of the song and of the instrument rise.
    void SetInstrument(int slot, std::unique_ptr<Instrument> instrument);
    void SetSample(int instrument, int sample, std::unique_ptr<Sample> object);
    void ExchangeInstruments(int a, int b);
    void ExchangeSamples(int instrumentA, int sampleA, int instrumentB, int sampleB);   // both of the sample kind
    // The wave, loop and selection of what is there, which keeps all else; `wave` has what the sample is to have.
    void SetWave(int instrument, int sample, std::unique_ptr<Sample> wave);
    void SetSynth(int slot, std::unique_ptr<SynthPlugin> synth);
    void SetEffect(int slot, std::unique_ptr<EffectSlot> effect);        // initialised here; one that fails is dropped
    void SetSong(std::unique_ptr<Song> song);                    // counts as changed until MarkSaved

private:
    void Record(std::unique_ptr<Change> change);                 // makes it first

    SndPlayer& player_;
    Journal journal_;
};

template <class T>
void Editor::Set(const Field<T>& field, T value) {
    T* at = field.find(GetSong());
    if (!at || *at == value) return;
    Record(std::make_unique<ValueChange<T>>(field, at, std::move(value)));
}

template <class T>
void Editor::Wrote(const Field<T>& field, T former) {
    T* at = field.find(GetSong());
    if (at && !(*at == former)) journal_.Add(std::make_unique<ValueChange<T>>(field, at, std::move(former)));
}

}  // namespace vonta
