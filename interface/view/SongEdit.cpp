#include <algorithm>

#include "app/config/ConfigSettings.h"
#include "edit/Numbers.h"
#include "edit/OrderList.h"
#include "interface/view/TrackerState.h"

namespace vonta {
namespace {

constexpr const char* kNewTitle = "NEWsong";

int LengthOf(const Song& song) { return static_cast<int>(song.GetPatternPosLenght()); }

}  // namespace

void TrackerState::ChangePosition(int by) {
    player_.SetPosition(std::clamp(OrderPosition() + by, 0, std::max(0, LengthOf(CurrentSong()) - 1)));
    SetRow(by == 0 ? CursorRow() : 0);           // the pattern there may be shorter
}

void TrackerState::ChangePatternAtPosition(int by) {
    SetOrderEntry(edits_, Here(), CurrentSong().GetPatternPosIndex(OrderPosition()) + by);
    ChangePosition(0);
}

void TrackerState::ChangeShownPattern(int by) {
    for (; by > 0; --by) player_.NextPattern();
    for (; by < 0; ++by) player_.PreviousPattern();
}

void TrackerState::InsertPosition() { vonta::InsertPosition(edits_, Here()); }

void TrackerState::DeletePosition() {
    if (LengthOf(CurrentSong()) <= 1) return;
    vonta::DeletePosition(edits_, Here());
    ChangePosition(0);
}

void TrackerState::ChangeLength(int by) {
    SetSongLength(edits_, Here(), LengthOf(CurrentSong()) + by);
    if (OrderPosition() >= LengthOf(CurrentSong())) ChangePosition(0);
}

void TrackerState::ChangeRestart(int by) {
    SetRestart(edits_, Here(), static_cast<int>(CurrentSong().GetPatternPosRestart()) + by);
}

// Both change what the song begins with; what sounds follows, until a command of the song changes it again.
void TrackerState::ChangeBpm(int by) { SetBpm(edits_, Here(), static_cast<int>(CurrentSong().StartBpm()) + by); }

void TrackerState::ChangeTempo(int by) { SetTempo(edits_, Here(), static_cast<int>(CurrentSong().StartTempo()) + by); }

void TrackerState::ChangeCursorAdd(int by) {
    constexpr int kSteps = kMaxCursorAdd + 1;
    m_nCursorAdd = ((m_nCursorAdd + by) % kSteps + kSteps) % kSteps;
}

void TrackerState::ChangeRows(int by) {
    const int rows = std::clamp(PatternRows() + by, 1, kMaxRows);
    if (rows == PatternRows()) return;
    ChangePatternRows(edits_, Here(), rows);
    SetRow(CursorRow());
}

void TrackerState::ChangeChannels(int by) {
    const int before = SongChannels();
    SetChannels(edits_, Here(), before + by);
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
    requests.song.name = kStepNewSong;
}

void TrackerState::ClearPatterns() { requests.newPatterns = true; }

void TrackerState::ClearInstruments() { requests.newInstruments = true; }

void TrackerState::ClearEffects() { requests.clearEffects = true; }

}  // namespace vonta
