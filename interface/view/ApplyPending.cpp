#include <algorithm>
#include <filesystem>
#include <utility>

#include "interface/view/EditCell.h"
#include "interface/view/TrackerState.h"

namespace vonta {
namespace {

// What belongs to the place in the song rather than to the sound that is loaded into it.
void KeepOfSlot(const Instrument& former, Instrument& next) {
    next.muted = former.muted;
    if (next.color == Instrument{}.color) next.color = former.color;
}

std::string NameOfFile(const std::string& fileName) { return std::filesystem::path(fileName).stem().string(); }

}  // namespace

Applied TrackerState::ApplyPending() {
    ApplyDeletes();
    ApplyInstrument();
    ApplySynth();
    ApplySample();
    ApplyEffects();
    ApplySong();
    ApplyZaps();
    LimitCursor();
    ApplySoloChannel();
    SelectByKeys();
    TakeFrame();
    return std::exchange(applied_, {});
}

void TrackerState::ApplyDeletes() {
    if (std::exchange(requests.deleteInstrument, false)) DeleteInstrument();
    if (std::exchange(requests.deleteSample, false)) DeleteSample();
}

void TrackerState::ApplyInstrument() {
    auto& request = requests.instrument;
    if (!request.object) return;
    if (const Instrument* former = CurrentSong().GetInstrument(request.slot)) KeepOfSlot(*former, *request.object);
    InstallInstrument(request.slot, std::move(request.object));
    m_szInstrumentName = request.fileName;
    request = {};
}

void TrackerState::ApplySynth() {
    auto& request = requests.synth;
    if (!request.object && !request.remove) return;
    {
        const SilentPause pause(player_);
        CurrentSong().SetSynth(request.slot, std::move(request.object));
        CurrentSong().missingSynths.erase(request.slot);
    }
    applied_.songParts = true;
    request = {};
}

void TrackerState::ApplySample() {
    auto& request = requests.sample;
    if (!request.object) return;
    InstallSample(request.instrument, request.sample, std::move(request.object));
    if (Instrument* owner = CurrentSong().GetInstrument(request.instrument); owner && request.sample == 0)
        owner->SetName(NameOfFile(request.fileName));
    m_szSampleName = request.fileName;
    request = {};
}

void TrackerState::ApplyEffects() {
    if (std::exchange(requests.clearEffects, false)) {
        const SilentPause pause(player_);
        for (int slot = 0; slot < kEffectSlots; ++slot) player_.GetMixer().SetEffect(slot, nullptr);
        CurrentSong().missingEffects.clear();
        applied_.songParts = true;
    }
    auto& request = requests.effect;
    if (!request.object && !request.remove) return;
    {
        const MixerPause pause(player_);
        player_.GetMixer().SetEffect(request.slot, std::move(request.object));
        CurrentSong().missingEffects.erase(request.slot);
    }
    applied_.songParts = true;
    request = {};
}

void TrackerState::ApplySong() {
    auto& request = requests.song;
    if (!request.object) return;
    const bool played = player_.IsPlaying();
    request.object->KeepStart();
    {
        const SilentPause pause(player_);
        player_.SetSong(std::move(request.object));
        CurrentSong().SetFileName(request.fileName);
    }
    if (played) player_.Play(0);
    m_szSongName = request.offeredName;
    MarkSaved();
    if (request.changed) MarkChanged();
    applied_.songParts = true;
    applied_.unknownChunks |= request.unknownChunks;
    request = {};
}

void TrackerState::ApplyZaps() {
    Song& song = CurrentSong();
    if (std::exchange(requests.newPatterns, false)) {
        const SilentPause pause(player_);
        for (auto& pattern : song.patterns) pattern.reset();
        song.numPatterns = 0;
        song.SetPatternList({});
        song.SetPatternPosLenght(1);
        song.SetPatternPosRestart(0);
        player_.SetPosition(0);
        player_.SetRow(0);
    }
    if (std::exchange(requests.newInstruments, false)) {
        const SilentPause pause(player_);
        for (auto& instrument : song.instruments) instrument.reset();
        song.numInstruments = 0;
        applied_.songParts = true;
    }
}

// The solo follows the cursor. Only a change mutes, so that a channel can be brought back by hand meanwhile.
void TrackerState::ApplySoloChannel() {
    const int solo = m_bSoloChannel ? pending.m_nCursorChannel : -1;
    if (solo == soloChannel_) return;
    soloChannel_ = solo;
    for (int channel = 0; channel < kTracks; ++channel) MuteChannel(channel, solo >= 0 && channel != solo);
}

void TrackerState::TakeFrame() {
    LimitCursor();
    CurrentSong().KeepStart();                   // of one that came by another road
    frame = pending;
    const PlayPosition at = player_.GetCurrentPlayPos();
    m_pPattern = at.current;
    m_nPatternNumber = static_cast<int>(at.pattern);
    m_nOrderPosition = at.position;
    m_nCursorRow = std::min(at.row, at.current->Rows() - 1);
    const Cell cell = m_pPattern->Read(m_nCursorRow, frame.m_nCursorChannel);
    m_cell = {cell.instrument, cell.effect, cell.param, cell.volume};
}

}  // namespace vonta
