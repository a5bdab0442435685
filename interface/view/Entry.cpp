#include <algorithm>
#include <new>

#include "interface/view/EditCell.h"
#include "interface/view/TrackerState.h"
#include "platform/Shared.h"

namespace vonta {
namespace {

constexpr int kHighestInstrument = 128;          // as a cell holds it

std::uint8_t HighDigit(int value, int digit) { return static_cast<std::uint8_t>((value & 0x0F) + 16 * digit); }
std::uint8_t LowDigit(int value, int digit) { return static_cast<std::uint8_t>((value & 0xF0) + digit); }

bool SetInstrument(Cell& cell, int value) {
    cell.instrument = static_cast<std::uint8_t>(std::min(value, kHighestInstrument));
    return true;
}

bool SetVolumeHigh(Cell& cell, int digit) {
    if (digit > kMaxVolume / 16) return false;
    if (digit == kMaxVolume / 16) {
        cell.volume = kMaxVolume;
    } else {
        cell.volume = HighDigit(cell.volume <= kMaxVolume ? cell.volume : 0, digit);
    }
    return true;
}

bool SetVolumeLow(Cell& cell, int digit) {
    if (cell.volume == kMaxVolume) return false;
    cell.volume = LowDigit(cell.volume < kMaxVolume ? cell.volume : 0, digit);
    return true;
}

// By column, from the first behind the note. Each puts a digit into the cell; false if the digit is none for it.
constexpr bool (*kSetDigit[])(Cell& cell, int digit) = {
    [](Cell& cell, int digit) { return SetInstrument(cell, (cell.instrument & 0x0F) + 16 * digit); },
    [](Cell& cell, int digit) { return SetInstrument(cell, (cell.instrument & 0xF0) + digit); },
    SetVolumeHigh,
    SetVolumeLow,
    [](Cell& cell, int digit) { cell.effect = static_cast<std::uint8_t>(digit); return true; },
    [](Cell& cell, int digit) { cell.param = HighDigit(cell.param, digit); return true; },
    [](Cell& cell, int digit) { cell.param = LowDigit(cell.param, digit); return true; },
};

bool IsVolumeColumn(int column) { return column == kColumnVolumeHigh || column == kColumnVolumeLow; }

void EmptyNote(Cell& cell) {
    cell.note = kNoNote;
    cell.instrument = 0;
}

void EmptyEffect(Cell& cell) { cell.effect = cell.param = 0; }

// The cells behind `row` move down by one, and the last is lost.
void MoveDown(Pattern& pattern, int track, int row) {
    for (int to = pattern.Rows() - 1; to > row; --to) pattern.Write(to, track, pattern.Read(to - 1, track));
    pattern.Write(row, track, {});
}

// The cells behind `row` move up over it, and the last is emptied.
void MoveUp(Pattern& pattern, int track, int row) {
    const int last = pattern.Rows() - 1;
    for (int to = row; to < last; ++to) pattern.Write(to, track, pattern.Read(to + 1, track));
    pattern.Write(last, track, {});
}

}  // namespace

// The shared empty pattern is what an empty place shows: it is never written to.
Pattern* TrackerState::EnsureOwnPattern() {
    Song& song = CurrentSong();
    const int number = PatternNumber();
    if (Pattern* own = song.GetPattern(number)) return own;
    std::unique_ptr<Pattern> made(new (std::nothrow) Pattern);
    if (!made) return nullptr;
    made->SetNumRows(PatternRows());
    const MixerPause pause(player_);
    song.SetPattern(number, std::move(made));
    song.numPatterns = std::max(song.numPatterns, number + 1);
    return song.GetPattern(number);
}

template <class Edit>
void TrackerState::EditCursorCell(Edit edit) {
    if (Pattern* pattern = EnsureOwnPattern()) EditCell(*pattern, CursorRow(), pending.m_nCursorChannel, edit);
}

int TrackerState::WriteNote(int note, bool multichannel, int& row, bool fromMidi) {
    Pattern* pattern = EnsureOwnPattern();
    int track = pending.m_nCursorChannel;
    bool marked = false;
    if (multichannel) {
        ValidateNextMarked();
        marked = config_.Has(fromMidi ? kMultichannelRecord : kMultichannelEdit) && m_nNextMarked >= 0;
        if (marked) track = m_nNextMarked;
    }
    row = CursorRow();
    const int instrument = note < kNoNote ? pending.m_nSelected[kListInstruments] : 0;
    if (pattern)
        EditCell(*pattern, row, track, [&](Cell& cell) {
            cell.note = static_cast<std::uint8_t>(note);
            cell.instrument = static_cast<std::uint8_t>(instrument);
        });
    if (marked) m_nNextMarked = NextMarked(m_nNextMarked);
    return track;
}

// The channel behind `from` that takes the next note, round the song; -1 if none does.
int TrackerState::NextMarked(int from) const {
    const int channels = SongChannels(), start = from < channels ? from : -1;
    for (int i = 1; i <= channels; ++i) {
        const int channel = (start + i) % channels;
        if (m_marks[static_cast<std::size_t>(channel)] && !player_.IsChannelMuted(channel)) return channel;
    }
    return -1;
}

void TrackerState::ValidateNextMarked() { m_nNextMarked = NextMarked(std::max(m_nNextMarked, 0) - 1); }

void TrackerState::MarkChannel(int channel, bool marked) {
    if (channel < 0 || channel >= kTracks) return;
    m_marks[static_cast<std::size_t>(channel)] = marked;
    ValidateNextMarked();
}

int TrackerState::EnterDigit(int digit) {
    const int column = pending.m_nCursorColumn;
    if (column <= kColumnNote || column >= kColumns) return 1;
    if (!pending.m_bEditMode || digit < 0 || digit > 15) return 0;
    bool taken = false;
    EditCursorCell([&](Cell& cell) { taken = kSetDigit[column - 1](cell, digit); });
    if (taken) AdvanceUnlessPlaying();
    return 0;
}

void TrackerState::EnterNoteOff() {
    int row = 0;
    WriteNote(kNoteOff, true, row, false);
    AdvanceUnlessPlaying();
}

void TrackerState::SetCellVolume(int row, int track, std::uint16_t volume) {
    if (Pattern* pattern = EnsureOwnPattern()) EditCell(*pattern, row, track, [&](Cell& cell) { cell.volume = volume; });
}

void TrackerState::DeleteAtCursor() {
    const int column = pending.m_nCursorColumn;
    EditCursorCell([&](Cell& cell) {
        if (column == kColumnNote) EmptyNote(cell);
        if (column == kColumnInstrumentHigh || column == kColumnInstrumentLow) cell.instrument = 0;
        if (IsVolumeColumn(column)) cell.volume = kNoVolume;
    });
    AdvanceUnlessPlaying();
}

void TrackerState::ClearAtCursor(bool noteAndInstrument, bool volume, bool effect) {
    EditCursorCell([&](Cell& cell) {
        if (noteAndInstrument) EmptyNote(cell);
        if (volume) cell.volume = kNoVolume;
        if (effect) EmptyEffect(cell);
    });
    AdvanceUnlessPlaying();
}

template <class Shift>
void TrackerState::ShiftTracks(int first, int end, Shift shift) {
    Pattern* pattern = EnsureOwnPattern();
    for (int track = first; pattern && track < end; ++track) shift(*pattern, track);
}

void TrackerState::InsertCell() {
    const int row = CursorRow(), track = pending.m_nCursorChannel;
    ShiftTracks(track, track + 1, [&](Pattern& pattern, int at) { MoveDown(pattern, at, row); });
    Advance(1);
}

void TrackerState::InsertLine() {
    const int row = CursorRow();
    ShiftTracks(0, kTracks, [&](Pattern& pattern, int at) { MoveDown(pattern, at, row); });
    Advance(1);
}

void TrackerState::DeleteBack() {
    const int row = std::max(0, CursorRow() - 1), track = pending.m_nCursorChannel;
    ShiftTracks(track, track + 1, [&](Pattern& pattern, int at) { MoveUp(pattern, at, row); });
    MoveRow(-1, true);
}

void TrackerState::DeleteLine() {
    const int row = CursorRow();
    ShiftTracks(0, kTracks, [&](Pattern& pattern, int at) { MoveUp(pattern, at, row); });
    MoveRow(-1, true);
}

void TrackerState::WriteMacro(int macro) {
    if (macro < 0 || macro >= kCommandMacros) return;
    const CommandMacro& from = environment_.macros[static_cast<std::size_t>(macro)];
    EditCursorCell([&](Cell& cell) {
        if (IsVolumeColumn(pending.m_nCursorColumn)) {
            cell.volume = from.volume;
        } else {
            cell.effect = static_cast<std::uint8_t>(from.effect);
            cell.param = static_cast<std::uint8_t>(from.param);
        }
    });
    AdvanceUnlessPlaying();
}

void TrackerState::ReadMacro(int macro) {
    if (macro < 0 || macro >= kCommandMacros) return;
    CommandMacro& to = environment_.macros[static_cast<std::size_t>(macro)];
    const Cell cell = ShownPattern().Read(CursorRow(), pending.m_nCursorChannel);
    if (IsVolumeColumn(pending.m_nCursorColumn)) {
        to.volume = cell.volume;
    } else {
        to.effect = cell.effect;
        to.param = cell.param;
    }
}

}  // namespace vonta
