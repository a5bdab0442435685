#include <algorithm>

#include "edit/Instruments.h"
#include "edit/Samples.h"
#include "interface/view/TrackerState.h"

namespace vonta {
namespace {

constexpr int kBankBit = 8;
constexpr int kBlockMask = kBankBit - 1;

std::size_t At(ListKind list) { return static_cast<std::size_t>(list); }

}  // namespace

const Instrument* TrackerState::SelectedInstrument() const {
    return CurrentSong().GetInstrument(pending.m_nSelected[At(kListInstruments)] - 1);
}

const Sample* TrackerState::SelectedSample() const {
    const Instrument* instrument = SelectedInstrument();
    return instrument ? instrument->GetSample(pending.m_nSample) : nullptr;
}

const Instrument& TrackerState::EnsureInstrument(int slot) { return vonta::EnsureInstrument(edits_, Here(), slot); }

const Sample& TrackerState::EnsureSample(int instrument, int sample) {
    return vonta::EnsureSample(edits_, Here(), instrument, sample);
}

void TrackerState::SetInstrumentColour(int slot, std::uint32_t rgb) {
    Place at = Here();
    at.instrument = slot;
    vonta::SetInstrumentColour(edits_, at, rgb);
}

void TrackerState::CopyInstrument() { vonta::CopyInstrument(edits_, Here(), pending.m_nSourceInstrument - 1); }

void TrackerState::ExchangeInstruments() { vonta::ExchangeInstruments(edits_, Here(), pending.m_nSourceInstrument - 1); }

void TrackerState::DeleteInstrument() { vonta::DeleteInstrument(edits_, Here()); }

void TrackerState::CopySample() {
    vonta::CopySample(edits_, Here(), pending.m_nSourceInstrument - 1, pending.m_nSourceSample);
}

void TrackerState::ExchangeSamples() {
    vonta::ExchangeSamples(edits_, Here(), pending.m_nSourceInstrument - 1, pending.m_nSourceSample);
}

void TrackerState::DeleteSample() { vonta::DeleteSample(edits_, Here()); }

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
