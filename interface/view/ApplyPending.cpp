#include <algorithm>
#include <filesystem>
#include <utility>

#include "edit/Effects.h"
#include "edit/Instruments.h"
#include "edit/Samples.h"
#include "edit/WholeSong.h"
#include "interface/view/TrackerState.h"

namespace vonta {
namespace {

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
    applied_.songParts |= edits_.Steps().TakePartsTaken();
    return std::exchange(applied_, {});
}

void TrackerState::ApplyDeletes() {
    if (std::exchange(requests.deleteInstrument, false)) DeleteInstrument();
    if (std::exchange(requests.deleteSample, false)) DeleteSample();
}

void TrackerState::ApplyInstrument() {
    auto& request = requests.instrument;
    if (!request.object) return;
    Place at = Here();
    at.instrument = request.slot;
    LoadIntoSlot(edits_, at, std::move(request.object));
    m_szInstrumentName = request.fileName;
    request = {};
}

void TrackerState::ApplySynth() {
    auto& request = requests.synth;
    if (!request.object && !request.remove) return;
    LoadSynth(edits_, Here(), request.slot, std::move(request.object));
    request = {};
}

void TrackerState::ApplySample() {
    auto& request = requests.sample;
    if (!request.object) return;
    Place at = Here();
    at.instrument = request.instrument;
    at.sample = request.sample;
    LoadIntoSlot(edits_, at, std::move(request.object), NameOfFile(request.fileName));
    m_szSampleName = request.fileName;
    request = {};
}

void TrackerState::ApplyEffects() {
    if (std::exchange(requests.clearEffects, false)) vonta::ClearEffects(edits_, Here());
    auto& request = requests.effect;
    if (!request.object && !request.remove) return;
    LoadEffect(edits_, Here(), request.slot, std::move(request.object));
    request = {};
}

void TrackerState::ApplySong() {
    auto& request = requests.song;
    if (!request.object) return;
    request.object->KeepStart();
    request.object->SetFileName(request.fileName);
    ReplaceSong(edits_, request.name, Here(), std::move(request.object));
    MarkSaved();
    if (request.changed) MarkChanged();
    m_szSongName = request.offeredName;
    applied_.unknownChunks |= request.unknownChunks;
    request = {};
}

void TrackerState::ApplyZaps() {
    if (std::exchange(requests.newPatterns, false)) vonta::ClearPatterns(edits_, Here());
    if (std::exchange(requests.newInstruments, false)) vonta::ClearInstruments(edits_, Here());
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
    player_.GetSong().KeepStart();                   // of one that came by another road
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
