// How the cells of one row become channel state.
#include <algorithm>

#include "engine/sequence/Effects.h"
#include "engine/sequence/Sequencer.h"
#include "platform/Clock.h"

namespace vonta {
namespace {

constexpr double kLongestDelay = 1 << 30;         // frames

}  // namespace

bool Sequencer::PerformRow(bool silent) {
    silent_ = silent;
    const Pattern& pattern = CurrentPattern();
    const std::uint32_t time = Milliseconds();
    loopJump_ = orderJump_ = patternBreak_ = loopRow_ = orderTarget_ = 0;

    bool songEnd = false;
    std::array<std::int16_t, kTracks> delays;     // parameters of XDelay; -1 none
    delays.fill(-1);
    const int channels = std::clamp(Load(song_->numChannels), 0, kMaxChannels);
    for (int channel = 0; channel < channels; ++channel) {
        RowCell row;
        row.cell = pattern.Read(row_, channel);
        row.channel = channel;
        row.time = time;
        PerformCell(row);
        songEnd |= row.songEnd;
        if (row.effect == kXDelay && row.startedNote) delays[static_cast<std::size_t>(channel)] = row.cell.param;
    }
    for (int channel = 0; channel < channels; ++channel) {
        const int param = delays[static_cast<std::size_t>(channel)];
        if (param < 0) continue;
        const double row = song_->GetTempo() * static_cast<double>(Load(mixer_.samplesPerTick));
        GetChannel(channel).SetDelay(static_cast<std::uint32_t>(std::min(row * param / 255.0, kLongestDelay)));
    }
    return songEnd;
}

void Sequencer::PerformCell(RowCell& row) {
    ChannelMemory& memory = Memory(row.channel);
    row.formerCode = static_cast<std::uint8_t>(memory.activeEffect >> 8);
    ReturnFromArpeggio(row.channel);

    const int instrumentNumber =
        row.cell.instrument ? row.cell.instrument : GetChannel(row.channel).instrument + 1;
    Instrument* const instrument = song_->GetInstrument(instrumentNumber - 1);
    row.effect = row.cell.effect;
    if (instrument && row.effect < kEffectCodes)
        row.effect = static_cast<std::uint8_t>(std::min<std::uint32_t>(instrument->effectMap[row.effect], 255));
    row.high = row.cell.param >> 4;
    row.low = row.cell.param & 15;

    if (row.effect == kFilterOnOff && instrument && row.low <= 1) Store(instrument->filterOn, row.low);
    const bool wasVibrato = row.formerCode == kVibrato || row.formerCode == kVibratoSlide;
    if (wasVibrato && row.effect != kVibrato && row.effect != kVibratoSlide)
        GetChannel(row.channel).SetPeriod(static_cast<double>(memory.savedPeriod), mixer_.sampleRate);
    if (!silent_) StartCell(row);

    memory.volumeColumnEffect = 0;
    if (row.cell.volume & kVolumeCommand) {
        PerformVolumeColumn(*this, row.channel, row.cell.volume);
    } else if (row.cell.volume <= kMaxVolume) {
        GetChannel(row.channel).SetNoteVolume(row.cell.volume);
    }
    memory.activeEffect = 0;
    if (!silent_ && notes_.SendController(row.channel, row.effect, row.cell.param, row.time)) return;
    if (row.effect >= kEffectCodes) return;
    if (const RowEffect perform = kEffects[row.effect].onRow) perform(*this, row);
}

void Sequencer::ReturnFromArpeggio(int channel) {
    const ChannelMemory& memory = Memory(channel);
    if (IsArpeggio(memory.activeEffect)) GetChannel(channel).SetNote(memory.arpeggioNote, mixer_.sampleRate);
}

// The note of a cell, unless the track is muted or the note is delayed.
void Sequencer::StartCell(RowCell& row) {
    if (channelMuted_[static_cast<std::size_t>(row.channel)]) {
        notes_.KeyOff(row.channel, row.time);
        GetChannel(row.channel).Kill();
        return;
    }
    if (row.effect == kExtended && row.high == kNoteDelay) return;
    const bool slides = row.effect == kTonePorta;
    const int volume = row.effect == kSetVolume ? std::min<int>(row.cell.param, kMaxVolume) : StartVolume(row.cell.volume);
    row.startedNote = Trigger(row.channel, slides ? kNoNote : row.cell.note, row.cell.instrument, volume, !slides,
                              row.time);
}

}  // namespace vonta
