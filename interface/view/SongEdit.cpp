#include <algorithm>

#include "app/config/ConfigSettings.h"
#include "interface/view/TrackerState.h"
#include "platform/Shared.h"

namespace vonta {
namespace {

constexpr int kMaxLength = 255;                  // positions
constexpr int kSlowestTempo = kMaxTempo;         // ticks per row; 0 holds the song
constexpr const char* kNewTitle = "NEWsong";

int LengthOf(const Song& song) { return static_cast<int>(song.GetPatternPosLenght()); }

}  // namespace

void TrackerState::ChangePosition(int by) {
    player_.SetPosition(std::clamp(OrderPosition() + by, 0, std::max(0, LengthOf(CurrentSong()) - 1)));
    SetRow(by == 0 ? CursorRow() : 0);           // the pattern there may be shorter
}

void TrackerState::ChangePatternAtPosition(int by) {
    Song& song = CurrentSong();
    const int position = OrderPosition();
    song.SetPatternPosIndex(position, std::clamp(song.GetPatternPosIndex(position) + by, 0, kMaxPatterns - 1));
    ChangePosition(0);
}

void TrackerState::ChangeShownPattern(int by) {
    for (; by > 0; --by) player_.NextPattern();
    for (; by < 0; ++by) player_.PreviousPattern();
}

void TrackerState::InsertPosition() {
    Song& song = CurrentSong();
    const int length = LengthOf(song), position = OrderPosition();
    if (length >= kMaxLength) return;
    for (int i = length; i > position; --i) song.SetPatternPosIndex(i, song.GetPatternPosIndex(i - 1));
    ChangeLength(1);
}

void TrackerState::DeletePosition() {
    Song& song = CurrentSong();
    const int length = LengthOf(song);
    if (length <= 1) return;
    for (int i = OrderPosition(); i + 1 < length; ++i) song.SetPatternPosIndex(i, song.GetPatternPosIndex(i + 1));
    song.SetPatternPosIndex(length - 1, 0);
    ChangeLength(-1);
    ChangePosition(0);
}

void TrackerState::ChangeLength(int by) {
    Song& song = CurrentSong();
    const int length = std::clamp(LengthOf(song) + by, 1, kMaxLength);
    song.SetPatternPosLenght(static_cast<std::uint32_t>(length));
    ChangeRestart(0);
    if (OrderPosition() >= length) ChangePosition(0);
}

void TrackerState::ChangeRestart(int by) {
    Song& song = CurrentSong();
    const int restart = std::clamp(static_cast<int>(song.GetPatternPosRestart()) + by, 0, std::max(0, LengthOf(song) - 1));
    song.SetPatternPosRestart(static_cast<std::uint32_t>(restart));
}

// Both change what the song begins with; what sounds follows, until a command of the song changes it again.
void TrackerState::ChangeBpm(int by) {
    Song& song = CurrentSong();
    const int bpm = std::clamp(static_cast<int>(song.StartBpm()) + by, static_cast<int>(kMinBpm), static_cast<int>(kMaxBpm));
    song.SetStartBpm(static_cast<std::uint32_t>(bpm));
    player_.SetBPM(static_cast<float>(bpm));
}

void TrackerState::ChangeTempo(int by) {
    Song& song = CurrentSong();
    const auto tempo = static_cast<std::uint32_t>(std::clamp(static_cast<int>(song.StartTempo()) + by, 0, kSlowestTempo));
    song.SetStartTempo(tempo);
    player_.SetTempo(tempo);
}

void TrackerState::ChangeCursorAdd(int by) {
    constexpr int kSteps = kMaxCursorAdd + 1;
    m_nCursorAdd = ((m_nCursorAdd + by) % kSteps + kSteps) % kSteps;
}

void TrackerState::ChangeRows(int by) {
    const int rows = std::clamp(PatternRows() + by, 1, kMaxRows);
    if (rows == PatternRows()) return;
    Pattern* pattern = EnsureOwnPattern();
    if (!pattern) return;
    pattern->SetNumRows(rows);
    SetRow(CursorRow());
}

void TrackerState::ChangeChannels(int by) {
    Song& song = CurrentSong();
    const int before = SongChannels();
    song.SetNumChannels(before + by);
    for (int channel = SongChannels(); channel < before; ++channel) player_.KillChannel(channel);
}

std::unique_ptr<Song> TrackerState::MakeFreshSong() const {
    auto song = Song::MakeDefault();
    song->SetMasterVolume(SettingsOf(config_).masterAmp);
    return song;
}

void TrackerState::NewSong() {
    requests.song = {};
    requests.song.object = MakeFreshSong();
    requests.song.object->SetTitle(kNewTitle);
}

void TrackerState::ClearPatterns() { requests.newPatterns = true; }

void TrackerState::ClearInstruments() { requests.newInstruments = true; }

void TrackerState::ClearEffects() { requests.clearEffects = true; }

}  // namespace vonta
