#include "song/Song.h"

#include <algorithm>
#include <utility>

#include "platform/Debug.h"
#include "platform/Shared.h"

namespace vonta {
namespace {

constexpr std::size_t kMaxTitleLength = 254;
constexpr std::size_t kMaxFileNameLength = 4095;   // of any path; a cut one would name another file
constexpr int kDefaultChannels = 10;

// The three collections hold owned objects by number; a number outside finds nothing and stores nothing.
template <class Places>
auto* At(const Places& places, int index) {
    return index >= 0 && index < std::ssize(places) ? places[static_cast<std::size_t>(index)].get() : nullptr;
}

template <class Places, class Object>
void Put(Places& places, int index, Object object) {
    if (index >= 0 && index < std::ssize(places)) places[static_cast<std::size_t>(index)] = std::move(object);
}

template <class Places, class Object>
int Append(Places& places, std::int32_t& count, Object object) {
    if (count < 0 || count >= std::ssize(places)) return -1;
    Put(places, count, std::move(object));
    return count++;
}

void TakePlayingDefaults(Sample& clone, const Sample& source) {
    clone.fineTune = source.fineTune;
    clone.data->loopEnd = source.data->loopEnd;
    clone.data->loopStart = source.data->loopStart;
    clone.panning = source.panning;
    clone.toneRel = source.toneRel;
    clone.data->loopType = source.data->loopType;
    clone.volume = source.volume;
}

void ValidatePatterns(const Song& song) {
    DebugOutput("\t\t  - testing patterns\n");
    for (int i = 0; i < song.numPatterns; ++i)
        if (song.GetPattern(i)) DebugOutput("\t\t\ttesting pattern...\n");
}

}  // namespace

std::unique_ptr<Song> Song::MakeDefault() {
    auto song = std::make_unique<Song>();
    song->numChannels = kDefaultChannels;
    song->length = 1;
    song->AddPattern(std::make_unique<Pattern>());
    return song;
}

std::uint32_t Song::GetBPM() const { return Load(bpm); }

std::uint32_t Song::GetTempo() const { return Load(tempo); }

std::uint32_t Song::GetPatternPosLenght() const { return Load(length); }

std::uint32_t Song::GetPatternPosRestart() const { return Load(restartPos); }

int Song::GetPatternPosIndex(int position) const {
    if (position < 0 || position >= kMaxPositions) return 0;
    return Load(patternList[static_cast<std::size_t>(position)]);
}

bool Song::KeepsStart() const { return Load(startBpm) != kNotKept; }

std::uint32_t Song::StartBpm() const { return KeepsStart() ? Load(startBpm) : GetBPM(); }

std::uint32_t Song::StartTempo() const {
    const std::uint32_t kept = Load(startTempo);
    return kept != kNotKept ? kept : GetTempo();
}

void Song::KeepStart() {
    if (KeepsStart()) return;
    SetStartTempo(GetTempo());
    SetStartBpm(GetBPM());
}

void Song::SetStartBpm(std::uint32_t value) { Store(startBpm, value); }

void Song::SetStartTempo(std::uint32_t value) { Store(startTempo, value); }

void Song::SetBPM(std::uint32_t value) { Store(bpm, value); }

void Song::SetTempo(std::uint32_t value) { Store(tempo, value); }

void Song::SetNumChannels(int channels) { Store(numChannels, std::clamp(channels, kMinChannels, kMaxChannels)); }

void Song::SetPatternPosLenght(std::uint32_t positions) { Store(length, positions); }

void Song::SetPatternPosRestart(std::uint32_t position) { Store(restartPos, position); }

void Song::SetPatternPosIndex(int position, int pattern) {
    if (position < 0 || position >= kMaxPositions || pattern < 0 || pattern >= kMaxPatterns) return;
    Store(patternList[static_cast<std::size_t>(position)], static_cast<std::uint8_t>(pattern));
}

void Song::SetPatternList(const std::array<std::uint8_t, kMaxPositions>& bytes) {
    for (int position = 0; position < kMaxPositions; ++position)
        SetPatternPosIndex(position, bytes[static_cast<std::size_t>(position)]);
}

void Song::SetMasterVolume(float value) { Store(masterVolume, value); }

void Song::SetTitle(std::string_view text) { title = text.substr(0, kMaxTitleLength); }

void Song::SetComments(std::string text) { comments = std::move(text); }

void Song::SetFileName(std::string_view text) { fileName = text.substr(0, kMaxFileNameLength); }

int Song::AddPattern(std::unique_ptr<Pattern> pattern) {
    return Append(patterns, numPatterns, std::move(pattern));
}

int Song::AddInstrument(std::unique_ptr<Instrument> instrument) {
    return Append(instruments, numInstruments, std::move(instrument));
}

void Song::SetPattern(int index, std::unique_ptr<Pattern> pattern) { Put(patterns, index, std::move(pattern)); }

void Song::SetInstrument(int index, std::unique_ptr<Instrument> instrument) {
    Put(instruments, index, std::move(instrument));
}

void Song::SetSynth(int index, std::unique_ptr<SynthPlugin> synth) { Put(synths, index, std::move(synth)); }

Pattern* Song::GetPattern(int index) const { return At(patterns, index); }

Instrument* Song::GetInstrument(int index) const { return At(instruments, index); }

SynthPlugin* Song::GetSynth(int index) const { return At(synths, index); }

void Song::SwapInstruments(int a, int b) {
    if (a < 0 || a >= kMaxInstruments || b < 0 || b >= kMaxInstruments) return;
    std::swap(instruments[static_cast<std::size_t>(a)], instruments[static_cast<std::size_t>(b)]);
}

void Song::SwapSamples(int instrumentA, int sampleA, int instrumentB, int sampleB) {
    Instrument* a = GetInstrument(instrumentA);
    Instrument* b = GetInstrument(instrumentB);
    if (!a || !b || a->kind != 0 || b->kind != 0) return;
    if (sampleA < 0 || sampleA >= kMaxSamples || sampleB < 0 || sampleB >= kMaxSamples) return;
    std::swap(a->samples[static_cast<std::size_t>(sampleA)], b->samples[static_cast<std::size_t>(sampleB)]);
}

Sample* Song::Find(SampleNumber number) const {
    const vonta::Instrument* instrument = GetInstrument(number.instrument);
    return instrument ? instrument->GetSample(number.sample) : nullptr;
}

SampleNumber Song::CloneTarget(SampleNumber source) const {
    const Sample* sample = Find(source);
    return sample && sample->data->isClone ? SampleNumber::OfCloneId(sample->data->cloneId) : source;
}

void Song::LinkSample(int instrumentA, int sampleA, int instrumentB, int sampleB) {
    const SampleNumber numberA{instrumentA, sampleA}, source{instrumentB, sampleB};
    Sample* a = Find(numberA);
    if (!a || !a->data->isClone || numberA == source) return;
    const SampleNumber numberB = CloneTarget(source);
    if (numberA == numberB) return;
    Sample* b = Find(numberB);
    if (b && b->data->isClone) DebugOutput("FATAL ASSERT: dangerous link (clone sample linked to another one)\n");
    if (b) TakePlayingDefaults(*a, *b);
    a->Link(b ? b->data : nullptr, numberB.CloneId());
}

int Song::CountInstruments() const {
    return static_cast<int>(std::ranges::count_if(instruments, [](const auto& place) { return place != nullptr; }));
}

int Song::CountSamples() const {
    int count = 0;
    for (const auto& instrument : instruments)
        for (int i = 0; instrument && i < kUsedSamples; ++i) count += instrument->GetSample(i) != nullptr;
    return count;
}

void Song::Validate() {
    DebugOutput("\t\tTesting data: %s...\n", title.c_str());
    bpm = std::clamp(bpm, kMinBpm, kMaxBpm);
    tempo = std::clamp(tempo, kMinTempo, kMaxTempo);
    numChannels = std::clamp(numChannels, 0, kMaxChannels);
    numInstruments = std::min(numInstruments, kMaxInstruments);
    DebugOutput("\t\t  - testing instruments\n");
    for (const auto& instrument : instruments)
        if (instrument) instrument->Validate();
    length = std::clamp<std::uint32_t>(length, 1, kMaxPositions);
    restartPos = std::min(restartPos, length - 1);
    numPatterns = std::clamp(numPatterns, 0, kMaxPatterns);
    ValidatePatterns(*this);
}

}  // namespace vonta
