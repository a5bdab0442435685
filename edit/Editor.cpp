#include "edit/Editor.h"

#include <algorithm>
#include <new>

namespace vonta {
namespace {

bool IsPattern(int number) { return number >= 0 && number < kMaxPatterns; }
bool IsInstrument(int slot) { return slot >= 0 && slot < kMaxInstruments; }
bool IsSample(int sample) { return sample >= 0 && sample < kMaxSamples; }

}  // namespace

void Editor::Record(std::unique_ptr<Change> change) {
    change->Swap(player_, Change::Way::Forth);
    journal_.Add(std::move(change));
}

void Editor::SetCell(int number, int row, int track, const Cell& cell) {
    Pattern* pattern = GetSong().GetPattern(number);
    if (!pattern || row < 0 || row >= pattern->Rows() || track < 0 || track >= kTracks) return;
    const Cell former = pattern->Read(row, track);
    if (former == cell) return;
    pattern->Write(row, track, cell);
    journal_.Cells().Add(number, row, track, former);
}

void Editor::SetRows(int number, int rows) {
    Pattern* pattern = GetSong().GetPattern(number);
    if (!pattern || rows < 1 || rows > kMaxRows || rows == pattern->Rows()) return;
    for (int track = 0; track < kTracks; ++track)
        for (int row = rows; row < pattern->Rows(); ++row) SetCell(number, row, track, {});
    Record(std::make_unique<RowsChange>(number, rows));
}

void Editor::SetSpeed(std::uint32_t bpm, std::uint32_t tempo) {
    GetSong().KeepStart();
    if (bpm == GetSong().StartBpm() && tempo == GetSong().StartTempo()) return;
    Record(std::make_unique<SpeedChange>(bpm, tempo));
}

void Editor::SetMasterVolume(float value) {
    if (vonta::Load(GetSong().masterVolume) != value) Record(std::make_unique<MasterVolumeChange>(value));
}

void Editor::SetPattern(int number, std::unique_ptr<Pattern> pattern) {
    if (!IsPattern(number) || (!pattern && !GetSong().GetPattern(number))) return;
    if (pattern) Set(SongField(&Song::numPatterns), std::max(GetSong().numPatterns, number + 1));
    Record(std::make_unique<PatternChange>(number, std::move(pattern)));
}

Pattern* Editor::EnsurePattern(int number, int rows) {
    if (Pattern* own = GetSong().GetPattern(number)) return own;
    std::unique_ptr<Pattern> made(new (std::nothrow) Pattern);
    if (!made) return nullptr;
    made->SetNumRows(rows);
    SetPattern(number, std::move(made));
    return GetSong().GetPattern(number);
}

void Editor::SetInstrument(int slot, std::unique_ptr<Instrument> instrument) {
    if (!IsInstrument(slot) || (!instrument && !GetSong().GetInstrument(slot))) return;
    if (instrument) Set(SongField(&Song::numInstruments), std::max(GetSong().numInstruments, slot + 1));
    Record(std::make_unique<InstrumentChange>(slot, std::move(instrument)));
}

void Editor::SetSample(int slot, int sample, std::unique_ptr<Sample> object) {
    const Instrument* owner = GetSong().GetInstrument(slot);
    if (!owner || !IsSample(sample) || (!object && !owner->GetSample(sample))) return;
    if (object) Set(InstrumentField(slot, &Instrument::numSamples), std::max(owner->numSamples, sample + 1));
    Record(std::make_unique<SampleChange>(slot, sample, std::move(object)));
}

void Editor::ExchangeInstruments(int a, int b) {
    const Song& song = GetSong();
    if (!IsInstrument(a) || !IsInstrument(b) || a == b || (!song.GetInstrument(a) && !song.GetInstrument(b))) return;
    Set(SongField(&Song::numInstruments), std::max({song.numInstruments, a + 1, b + 1}));
    Record(std::make_unique<PlacesChange>(PlacesChange::Where{a, -1}, PlacesChange::Where{b, -1}));
}

void Editor::ExchangeSamples(int instrumentA, int sampleA, int instrumentB, int sampleB) {
    const PlacesChange::Where a{instrumentA, sampleA}, b{instrumentB, sampleB};
    for (const auto& [slot, sample] : {a, b}) {
        const Instrument* owner = GetSong().GetInstrument(slot);
        if (!owner || owner->kind != 0 || !IsSample(sample)) return;
    }
    Record(std::make_unique<PlacesChange>(a, b));
    for (const auto& [slot, sample] : {a, b}) {
        const Instrument& owner = *GetSong().GetInstrument(slot);
        if (owner.GetSample(sample)) Set(InstrumentField(slot, &Instrument::numSamples), std::max(owner.numSamples, sample + 1));
    }
}

void Editor::SetWave(int slot, int sample, std::unique_ptr<Sample> wave) {
    const Instrument* owner = GetSong().GetInstrument(slot);
    if (owner && owner->GetSample(sample) && wave) Record(std::make_unique<WaveChange>(slot, sample, std::move(wave)));
}

void Editor::SetSynth(int slot, std::unique_ptr<SynthPlugin> synth) {
    const Song& song = GetSong();
    if (!IsInstrument(slot) || (!synth && !song.GetSynth(slot) && !song.missingSynths.contains(slot))) return;
    const std::uint32_t rate = player_.GetMixer().sampleRate;
    Record(std::make_unique<SynthChange>(slot, std::move(synth), rate));
}

void Editor::SetEffect(int slot, std::unique_ptr<EffectSlot> effect) {
    if (slot < 0 || slot >= kEffectSlots) return;
    const auto& place = player_.GetMixer().effects[static_cast<std::size_t>(slot)];
    if (!effect && !place && !GetSong().missingEffects.contains(slot)) return;
    const std::uint32_t rate = player_.GetMixer().sampleRate;
    if (effect && !effect->Init(0, 0, 0, rate)) return;
    if (effect && place) effect->on = vonta::Load(place->on);
    Record(std::make_unique<EffectChange>(slot, std::move(effect), rate));
}

void Editor::SetSong(std::unique_ptr<Song> song) {
    if (!song) song = Song::MakeDefault();
    Record(std::make_unique<SongChange>(std::move(song), journal_.SavedMark(), Journal::kNever));
}

}  // namespace vonta
