#include "edit/Changes.h"

#include <algorithm>

namespace vonta {
namespace {

std::uint8_t Number(int value) { return static_cast<std::uint8_t>(value); }

std::size_t BytesOf(const Sample* sample) {
    return sample ? sizeof *sample + sizeof(SampleData) + sample->name.capacity() + sample->data->count * sizeof(float) : 0;
}

std::size_t BytesOf(const Instrument* instrument) {
    if (!instrument) return 0;
    std::size_t bytes = sizeof *instrument;
    for (const auto& sample : instrument->samples) bytes += BytesOf(sample.get());
    for (const auto& zones : instrument->keyZones) bytes += zones.capacity() * sizeof(KeyZone);
    return bytes;
}

std::size_t BytesOf(const Song* song) {
    if (!song) return 0;
    std::size_t bytes = sizeof *song + song->comments.capacity();
    for (const auto& pattern : song->patterns) bytes += pattern ? sizeof *pattern : 0;
    for (const auto& instrument : song->instruments) bytes += BytesOf(instrument.get());
    return bytes;
}

// What waits in the journal is not there for clones either.
void Park(const Sample* sample, bool parked) {
    if (sample) sample->data->parked = parked ? 1 : 0;
}

void Park(const Instrument* instrument, bool parked) {
    if (!instrument) return;
    for (const auto& sample : instrument->samples) Park(sample.get(), parked);
}

// A clone elsewhere plays what goes, too.
void StopClones(SndPlayer& player, const Sample* sample) {
    if (sample && sample->data->refCount > 0) StopSample(player, *sample->data);
}

void MarkSample(Touched& touched, int instrument, int sample) {
    touched.Add({Part::Kind::Instrument, Number(instrument)});
    touched.Add({Part::Kind::Wave, Number(instrument), Number(sample)});
}

void MarkWaves(Touched& touched, int slot, const Instrument* instrument) {
    for (int i = 0; instrument && i < kMaxSamples; ++i)
        if (instrument->GetSample(i)) touched.Add({Part::Kind::Wave, Number(slot), Number(i)});
}

// A file's words on a plug-in of a slot; none if empty.
void SwapWords(std::map<int, std::vector<std::uint8_t>>& all, int slot, std::vector<std::uint8_t>& other) {
    std::vector<std::uint8_t> former;
    if (const auto found = all.find(slot); found != all.end()) former = std::move(found->second);
    if (other.empty()) all.erase(slot);
    else all[slot] = std::move(other);
    other = std::move(former);
}

}  // namespace

void CellsChange::Add(int pattern, int row, int track, const Cell& former) {
    cells_.push_back({Number(pattern), Number(row), Number(track), former});
}

void CellsChange::Swap(SndPlayer& player, Way way) {
    const auto swap = [&](Entry& entry) {
        Pattern* pattern = player.GetSong().GetPattern(entry.pattern);
        if (!pattern) return;
        const Cell former = pattern->Read(entry.row, entry.track);
        pattern->Write(entry.row, entry.track, entry.other);
        entry.other = former;
    };
    if (way == Way::Back) std::for_each(cells_.rbegin(), cells_.rend(), swap);
    else std::for_each(cells_.begin(), cells_.end(), swap);
}

void CellsChange::Mark(Touched& touched) const {
    for (const Entry& entry : cells_) touched.patterns.set(entry.pattern);
}

bool CellsChange::Append(Change& next) {
    auto* later = dynamic_cast<CellsChange*>(&next);
    if (!later) return false;
    cells_.insert(cells_.end(), later->cells_.begin(), later->cells_.end());
    return true;
}

void RowsChange::Swap(SndPlayer& player, Way) {
    Pattern* pattern = player.GetSong().GetPattern(pattern_);
    if (!pattern) return;
    const std::int32_t former = pattern->Rows();
    pattern->SetNumRows(other_);
    other_ = former;
}

void SpeedChange::Swap(SndPlayer& player, Way) {
    Song& song = player.GetSong();
    const std::uint32_t bpm = song.StartBpm(), tempo = song.StartTempo();
    song.SetStartBpm(bpm_);
    song.SetStartTempo(tempo_);
    if (bpm != bpm_) player.SetBPM(static_cast<float>(bpm_));
    if (tempo != tempo_) player.SetTempo(tempo_);
    bpm_ = bpm;
    tempo_ = tempo;
}

void MasterVolumeChange::Swap(SndPlayer& player, Way) {
    const float former = Load(player.GetSong().masterVolume);
    player.SetMasterVolume(value_);
    value_ = former;
}

void PatternChange::Swap(SndPlayer& player, Way) {
    const Hold hold(player);
    std::swap(player.GetSong().patterns[static_cast<std::size_t>(number_)], other_);
}

void InstrumentChange::Swap(SndPlayer& player, Way) {
    const Hold hold(player);
    player.StopInstrument(slot_);
    auto& place = player.GetSong().instruments[static_cast<std::size_t>(slot_)];
    for (int i = 0; place && i < kMaxSamples; ++i) StopClones(player, place->GetSample(i));
    Park(place.get(), true);
    std::swap(place, other_);
    Park(place.get(), false);
    const std::uint32_t rate = player.GetMixer().sampleRate;
    if (place && place->synth && rate_ != 0 && rate_ != rate) place->synth->Init(0, 0, 0, rate);
    rate_ = rate;
}

std::size_t InstrumentChange::Bytes() const { return sizeof *this + BytesOf(other_.get()); }

// The waves of both: which of them is in the song, the next look tells.
void InstrumentChange::Mark(Touched& touched) const {
    touched.Add({Part::Kind::Numbers});
    touched.Add({Part::Kind::Instrument, Number(slot_)});
    MarkWaves(touched, slot_, other_.get());
    for (int sample = 0; sample < kUsedSamples; ++sample) touched.Add({Part::Kind::Wave, Number(slot_), Number(sample)});
}

void SampleChange::Swap(SndPlayer& player, Way) {
    Instrument* owner = player.GetSong().GetInstrument(instrument_);
    if (!owner) return;
    const Hold hold(player);
    player.StopInstrument(instrument_);
    auto& place = owner->samples[static_cast<std::size_t>(sample_)];
    StopClones(player, place.get());
    Park(place.get(), true);
    std::swap(place, other_);
    Park(place.get(), false);
}

std::size_t SampleChange::Bytes() const { return sizeof *this + BytesOf(other_.get()); }

void SampleChange::Mark(Touched& touched) const { MarkSample(touched, instrument_, sample_); }

void PlacesChange::Swap(SndPlayer& player, Way) {
    const Hold hold(player);
    player.StopInstrument(a_.instrument);
    player.StopInstrument(b_.instrument);
    Song& song = player.GetSong();
    if (a_.sample < 0) song.SwapInstruments(a_.instrument, b_.instrument);
    else song.SwapSamples(a_.instrument, a_.sample, b_.instrument, b_.sample);
}

void PlacesChange::Mark(Touched& touched) const {
    for (const Where& where : {a_, b_}) {
        touched.Add({Part::Kind::Instrument, Number(where.instrument)});
        const int first = std::max(where.sample, 0), last = where.sample < 0 ? kMaxSamples - 1 : where.sample;
        for (int sample = first; sample <= last; ++sample) MarkSample(touched, where.instrument, sample);
    }
}

void WaveChange::Swap(SndPlayer& player, Way) {
    Instrument* owner = player.GetSong().GetInstrument(instrument_);
    Sample* sample = owner ? owner->GetSample(sample_) : nullptr;
    if (!sample) return;
    const Hold hold(player);
    StopSample(player, sample->data->Source());
    sample->data->SwapWave(*other_->data);
    std::swap(sample->selStart, other_->selStart);
    std::swap(sample->selEnd, other_->selEnd);
    std::swap(sample->selActive, other_->selActive);
}

std::size_t WaveChange::Bytes() const { return sizeof *this + BytesOf(other_.get()); }

void WaveChange::Mark(Touched& touched) const { MarkSample(touched, instrument_, sample_); }

void SynthChange::Swap(SndPlayer& player, Way) {
    const std::uint32_t rate = player.GetMixer().sampleRate;
    if (other_ && rate_ != rate) other_->Init(0, 0, 0, rate);
    rate_ = rate;
    const Hold hold(player);
    player.StopNotes();                          // any instrument may play through it
    Song& song = player.GetSong();
    std::swap(song.synths[static_cast<std::size_t>(slot_)], other_);
    SwapWords(song.missingSynths, slot_, missing_);
}

// What runs in the slot is switched like the one that was there.
void EffectChange::Swap(SndPlayer& player, Way) {
    const std::uint32_t rate = player.GetMixer().sampleRate;
    if (other_ && rate_ != rate) {
        other_->Uninit();
        other_->Init(0, 0, 0, rate);
    }
    rate_ = rate;
    const Hold hold(player);
    std::swap(player.GetMixer().effects[static_cast<std::size_t>(slot_)], other_);
    SwapWords(player.GetSong().missingEffects, slot_, missing_);
}

void SongChange::Swap(SndPlayer& player, Way) {
    const bool played = player.IsPlaying();
    {
        const MixerPause pause(player);
        other_ = player.ExchangeSong(std::move(other_));
    }
    std::swap(saved_, otherSaved_);
    if (played) player.Play(0);                  // the song that has come begins
}

std::size_t SongChange::Bytes() const { return sizeof *this + BytesOf(other_.get()); }

}  // namespace vonta
