#include "tools/DemoInstruments.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <utility>

#include "tools/DemoWaves.h"

namespace vonta::demo {
namespace {

constexpr float kFullScale = 32000.0f;         // a little below 32768
constexpr double kReferenceRate = 8363.0;      // Hz, at which a wave without tuning plays on note 48
constexpr double kMiddleC = 261.6256;          // Hz; what note 48 is to sound as
constexpr double kHighestPartial = 17000.0;    // Hz
constexpr int kMiddleNote = 48;
constexpr int kMaxHarmonics = 60;              // a harmonic needs four frames of a cycle

constexpr std::uint8_t kLeft = 64, kCentre = 128, kRight = 192;

// Tone and fine tune with which note 48 plays at `rate` Hz.
void Tune(Sample& sample, double rate) {
    const double semitones = 12.0 * std::log2(rate / kReferenceRate);
    const double whole = std::round(semitones);
    sample.toneRel = static_cast<std::int8_t>(whole);
    sample.fineTune = static_cast<std::int8_t>(std::lround((semitones - whole) * 128.0));
}

std::unique_ptr<Sample> MakeSample(const char* name, Wave wave, int channels, double rate, std::uint8_t panning) {
    for (float& value : wave) value = std::round(value * kFullScale);   // so that 16 bits hold it
    auto sample = std::make_unique<Sample>();
    sample->SetData(wave, channels);
    sample->SetName(name);
    sample->volume = kMaxVolume;
    sample->panning = panning;
    sample->bits = 16;
    Tune(*sample, rate);
    return sample;
}

void LoopAll(Sample& sample) {
    sample.data->loopType = VTSAMPLE_LOOP_FORDWARD;
    sample.data->loopStart = 0;
    sample.data->loopEnd = sample.data->count;
}

// note 48 plays the recording at its own speed, or a drum recorded at `hz` at that pitch on its note.
Instrument& AddDrum(Song& song, const char* name, Wave wave, std::uint8_t panning, int channels = 1,
                    double hz = kMiddleC) {
    auto drum = std::make_unique<Instrument>();
    drum->SetName(name);
    drum->AddSample(MakeSample(name, std::move(wave), channels, kDrumRate * kMiddleC / hz, panning));
    drum->MapAllKeys();
    return *song.GetInstrument(song.AddInstrument(std::move(drum)));
}

struct Tone {
    const char* name;
    Wave (*make)(int harmonics);
    int channels;
    bool looped;
    int lowestOctave, highestOctave;           // a sample for each; beyond them the outer ones are stretched
    std::uint8_t panning;
};

// As many harmonics as the octave's highest key carries.
int HarmonicsOf(int octave) {
    const double highestPitch = kMiddleC * std::exp2((12.0 * (octave + 1) - kMiddleNote) / 12.0);
    return std::clamp(static_cast<int>(kHighestPartial / highestPitch), 1, kMaxHarmonics);
}

std::unique_ptr<Instrument> MakeTone(const Tone& tone) {
    auto instrument = std::make_unique<Instrument>();
    instrument->SetName(tone.name);
    for (int octave = tone.lowestOctave; octave <= tone.highestOctave; ++octave) {
        auto sample = MakeSample(tone.name, tone.make(HarmonicsOf(octave)), tone.channels,
                                 kFramesPerCycle * kMiddleC, tone.panning);
        if (tone.looped) LoopAll(*sample);
        const int index = instrument->AddSample(std::move(sample));
        const int first = octave == tone.lowestOctave ? 0 : 12 * octave;
        const int end = octave == tone.highestOctave ? kKeys : 12 * (octave + 1);
        for (int key = first; key < end; ++key) instrument->SetKeySample(key, index, 0, 127);
    }
    return instrument;
}

Instrument& AddTone(Song& song, const Tone& tone) {
    return *song.GetInstrument(song.AddInstrument(MakeTone(tone)));
}

// The same sound from another place between left and right. Duplicate leaves out the key map.
std::unique_ptr<Instrument> PlaceElsewhere(const Instrument& source, const char* name, std::uint8_t panning) {
    auto copy = source.Duplicate();
    copy->SetName(name);
    copy->keyZones = source.keyZones;
    for (int i = 0; i < copy->numSamples; ++i) copy->GetSample(i)->panning = panning;
    return copy;
}

// An echo comes from one side, and darker.
void AddEcho(Song& song, const Instrument& source, const char* name, std::uint8_t panning, float cutoff) {
    auto echo = PlaceElsewhere(source, name, panning);
    echo->filterOn = 1;
    echo->filterType = 1;
    echo->cutoff = cutoff;
    echo->cutoffLfoWave = 0;
    echo->resonance = 0.2f;
    song.AddInstrument(std::move(echo));
}

constexpr int kNoSustain = -1;

// Points are ticks and levels from 0 to 64.
void Shape(Envelope& envelope, std::initializer_list<EnvelopePoint> points, int sustainPoint = kNoSustain) {
    envelope.enabled = 1;
    envelope.numPoints = static_cast<std::uint8_t>(points.size());
    std::copy(points.begin(), points.end(), envelope.points.begin());
    if (sustainPoint == kNoSustain) return;
    envelope.sustainOn = 1;
    envelope.sustainPoint = static_cast<std::uint8_t>(sustainPoint);
}

// The notes of a chord or an arpeggio ring into each other: an old note goes on, and fades.
void LetRing(Instrument& instrument, std::uint16_t fadeOut) {
    instrument.newNoteAction = 1;
    instrument.fadeOut = fadeOut;
    Envelope& volume = instrument.volumeEnvelopes[0];
    if (!volume.enabled) Shape(volume, {{0, 64}});
}

void LowPass(Instrument& instrument, float cutoff, float resonance) {
    instrument.filterOn = 1;
    instrument.filterType = 1;
    instrument.cutoff = cutoff;
    instrument.resonance = resonance;
}

void AddDrums(Song& song) {
    AddDrum(song, "Kick", MakeKick(), kCentre);
    AddDrum(song, "Snare", MakeSnare(), 120);
    AddDrum(song, "Clap", MakeClap(), 144);
    AddDrum(song, "Hat, closed", MakeHat(0.07), 160);
    AddDrum(song, "Hat, open", MakeHat(0.5), 160);
    AddDrum(song, "Tom", MakeTom(), kCentre, 1, 110.0);
    AddDrum(song, "Crash", MakeCrash(), kCentre, 2);
    AddDrum(song, "Riser", MakeRiser(), kCentre);
}

void AddBass(Song& song) {
    Instrument& bass = AddTone(song, {"Bass", MakeBass, 1, true, 1, 3, kCentre});
    Shape(bass.volumeEnvelopes[0], {{0, 64}, {6, 54}, {30, 42}, {34, 0}}, 2);
    Shape(bass.cutoffEnvelopes[0], {{0, 44}, {3, 28}, {9, 15}, {40, 8}});
    LowPass(bass, 3000.0f, 0.55f);
    bass.fadeOut = 2500;
}

void AddPad(Song& song) {
    Instrument& pad = AddTone(song, {"Pad", MakePad, 2, true, 3, 5, kCentre});
    Shape(pad.volumeEnvelopes[0], {{0, 6}, {10, 36}, {28, 64}}, 2);
    Shape(pad.cutoffEnvelopes[0], {{0, 8}, {40, 22}, {90, 30}, {180, 18}, {400, 10}});
    LowPass(pad, 3000.0f, 0.35f);
    LetRing(pad, 520);
}

void AddPlucks(Song& song) {
    Instrument& pluck = AddTone(song, {"Pluck", MakePluck, 1, false, 3, 5, kCentre});
    LowPass(pluck, 3300.0f, 0.45f);
    pluck.cutoffLfoWave = 1;                   // opens and closes once in 88 notes
    pluck.cutoffLfoDepth = 2100.0f;
    pluck.cutoffLfoPeriod = 88.0f;
    LetRing(pluck, 800);
    AddEcho(song, pluck, "Pluck, echo", kRight + 24, 1700.0f);
}

void AddLeads(Song& song) {
    Instrument& lead = AddTone(song, {"Lead", MakeLead, 1, true, 4, 6, 120});
    Shape(lead.volumeEnvelopes[0], {{0, 40}, {2, 64}, {24, 54}, {34, 0}}, 2);
    Shape(lead.cutoffEnvelopes[0], {{0, 26}, {4, 60}, {60, 44}});
    LowPass(lead, 5000.0f, 0.25f);
    lead.fadeOut = 1200;
    AddEcho(song, lead, "Lead, echo", kLeft - 24, 2200.0f);
    song.GetInstrument(kLeadEcho)->cutoffEnvelopes[0].enabled = 0;
    auto harmony = PlaceElsewhere(*song.GetInstrument(kLead), "Harmony", kRight);
    harmony->fineTune = 6;                     // 1/128 of a semitone: a second player, not a copy
    song.AddInstrument(std::move(harmony));
}

void AddKeys(Song& song) {
    Instrument& keys = AddTone(song, {"Keys", MakeKeys, 1, false, 4, 5, 112});
    LetRing(keys, 420);
    AddEcho(song, keys, "Keys, echo", kRight, 2000.0f);
}

void AddStab(Song& song) {
    Instrument& stab = AddTone(song, {"Stab", MakeSquare, 1, true, 4, 5, 88});
    Shape(stab.volumeEnvelopes[0], {{0, 64}, {8, 20}, {16, 0}});
    LowPass(stab, 4200.0f, 0.3f);
    stab.fadeOut = 4000;
}

}  // namespace

void AddInstruments(Song& song) {
    AddDrums(song);
    AddBass(song);
    AddPad(song);
    AddPlucks(song);
    AddLeads(song);
    AddKeys(song);
    AddStab(song);
}

}  // namespace vonta::demo
