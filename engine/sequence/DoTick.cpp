// The sequencer: one tick, and where the next row is.
#include <algorithm>
#include <utility>

#include "engine/sequence/Effects.h"
#include "engine/sequence/Sequencer.h"
#include "platform/Clock.h"

namespace vonta {
namespace {
constexpr std::int8_t kLongestTick = 127;
}

bool Sequencer::DoTick(bool silent) {
    silent_ = silent;
    if (tick_ < kLongestTick) ++tick_;            // with tempo 0 it stands there until rows move again
    const bool wrapped = playing_ && !ended_ && AdvanceSequencer(silent);
    if (silent) return wrapped;

    RunJamQueue();
    for (auto* table : {&mixer_.channels, &mixer_.reserve})
        for (const auto& channel : *table) channel->Tick(tickStep_);   // before any of them is refreshed
    for (auto* table : {&mixer_.channels, &mixer_.reserve})
        for (const auto& channel : *table) channel->Refresh();
    return wrapped;
}

bool Sequencer::AdvanceSequencer(bool silent) {
    tickCounter_ = tickCounter_ + 1;
    const auto tempo = static_cast<int>(std::min<std::uint32_t>(song_->GetTempo(), kLongestTick));
    if (tempo == 0) return false;
    if (tick_ < tempo) {
        RunTickEffects();
        return false;
    }
    tick_ = 0;
    if (patternDelay_) {
        --patternDelay_;
        return false;
    }
    bool wrapped = AdvanceRow();
    if (playing_ && PerformRow(silent)) wrapped = true;
    if (wrapped && stopAtEnd_) ended_ = 1;
    return wrapped;
}

void Sequencer::RunTickEffects() {
    const int channels = std::clamp(Load(song_->numChannels), 0, kMaxChannels);
    for (int channel = 0; channel < channels; ++channel) PerformTickEffects(*this, channel, tick_);
}

// A missing pattern plays as 64 empty rows.
const Pattern& Sequencer::CurrentPattern() const {
    const Pattern* pattern = song_->GetPattern(static_cast<int>(pattern_));
    return pattern ? *pattern : *emptyPattern_;
}

bool Sequencer::AdvanceRow() {
    bool wrapped = false;
    const bool jumped = patternBreak_ || orderJump_;
    if (loopJump_) row_ = loopRow_;
    if (patternBreak_) {
        if (patternMode_) {
            row_ = 0;
        } else {
            wrapped = GoToNextPosition();
            row_ = breakRow_ <= CurrentPattern().Rows() ? breakRow_ : 0;
        }
    } else if (!loopJump_) {
        row_ = row_ + rowStep_;
        if (row_ >= CurrentPattern().Rows()) {
            if (!patternMode_) wrapped = GoToNextPosition();
            row_ = 0;
        }
    }
    if (orderJump_) {
        if (!patternBreak_) row_ = 0;
        EnterPosition(orderTarget_ < song_->GetPatternPosLenght() ? orderTarget_ : 0);
    }
    rowStep_ = 1;
    if (trackVisits_ && NoteVisit(jumped, wrapped)) wrapped = true;
    return wrapped;
}

// True if the song wrapped.
bool Sequencer::GoToNextPosition() {
    const auto length = static_cast<std::int32_t>(song_->GetPatternPosLenght());
    const bool wraps = position_ + 1 >= length;
    if (wraps) TellSongEnd();
    const std::uint32_t restart = std::min<std::uint32_t>(song_->GetPatternPosRestart(), kMaxPositions - 1);
    EnterPosition(wraps ? static_cast<std::int32_t>(restart) : position_ + 1);
    return wraps;
}

void Sequencer::TellSongEnd() {
    if (SongEndListener* listener = songEndListener_) listener->OnSongEnd();
}

void Sequencer::EnterPosition(std::int32_t position) {
    position_ = position;
    pattern_ = static_cast<std::uint32_t>(song_->GetPatternPosIndex(position));
}

// True if a jump closed a circle. From there, as after a wrap, the song starts over, and so does what counts as seen.
bool Sequencer::NoteVisit(bool jumped, bool wrapped) {
    if (position_ < 0 || position_ >= kMaxPositions || row_ < 0 || row_ >= kMaxRows) return false;
    const auto here = static_cast<std::size_t>(position_ * kMaxRows + row_);
    const bool circle = jumped && !wrapped && visited_[here];
    if (circle || wrapped) visited_.reset();
    visited_.set(here);
    revisited_ |= circle;
    return circle;
}

void Sequencer::SetVisitTracking(bool on) {
    trackVisits_ = on;
    ClearVisits();
}

void Sequencer::ClearVisits() {
    visited_.reset();
    revisited_ = false;
}

// Started in the tick grid, and refreshed with all others at the end of this tick. A key that was let go within the tick
// that starts its note is let go in the next: drum pads do nothing else.
void Sequencer::RunJamQueue() {
    const std::bitset<kTracks> due = std::exchange(letGo_, {});
    for (int channel = 0; channel < kTracks; ++channel)
        if (due[static_cast<std::size_t>(channel)]) notes_.KeyOff(channel, Milliseconds());
    std::bitset<kTracks> started;
    JamNote note;
    while (requests_.TakeNote(note)) {
        const auto channel = static_cast<int>(note.channel % kTracks);
        const int volume = note.volume == 255 ? int{kNoVolume} : note.volume;
        const auto number = static_cast<std::size_t>(channel);
        if (note.note == kNoteOff) {
            if (started[number]) letGo_.set(number);
            else notes_.KeyOff(channel, Milliseconds());
            continue;
        }
        started.set(number);
        letGo_.reset(number);                         // of a note whose place this one takes
        if (note.sample >= 0)
            notes_.PlayStretch(note, channel, Milliseconds());
        else
            notes_.PlayNote(static_cast<int>(note.instrument), static_cast<int>(note.note), 0, volume, channel, 0,
                            Milliseconds());
        Memory(channel).activeEffect = Memory(channel).volumeColumnEffect = 0;
    }
}

void Sequencer::ResetSequencer() {
    notes_.ForgetMemories();
    loopJump_ = orderJump_ = patternBreak_ = loopRow_ = orderTarget_ = 0;
    patternDelay_ = 0;
    rowStep_ = 0;
    notes_.KillTracks(Milliseconds());
    tick_ = -1;
}

// Only where the song keeps its start apart. From its beginning it starts as it was made; from elsewhere it goes on as it
// last was, unless its rows would stand still.
void Sequencer::TakeStart(std::uint8_t flags) {
    const bool fromBeginning = flags == 0 && position_ == 0;
    const std::uint32_t bpm = song_->StartBpm(), tempo = song_->StartTempo();
    if (fromBeginning && bpm != song_->GetBPM()) SetBPM(static_cast<float>(bpm));
    if ((fromBeginning || song_->GetTempo() == 0) && tempo != song_->GetTempo()) SetTempo(tempo);
}

void Sequencer::PerformPlay(std::uint8_t flags) {
    if (!song_) return;
    TakeStart(flags);
    ResetSequencer();
    ClearVisits();
    patternMode_ = flags & kPlayPattern;
    if (!(flags & kPlayFromHere)) {
        EnterPosition(position_);
        row_ = 0;
    }
    startTime_ = Milliseconds();
    notes_.RestartRandom();
    ended_ = 0;
    playing_ = 1;
    DoTick(false);
    tickCounter_ = 0;
}

void Sequencer::PerformStop(std::uint8_t keepPlaying, std::uint32_t immediate) {
    if (!keepPlaying) playing_ = 0;
    if (immediate) notes_.StopAll(Milliseconds());
    else notes_.ReleaseAll(Milliseconds());
}

void Sequencer::EnterSong() {
    bpm_ = BoundedBpm(static_cast<float>(song_->GetBPM()));
    UpdateTickLength();
    TempoChanged();
    row_ = 0;
    EnterPosition(0);
    rowStep_ = 0;
    patternDelay_ = 0;
    loopJump_ = orderJump_ = patternBreak_ = 0;
}

// Silent ticks start no notes; effect memories and tempo commands on the way come out right. The count is a host's:
// bounded to some hours of ticks.
void Sequencer::SeekToTick(std::uint32_t ticks) {
    ResetSequencer();
    row_ = 0;
    EnterPosition(0);
    tickCounter_ = 0;
    const std::uint8_t wasPlaying = playing_;
    playing_ = 1;
    ended_ = 0;
    ticks = std::min(ticks, kLongestSeek);
    for (std::uint32_t i = 0; i < ticks; ++i) DoTick(true);
    playing_ = wasPlaying;
    tickCounter_ = ticks;                         // also where the song ended on the way
}

}  // namespace vonta
