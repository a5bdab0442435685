#include <algorithm>
#include <utility>

#include "interface/view/EditCell.h"
#include "interface/view/TrackerState.h"

namespace vonta {
namespace {

constexpr int kBankBit = 8;
constexpr int kBlockMask = kBankBit - 1;

std::size_t At(ListKind list) { return static_cast<std::size_t>(list); }

bool IsInstrument(int slot) { return slot >= 0 && slot < kMaxInstruments; }
bool IsSample(int sample) { return sample >= 0 && sample < kMaxSamples; }

std::unique_ptr<Instrument> NewInstrument() {
    auto instrument = std::make_unique<Instrument>();
    auto sample = std::make_unique<Sample>();
    sample->volume = kMaxVolume;
    instrument->AddSample(std::move(sample));
    instrument->MapAllKeys();
    return instrument;
}

// Sounds and looks as the original does. A plug-in that the original holds for itself is not copied.
std::unique_ptr<Instrument> CloneOf(const Instrument& source) {
    auto clone = source.Duplicate();
    for (int i = 0; i < kUsedSamples; ++i)
        if (const Sample* sample = source.GetSample(i)) clone->GetSample(i)->volume = sample->volume;
    clone->keyZones = source.keyZones;
    clone->busMask = source.busMask;
    clone->eq = source.eq;
    clone->pan = source.pan;
    clone->transpose = source.transpose;
    clone->fineTune = source.fineTune;
    clone->useSynth = source.useSynth;
    clone->groupOn = source.groupOn;
    clone->groupOutput = source.groupOutput;
    clone->color = source.color;
    return clone;
}

}  // namespace

Instrument* TrackerState::SelectedInstrument() const {
    return CurrentSong().GetInstrument(pending.m_nSelected[At(kListInstruments)] - 1);
}

Sample* TrackerState::SelectedSample() const {
    const Instrument* instrument = SelectedInstrument();
    return instrument ? instrument->GetSample(pending.m_nSample) : nullptr;
}

void TrackerState::InstallInstrument(int slot, std::unique_ptr<Instrument> instrument) {
    if (!IsInstrument(slot)) return;
    const SilentPause pause(player_);
    Song& song = CurrentSong();
    applied_.songParts |= song.GetInstrument(slot) != nullptr;   // what fills an empty slot takes nothing away
    song.SetInstrument(slot, std::move(instrument));
    song.numInstruments = std::max(song.numInstruments, slot + 1);
}

// A slot without an instrument gets one for it.
void TrackerState::InstallSample(int instrument, int sample, std::unique_ptr<Sample> object) {
    if (!IsInstrument(instrument) || !IsSample(sample)) return;
    const SilentPause pause(player_);
    Instrument& target = EnsureInstrument(instrument);
    applied_.songParts |= target.GetSample(sample) != nullptr;
    target.SetSample(sample, std::move(object), 1);
    target.numSamples = std::max(target.numSamples, sample + 1);
}

Instrument& TrackerState::EnsureInstrument(int slot) {
    slot = std::clamp(slot, 0, kMaxInstruments - 1);
    if (!CurrentSong().GetInstrument(slot)) InstallInstrument(slot, NewInstrument());
    return *CurrentSong().GetInstrument(slot);
}

Sample& TrackerState::EnsureSample(int instrument, int sample) {
    sample = std::clamp(sample, 0, kMaxSamples - 1);
    Instrument& owner = EnsureInstrument(instrument);
    if (!owner.GetSample(sample)) {
        auto empty = std::make_unique<Sample>();
        empty->volume = kMaxVolume;
        InstallSample(std::clamp(instrument, 0, kMaxInstruments - 1), sample, std::move(empty));
    }
    return *owner.GetSample(sample);
}

void TrackerState::CopyInstrument() {
    const Instrument* source = CurrentSong().GetInstrument(pending.m_nSourceInstrument - 1);
    if (source && source != SelectedInstrument())
        InstallInstrument(pending.m_nSelected[At(kListInstruments)] - 1, CloneOf(*source));
}

void TrackerState::ExchangeInstruments() {
    const SilentPause pause(player_);
    Song& song = CurrentSong();
    const int source = pending.m_nSourceInstrument, selected = pending.m_nSelected[At(kListInstruments)];
    song.SwapInstruments(source - 1, selected - 1);
    song.numInstruments = std::max({song.numInstruments, source, selected});
    applied_.songParts = true;
}

void TrackerState::DeleteInstrument() {
    if (!SelectedInstrument()) return;
    const SilentPause pause(player_);
    CurrentSong().SetInstrument(pending.m_nSelected[At(kListInstruments)] - 1, nullptr);
    applied_.songParts = true;
}

void TrackerState::CopySample() {
    const Instrument* from = CurrentSong().GetInstrument(pending.m_nSourceInstrument - 1);
    const Sample* source = from ? from->GetSample(pending.m_nSourceSample) : nullptr;
    if (source && source != SelectedSample())
        InstallSample(pending.m_nSelected[At(kListInstruments)] - 1, pending.m_nSample, source->Duplicate());
}

void TrackerState::ExchangeSamples() {
    const SilentPause pause(player_);
    Song& song = CurrentSong();
    const int source = pending.m_nSourceInstrument - 1, selected = pending.m_nSelected[At(kListInstruments)] - 1;
    song.SwapSamples(source, pending.m_nSourceSample, selected, pending.m_nSample);
    for (const auto& [slot, sample] : {std::pair{source, pending.m_nSourceSample}, {selected, pending.m_nSample}})
        if (Instrument* instrument = song.GetInstrument(slot); instrument && instrument->GetSample(sample))
            instrument->numSamples = std::max(instrument->numSamples, sample + 1);
    applied_.songParts = true;
}

void TrackerState::DeleteSample() {
    if (!SelectedSample()) return;
    const SilentPause pause(player_);
    SelectedInstrument()->SetSample(pending.m_nSample, nullptr, 1);
    applied_.songParts = true;
}

void TrackerState::SelectItem(ListKind list, int item) {
    item = std::clamp(item, 1, kListItems[At(list)]);
    pending.m_nSelected[At(list)] = item;
    pending.m_nBlock[At(list)] = (item - 1) / kItemsOfBlock;
}

void TrackerState::SetBlock(ListKind list, int block) {
    int& shown = pending.m_nBlock[At(list)];
    const int last = kListItems[At(list)] / kItemsOfBlock - 1;
    shown = std::min((shown & kBankBit) | (block & kBlockMask), last);
}

void TrackerState::ToggleBank(ListKind list) {
    if (kListItems[At(list)] > kBankBit * kItemsOfBlock) pending.m_nBlock[At(list)] ^= kBankBit;
}

}  // namespace vonta
