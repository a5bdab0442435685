// Somebody who edits a song in every way that there is, at random places and with random values.
#pragma once

#include <random>

#include "app/config/Environment.h"
#include "edit/Cells.h"
#include "edit/Clipboards.h"
#include "edit/Effects.h"
#include "edit/Instruments.h"
#include "edit/Numbers.h"
#include "edit/OrderList.h"
#include "edit/Ranges.h"
#include "edit/Samples.h"
#include "edit/WholeSong.h"
#include "tests/support/FakePlugins.h"
#include "tests/support/SongBuilder.h"

namespace vonta::test {

class RandomEdits {
public:
    RandomEdits(SndPlayer& player, unsigned seed) : editor(player), random_(seed) {}

    std::unique_ptr<Song> RandomSong() {
        SongBuilder song;
        song.Channels(Between(2, 64)).Bpm(static_cast<std::uint32_t>(Between(32, 255))).Order({0, 3, 1, 3});
        for (int i = 0; i < 4; ++i) song.SineInstrument(i, static_cast<std::uint32_t>(Between(2, 300)));
        for (const int pattern : {0, 1, 3}) {
            song.Pattern(pattern, Between(1, 40));
            for (int i = 0; i < 60; ++i) song.Note(Between(0, 39), Between(0, 9), Between(0, 95), Between(0, 5), Between(0, 129), Between(0, 20), Between(0, 255));
        }
        Sample& clone = *song.Edit().GetInstrument(2)->GetSample(0);
        clone.MakeClone();
        song.Edit().LinkSample(2, 0, Between(0, 1), 0);
        song.Edit().missingEffects[5] = {1, 2, 3};
        song.Edit().fxSlots[1] = std::make_unique<FakeEffect>("one.so");
        return song.Build();
    }

    void Edit() {
        if (Between(0, 3) == 0) editor.Steps().SetGesture(static_cast<std::uint32_t>(Between(0, 2)));
        using Act = void (RandomEdits::*)();
        static constexpr Act kActs[] = {
            &RandomEdits::Type, &RandomEdits::Type, &RandomEdits::Type, &RandomEdits::Shift, &RandomEdits::WorkOnRange,
            &RandomEdits::Resize, &RandomEdits::UseClipboard, &RandomEdits::ChangeOrder, &RandomEdits::ChangeNumber,
            &RandomEdits::WorkOnInstrument, &RandomEdits::WorkOnSample, &RandomEdits::WorkOnSample, &RandomEdits::UsePlugin};
        if (Between(0, 60) == 0) return ReplaceAll();
        (this->*kActs[static_cast<std::size_t>(Between(0, static_cast<int>(std::size(kActs)) - 1))])();
    }

    int Between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

    Editor editor;

private:
    Place Anywhere() {
        Place at;
        at.pattern = Between(0, 20) == 0 ? Between(-1, 256) : Between(0, 4);
        at.position = Between(0, 6);
        at.row = Between(0, 45);
        at.track = Between(0, 20) == 0 ? Between(-1, 64) : Between(0, 9);
        at.column = Between(0, 7);
        at.instrument = Between(0, 20) == 0 ? Between(0, 128) : Between(0, 4);
        at.sample = Between(0, 20) == 0 ? Between(0, 256) : Between(0, 2);
        return at;
    }
    CellBlock AnyBlock() { return {Between(0, 12), Between(0, 40), Between(0, 20), Between(0, 50)}; }
    std::uint8_t Byte() { return static_cast<std::uint8_t>(Between(0, 255)); }
    std::unique_ptr<Sample> AnySample() {
        const int channels = Between(1, 2);
        auto sample = MakeSample(SineWave(static_cast<std::uint32_t>(Between(1, 200)), channels), channels);
        sample->toneRel = static_cast<std::int8_t>(Between(-48, 71));
        return sample;
    }

    void Type() {
        const Place at = Anywhere();
        switch (Between(0, 5)) {
        case 0: return EnterNote(editor, at, Between(0, kNoteOff), Between(0, 128), kStepNote);
        case 1: return void(EnterDigit(editor, at, Between(0, 16), kStepDigit));
        case 2: return EnterVolume(editor, at, static_cast<std::uint16_t>(Between(0, 129)), kStepNote);
        case 3: return EnterMacro(editor, at, {Byte(), Byte(), Byte()}, kStepMacro);
        case 4: return DeleteField(editor, at, kStepDelete);
        default: return ClearFields(editor, at, Between(0, 1), Between(0, 1), Between(0, 1), kStepDelete);
        }
    }

    void Shift() {
        constexpr void (*kShifts[])(Editor&, const Place&) = {InsertCell, InsertLine, DeleteCellAbove, DeleteLine};
        kShifts[Between(0, 3)](editor, Anywhere());
    }

