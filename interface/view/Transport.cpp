#include "interface/view/TrackerState.h"

namespace vonta {
namespace {

constexpr int kOwnVolume = 255;                  // of the sample

void PlayOn(SndPlayer& player, const Cell& cell, int channel) {
    if (player.IsChannelMuted(channel) || cell.instrument == 0 || cell.note >= kNoNote) return;
    player.QueueNoteOn(cell.note, cell.instrument - 1, channel, cell.volume <= kMaxVolume ? cell.volume : kOwnVolume);
}

}  // namespace

void TrackerState::Play(std::uint8_t flags, bool record) {
    pending.m_bEditMode = record;
    player_.Play(flags);
}

void TrackerState::StopOrRecord() {
    const bool playing = player_.IsPlaying();
    player_.Stop(0, playing ? 0 : 1);
    pending.m_bEditMode = !playing && !pending.m_bEditMode;
}

void TrackerState::StopSong() {
    if (!player_.IsPlaying()) return;
    player_.Stop(0, 1);
    pending.m_bEditMode = false;
}

void TrackerState::PlayCell() {
    if (pending.m_nCursorColumn != kColumnNote) return;
    const int channel = pending.m_nCursorChannel;
    PlayOn(player_, ShownPattern().Read(CursorRow(), channel), channel);
    Advance(m_nCursorAdd);
}

void TrackerState::PlayRow() {
    const int row = CursorRow();
    for (int channel = 0; channel < kTracks; ++channel) PlayOn(player_, ShownPattern().Read(row, channel), channel);
    Advance(m_nCursorAdd);
}

void TrackerState::ToggleSolo() { m_bSolo = !m_bSolo; }

void TrackerState::ToggleSoloChannel() { m_bSoloChannel = !m_bSoloChannel; }

// A muted channel takes no notes; what sounds on it is stopped.
void TrackerState::MuteChannel(int channel, bool on) {
    if (on && !player_.IsChannelMuted(channel)) player_.KillChannel(channel);
    player_.SetChannelMuted(channel, on);
}

void TrackerState::ToggleMute(int channel) { MuteChannel(channel, !player_.IsChannelMuted(channel)); }

void TrackerState::ToggleSoloOf(int channel) {
    bool alone = true;
    for (int other = 0; other < kTracks; ++other) alone = alone && (other == channel || player_.IsChannelMuted(other));
    for (int other = 0; other < kTracks; ++other) MuteChannel(other, other != channel && !alone);
}

}  // namespace vonta
