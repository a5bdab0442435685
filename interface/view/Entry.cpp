#include "edit/Cells.h"
#include "interface/view/TrackerState.h"

#include <algorithm>

namespace vonta {

// What is played into the song while it runs is one take, whatever keys it came from.
std::string_view TrackerState::EntryName(std::string_view typed) const {
    return pending.m_bEditMode && player_.IsPlaying() ? kStepTake : typed;
}

int TrackerState::WriteNote(int note, bool multichannel, int& row, bool fromMidi) {
    Place at = Here();
    bool marked = false;
    if (multichannel) {
        ValidateNextMarked();
        marked = config_.Has(fromMidi ? kMultichannelRecord : kMultichannelEdit) && m_nNextMarked >= 0;
        if (marked) at.track = m_nNextMarked;
    }
    row = at.row;
    EnterNote(edits_, at, note, pending.m_nSelected[kListInstruments], EntryName(note == kNoteOff ? kStepNoteOff : kStepNote));
    if (marked) m_nNextMarked = NextMarked(m_nNextMarked);
    return at.track;
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
    if (pending.m_bEditMode && vonta::EnterDigit(edits_, Here(), digit, EntryName(kStepDigit))) AdvanceUnlessPlaying();
    return 0;
}

void TrackerState::EnterNoteOff() {
    int row = 0;
    WriteNote(kNoteOff, true, row, false);
    AdvanceUnlessPlaying();
}

void TrackerState::SetCellVolume(int row, int track, std::uint16_t volume) {
    Place at = Here();
    at.row = row;
    at.track = track;
    EnterVolume(edits_, at, volume, EntryName(kStepVolume));
}

void TrackerState::DeleteAtCursor() {
    DeleteField(edits_, Here(), EntryName(kStepDelete));
    AdvanceUnlessPlaying();
}

void TrackerState::ClearAtCursor(bool noteAndInstrument, bool volume, bool effect) {
    ClearFields(edits_, Here(), noteAndInstrument, volume, effect, EntryName(kStepDelete));
    AdvanceUnlessPlaying();
}

void TrackerState::InsertCell() {
    vonta::InsertCell(edits_, Here());
    Advance(1);
}

void TrackerState::InsertLine() {
    vonta::InsertLine(edits_, Here());
    Advance(1);
}

void TrackerState::DeleteBack() {
    DeleteCellAbove(edits_, Here());
    MoveRow(-1, true);
}

void TrackerState::DeleteLine() {
    vonta::DeleteLine(edits_, Here());
    MoveRow(-1, true);
}

void TrackerState::WriteMacro(int macro) {
    if (macro < 0 || macro >= kCommandMacros) return;
    EnterMacro(edits_, Here(), environment_.macros[static_cast<std::size_t>(macro)], EntryName(kStepMacro));
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
