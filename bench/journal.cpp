// What it costs to remember edits, and to take them back.
#include <benchmark/benchmark.h>

#include <algorithm>

#include "edit/Cells.h"
#include "edit/Ranges.h"
#include "edit/Samples.h"
#include "engine/SndPlayer.h"
#include "tests/support/SongBuilder.h"

namespace vonta {
namespace {

constexpr Place kHere{0, 0, 0, 0, 0, 0, 0};

struct Desk {
    Desk() { player.SetSong(SongBuilder().Channels(64).SineInstrument(0, 256).Pattern(0, 256).Build()); }
    SndPlayer player;
    Editor editor{player};
};

// A note is typed into the next row: one step of one cell. The default budget drops the oldest ones on the way.
void CellStep(benchmark::State& state) {
    Desk desk;
    Place at = kHere;
    int note = 0;
    for (auto _ : state) {
        at.row = (at.row + 1) % kMaxRows;
        if (at.row == 0) note = (note + 1) % kLastNote;
        EnterNote(desk.editor, at, note, 1, kStepNote);
    }
    state.counters["bytes per step"] =
        static_cast<double>(desk.editor.Steps().Bytes()) / static_cast<double>(std::max<std::size_t>(desk.editor.Steps().UndoCount(), 1));
}
BENCHMARK(CellStep);

// The same cells without a journal.
void CellWrite(benchmark::State& state) {
    Desk desk;
    Pattern& pattern = *desk.player.GetSong().GetPattern(0);
    int row = 0, note = 0;
    for (auto _ : state) {
        row = (row + 1) % kMaxRows;
        if (row == 0) note = (note + 1) % kLastNote;
        pattern.Write(row, 0, {static_cast<std::uint8_t>(note), 1});
    }
}
BENCHMARK(CellWrite);

// Notes joined into one take, as they are recorded.
void TakenNote(benchmark::State& state) {
    Desk desk;
    desk.editor.Steps().SetGesture(1);
    Place at = kHere;
    int note = 0;
    for (auto _ : state) {
        at.row = (at.row + 1) % kMaxRows;
        if (at.row == 0) note = (note + 1) % kLastNote;
        EnterNote(desk.editor, at, note, 1, kStepTake);
    }
}
BENCHMARK(TakenNote);

void Transposed(Desk& desk) {
    for (int track = 0; track < 40; ++track)
        for (int row = 0; row < 250; ++row) desk.player.GetSong().GetPattern(0)->Write(row, track, {40, 1});
    Transpose(desk.editor, {Scope::Pattern, kHere, {}}, 0, 1);
}

void TransposeTenThousandCells(benchmark::State& state) {
    Desk desk;
    Transposed(desk);
    int by = 1;
    for (auto _ : state) Transpose(desk.editor, {Scope::Pattern, kHere, {}}, 0, by = -by);
}
BENCHMARK(TransposeTenThousandCells)->Unit(benchmark::kMicrosecond);

void UndoOfTenThousandCells(benchmark::State& state) {
    Desk desk;
    Transposed(desk);
    state.counters["bytes"] = static_cast<double>(desk.editor.Steps().Bytes());
    for (auto _ : state) {
        desk.editor.Steps().Undo();
        desk.editor.Steps().Redo();
    }
}
BENCHMARK(UndoOfTenThousandCells)->Unit(benchmark::kMicrosecond);

// 64 MiB change places with another wave: nothing is copied.
void UndoOfALargeWave(benchmark::State& state) {
    Desk desk;
    LoadIntoSlot(desk.editor, kHere, MakeSample(std::vector<float>(16u << 20)), "large");
    for (auto _ : state) {
        desk.editor.Steps().Undo();
        desk.editor.Steps().Redo();
    }
}
BENCHMARK(UndoOfALargeWave);

}  // namespace
}  // namespace vonta
