#include <algorithm>

#include "interface/TrackerInterface.h"

namespace vonta {
namespace {

constexpr int kOwnVolume = 255;

}  // namespace

// Sounds at the next tick, and is written where the song is being recorded.
void TrackerInterface::OnNote(int note, bool fromMidi, int velocity) {
    const int played = std::clamp(note + (fromMidi ? 0 : state_.m_nOctaveOffset), 0, int{kLastNote});
    const int volume = std::clamp(velocity, 0, kOwnVolume);
    ReleaseNote(played);
    const int instrument = state_.pending.m_nSelected[kListInstruments] - 1;
    m_noteVoice[static_cast<std::size_t>(played)] =
        static_cast<std::uint16_t>(state_.Player().QueueNote(played, instrument, volume));
    if (!state_.pending.m_bEditMode) return;

    int row = 0;
    const int track = state_.WriteNote(played, true, row, fromMidi);
    if (fromMidi && state_.Settings().Has(kRecordVelocity))
        state_.SetCellVolume(row, track, static_cast<std::uint16_t>(volume));
    state_.AdvanceUnlessPlaying();
}

void TrackerInterface::OnNoteFromMidi(int note, bool pressed, int velocity) {
    if (pressed) OnNote(note, true, velocity);
    else ReleaseNote(std::clamp(note, 0, int{kLastNote}));
}

void TrackerInterface::ReleaseNote(int note) {
    if (note < 0 || note > kLastNote) return;
    const std::uint16_t voice = std::exchange(m_noteVoice[static_cast<std::size_t>(note)], kNoVoice);
    if (voice != kNoVoice) state_.Player().QueueKeyOff(voice);
}

}  // namespace vonta
