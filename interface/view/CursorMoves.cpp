#include <algorithm>

#include "interface/view/PatternView.h"
#include "interface/view/TrackerState.h"
#include "platform/Shared.h"

namespace vonta {
namespace {

// Above these, a track shows no effect, and nothing but the note.
constexpr int kMostWithEffects = 16, kMostWithInstruments = 24;

int LastColumn(int visibleChannels) {
    if (visibleChannels > kMostWithInstruments) return kColumnNote;
    return visibleChannels > kMostWithEffects ? kColumnInstrumentLow : kColumnParamLow;
}

}  // namespace

int TrackerState::CursorRow() const { return std::min(player_.GetCurrentPlayPos().row, PatternRows() - 1); }
int TrackerState::PatternNumber() const { return static_cast<int>(player_.GetCurrentPlayPos().pattern); }
int TrackerState::OrderPosition() const { return player_.GetCurrentPlayPos().position; }
const Pattern& TrackerState::ShownPattern() const { return *player_.GetCurrentPlayPos().current; }
int TrackerState::PatternRows() const { return ShownPattern().Rows(); }
int TrackerState::SongChannels() const { return std::clamp(Load(CurrentSong().numChannels), 1, kMaxChannels); }

void TrackerState::SetRow(int row) { player_.SetRow(std::clamp(row, 0, PatternRows() - 1)); }

void TrackerState::MoveRow(int rows, bool wrap) {
    const int count = PatternRows(), row = CursorRow() + rows;
    SetRow(wrap ? (row % count + count) % count : row);
}

void TrackerState::Advance(int rows) { MoveRow(rows, true); }

void TrackerState::AdvanceUnlessPlaying() {
    if (!player_.IsPlaying()) Advance(m_nCursorAdd);
}

void TrackerState::NextTrack() {
    pending.m_nCursorColumn = kColumnNote;
    if (pending.m_nCursorChannel + 1 >= SongChannels()) {
        pending.m_nCursorChannel = pending.m_nFirstChannel = 0;
        return;
    }
    const int channel = ++pending.m_nCursorChannel;
    if (channel - pending.m_nFirstChannel + 1 >= pending.m_nVisibleChannels)
        pending.m_nFirstChannel = channel - pending.m_nVisibleChannels + 2;
}

void TrackerState::PrevTrack(bool keepColumnRule) {
    const bool stays = keepColumnRule && pending.m_nCursorColumn > kColumnNote;
    pending.m_nCursorColumn = kColumnNote;
    if (stays) return;
    if (pending.m_nCursorChannel <= 0) {
        pending.m_nCursorChannel = SongChannels() - 1;
        pending.m_nFirstChannel = std::max(0, SongChannels() - pending.m_nVisibleChannels);
        return;
    }
    --pending.m_nCursorChannel;
    pending.m_nFirstChannel = std::min(pending.m_nFirstChannel, pending.m_nCursorChannel);
}

void TrackerState::CursorRight() {
    int& column = pending.m_nCursorColumn;
    if (column >= LastColumn(pending.m_nVisibleChannels)) {
        NextTrack();
        return;
    }
    ++column;
    if (!pending.m_bWideCells && column == kColumnVolumeHigh) column = kColumnEffect;
}

void TrackerState::CursorLeft() {
    int& column = pending.m_nCursorColumn;
    if (column <= kColumnNote) {
        PrevTrack(false);
        column = LastColumn(pending.m_nVisibleChannels);
        return;
    }
    --column;
    if (!pending.m_bWideCells && column == kColumnVolumeLow) column = kColumnInstrumentLow;
}

void TrackerState::JumpToTrack(int track) {
    if (track < 0 || track >= SongChannels()) return;
    const int visible = pending.m_nVisibleChannels;
    if (track > pending.m_nFirstChannel + visible - 1) pending.m_nFirstChannel = std::max(0, track - visible + 1);
    pending.m_nFirstChannel = std::min(pending.m_nFirstChannel, track);
    pending.m_nCursorChannel = track;
}

void TrackerState::SetVisibleChannels(int wanted) {
    pending.m_nWantedChannels = wanted == 0 ? 0 : ViewOf(wanted).channels;
    LimitCursor();
}

// Brings the view and the cursor inside the song and the cursor inside the view.
void TrackerState::LimitCursor() {
    EditValues& at = pending;
    const int channels = SongChannels();
    at.m_nVisibleChannels = at.m_nWantedChannels ? at.m_nWantedChannels : ChannelsThatFit(channels);
    at.m_bWideCells = ViewOf(at.m_nVisibleChannels).volume.font != nullptr;
    if (at.m_nCursorChannel < 0 || at.m_nCursorChannel >= channels)
        at.m_nCursorChannel = at.m_nCursorColumn = at.m_nFirstChannel = 0;
    at.m_nFirstChannel = std::clamp(at.m_nFirstChannel, 0, std::max(0, channels - at.m_nVisibleChannels));
    if (at.m_nCursorColumn < 0 || at.m_nCursorColumn > LastColumn(at.m_nVisibleChannels)) at.m_nCursorColumn = kColumnNote;
    if (!at.m_bWideCells && IsVolumeColumn(at.m_nCursorColumn)) at.m_nCursorColumn = kColumnInstrumentLow;
    at.m_nCursorChannel = std::clamp(at.m_nCursorChannel, at.m_nFirstChannel,
                                     std::min(channels, at.m_nFirstChannel + at.m_nVisibleChannels) - 1);
}

}  // namespace vonta