    void WorkOnRange() {
        const Range range{static_cast<Scope>(Between(0, 3)), Anywhere(), AnyBlock()};
        switch (Between(0, 2)) {
        case 0: return Transpose(editor, range, Between(0, 4), Between(-24, 24));
        case 1: return ReplaceInstrument(editor, range, Between(0, 5), Between(0, 128));
        default: return ScaleFade(editor, range.at, range.block);
        }
    }

    void Resize() {
        switch (Between(0, 2)) {
        case 0: return ExpandPattern(editor, Anywhere());
        case 1: return ShrinkPattern(editor, Anywhere());
        default: return ChangePatternRows(editor, Anywhere(), Between(-3, 260));
        }
    }

    void UseClipboard() {
        const Place at = Anywhere();
        const Pattern* pattern = editor.GetSong().GetPattern(at.pattern);
        const CellBlock block = AnyBlock();
        switch (Between(0, 8)) {
        case 0: return EmptyTrack(editor, at);
        case 1: return EmptyPattern(editor, at);
        case 2: return EmptyBlock(editor, at, block);
        case 3: if (pattern) CopyTrack(clipboards_, *pattern, at.track); return;
        case 4: if (pattern) CopyPattern(clipboards_, *pattern); return;
        case 5: if (pattern) CopyBlock(clipboards_, *pattern, block); return;
        case 6: return PasteTrack(editor, clipboards_, at);
        case 7: return PastePattern(editor, clipboards_, at);
        default: return PasteBlock(editor, clipboards_, at);
        }
    }

    void ChangeOrder() {
        const Place at = Anywhere();
        switch (Between(0, 4)) {
        case 0: return SetOrderEntry(editor, at, Between(-1, 256));
        case 1: return InsertPosition(editor, at);
        case 2: return DeletePosition(editor, at);
        case 3: return SetSongLength(editor, at, Between(-1, 12));
        default: return SetRestart(editor, at, Between(-1, 12));
        }
    }

    void ChangeNumber() {
        const Place at = Anywhere();
        switch (Between(0, 4)) {
        case 0: return SetBpm(editor, at, Between(0, 300));
        case 1: return SetTempo(editor, at, Between(1, 40));
        case 2: return SetChannels(editor, at, Between(0, 70));
        case 3: return SetMasterVolume(editor, at, static_cast<float>(Between(0, 10)) / 8);
        default: return TypeText(at);
        }
    }

    void TypeText(const Place& at) {
        const auto type = [&](StepName name, const Field<std::string>& field) {
            std::string* text = field.find(editor.GetSong());
            if (!text) return;
            std::string former = *text;
            *text += static_cast<char>(Between('a', 'z'));
            KeepTyped(editor, name, at, field, std::move(former));
        };
        if (Between(0, 1)) type(kStepTitle, SongField(&Song::title));
        else type(kStepSampleName, SampleField(at.instrument, at.sample, &Sample::name));
    }

    void WorkOnInstrument() {
        const Place at = Anywhere();
        switch (Between(0, 5)) {
        case 0: return void(EnsureInstrument(editor, at, at.instrument));
        case 1: return LoadIntoSlot(editor, at, MakeInstrument(AnySample()));
        case 2: return CopyInstrument(editor, at, Between(-1, 5));
        case 3: return ExchangeInstruments(editor, at, Between(-1, 5));
        case 4: return DeleteInstrument(editor, at);
        default: return SetInstrumentColour(editor, at, static_cast<std::uint32_t>(Between(0, 0xFFFFFF)));
        }
    }

    void WorkOnSample() {
        const Place at = Anywhere();
        switch (Between(0, 5)) {
        case 0: return void(EnsureSample(editor, at, at.instrument, at.sample));
        case 1: return LoadIntoSlot(editor, at, AnySample(), "loaded");
        case 2: return CopySample(editor, at, Between(-1, 5), Between(-1, 3));
        case 3: return ExchangeSamples(editor, at, Between(-1, 5), Between(-1, 3));
        case 4: return DeleteSample(editor, at);
        default: {
            const Editor::StepScope step(editor, "wave", at);
            return editor.SetWave(at.instrument, at.sample, AnySample());
        }
        }
    }

    void UsePlugin() {
        const Place at = Anywhere();
        const int slot = Between(-1, 10);
        switch (Between(0, 4)) {
        case 0: return LoadEffect(editor, at, slot, std::make_unique<FakeEffect>("effect.so"));
        case 1: return LoadEffect(editor, at, slot, nullptr);
        case 2: return LoadSynth(editor, at, slot, std::make_unique<FakeSynth>("synth.so"));
        case 3: return LoadSynth(editor, at, slot, nullptr);
        default: return ClearEffects(editor, at);
        }
    }

    void ReplaceAll() {
        switch (Between(0, 2)) {
        case 0: return ReplaceSong(editor, kStepLoadSong, Anywhere(), RandomSong());
        case 1: return ClearPatterns(editor, Anywhere());
        default: return ClearInstruments(editor, Anywhere());
        }
    }

    std::mt19937 random_;
    Clipboards clipboards_;
};

}  // namespace vonta::test
