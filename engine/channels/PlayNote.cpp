// A note's start: which sample, which pitch, where the old sound goes, and up to four voices.
#include <algorithm>
#include <cmath>

#include "engine/channels/NoteStarter.h"

namespace vonta {
namespace {

constexpr int kMaxPitchNote = 126;
constexpr int kOwnPan = 128;
constexpr int kOwnRateNote = 48;                 // plays a wave at its own rate where nothing is added
constexpr std::uint16_t kReserveFadeOut = 200;    // at least: so that no note in the reserve lasts for ever
constexpr float kDegree = 0.017452778f;
constexpr float kEqGain = 25.0f;                  // dB of a stored 1.0

// A file may hold loop points outside the wave, reversed, or in the middle of a stereo frame.
void SetWave(Voice& voice, const Sample& sample, int offset) {
    const SampleData& wave = sample.data->Source();
    const std::uint32_t frame = wave.stereo ? 2 : 1;
    const std::uint32_t count = wave.count / frame * frame;
    const std::uint32_t loopEnd = std::min(Load(sample.data->loopEnd), count) / frame * frame;
    const std::uint32_t loopStart = std::min(Load(sample.data->loopStart), loopEnd) / frame * frame;
    voice.frameSize = static_cast<std::uint8_t>(frame);
    voice.start = wave.Wave();
    voice.position = voice.start + std::min(static_cast<std::uint32_t>(std::max(offset, 0)), count) / frame * frame;
    voice.end = voice.start + count;
    voice.loopStart = voice.start + loopStart;
    voice.loopEnd = voice.start + loopEnd;
    voice.loopType = Load(sample.data->loopType);
    if (voice.loopType > VTSAMPLE_LOOP_PINGPONG) voice.loopType = VTSAMPLE_LOOP_NONE;
    if (voice.loopType != VTSAMPLE_LOOP_NONE && loopStart == loopEnd) {
        voice.loopType = VTSAMPLE_LOOP_NONE;
        voice.end = voice.loopEnd;
    }
}

void StartVoice(Voice& voice, const Sample& sample, const Instrument& instrument, int offset, int note,
                std::uint32_t sampleRate) {
    SetWave(voice, sample, offset);
    voice.delay = voice.fadeCount = voice.frac = 0;
    voice.gainLeft = voice.gainRight = 0;         // a note may be ended in the tick that starts it
    voice.backward = 0;
    voice.rampCount = kRampFrames;
    voice.note = note;
    voice.baseFineTune = voice.fineTune = static_cast<std::int8_t>(Load(sample.fineTune) + instrument.fineTune);
    voice.period = NoteToPeriod(note, voice.fineTune);
    voice.frequency = PeriodToFrequency(voice.period);
    voice.step = FrequencyToStep(voice.frequency, sampleRate);
}

int PitchNote(const Instrument& instrument, const Sample& sample, int note) {
    const int base = instrument.fixedKey[static_cast<std::size_t>(note)] ? kFixedKeyNote : note;
    return static_cast<int>(std::clamp<std::int64_t>(
        std::int64_t{Load(sample.toneRel)} + instrument.transpose + base, 0, kMaxPitchNote));
}

void SetRouting(Channel& channel, const Instrument& instrument) {
    channel.sendMask = 0;
    for (std::size_t i = 0; i < kMixedSends; ++i) {
        if (Load(instrument.sends[i].on)) channel.sendMask |= 1u << i;
        channel.sends[i] = Load(instrument.sends[i].level);
    }
    channel.busMask = 0;
    for (std::size_t b = 0; b < kBuses; ++b)
        if (Load(instrument.busMask[b])) channel.busMask |= static_cast<std::uint8_t>(1u << b);
    const std::uint8_t pair = Load(instrument.groupOutput);
    channel.groupOutput = Load(instrument.groupOn) ? static_cast<std::uint8_t>((pair < kOutputPairs ? pair : 0) + 1) : 0;
    const float pan = Load(instrument.pan), gain = Load(instrument.gain);
    channel.busLeft = 2.0f * (1.0f - pan) * gain;
    channel.busRight = 2.0f * pan * gain;
}

void SetFilters(Channel& channel, const Instrument& instrument, std::uint32_t sampleRate) {
    const std::int32_t wanted = Load(instrument.filterType);
    const auto type = static_cast<std::size_t>(wanted >= 0 && wanted < kFilterTypes ? wanted : 0);
    channel.filterOn = Load(instrument.filterOn);
    channel.filterLeft = channel.filterBankLeft[type].get();
    channel.filterRight = channel.filterBankRight[type].get();
    channel.filterLeft->Reset();
    channel.filterRight->Reset();
    for (std::size_t i = 0; i < channel.eq.size(); ++i) {
        channel.eq[i].on = Load(instrument.eq[i].on);
        channel.eq[i].Set(static_cast<float>(sampleRate), Load(instrument.eq[i].frequency),
                          Load(instrument.eq[i].gain) * kEqGain);
    }
}

}  // namespace

struct NoteStarter::NoteStart {
    Instrument& instrument;
    Channel& channel;
    const Sample& sample;
    int note;                                     // as played
    int key;                                      // transposed: finds the layers
    int velocity;                                 // 0 to 127
    int offset;                                   // floats
    int pan;                                      // as PlayNote was given it
    int volume;                                   // effective, 0 to 128
};

void NoteStarter::PlayNote(int instrumentNumber, int note, int offset, int volume, int track, int pan,
                         std::uint32_t time) {
    if (note < 0 || note > kLastNote) return;
    Instrument* const instrument = song_->GetInstrument(instrumentNumber);
    if (!instrument) return;
    if (instrument->midi.enabled) midi_.Send(track, instrumentNumber, note, volume, time);

    const int key = static_cast<int>(std::clamp<std::int64_t>(std::int64_t{note} + instrument->transpose, -1, kKeys));
    const int velocity = std::min(volume, kFullVelocity);
    const Sample* sample = instrument->GetSample(instrument->GetKeySample(key, 0, velocity));
    if (sample && !sample->Wave()) sample = nullptr;
    if (!sample && instrument->kind != 1) return;

    const int effective = !sample ? kFullVelocity : volume <= kMaxVolume ? volume : Load(sample->volume);
    const int notePan = (pan & 0xFF00) ? pan & 0xFF : sample ? Load(sample->panning) : kOwnPan;

    if (!instrument->midi.enabled) midi_.SendOff(GetChannel(track), time);   // it would hang beside the new note
    Channel& channel = TakeChannel(track, instrumentNumber, notePan, std::min<int>(effective, kMaxVolume));
    if (instrument->kind == 0)
        StartVoices({*instrument, channel, *sample, note, key, velocity, offset, pan, channel.noteVolume});
    channel.instrumentMuted = Load(instrument->muted);

    ChannelMemory& memory = Memory(track);
    memory.vibratoPosition = memory.vibratoNegative = 0;
    memory.tremoloPosition = memory.tremoloNegative = 0;
    memory.savedPeriod = static_cast<float>(channel.voices[0].period);
}

// The channel of a track, a clean one if its old one sounded, with all of the note but its voices.
Channel& NoteStarter::TakeChannel(int track, int instrumentNumber, int pan, int volume) {
    Instrument& instrument = *song_->GetInstrument(instrumentNumber);
    const float cutoff = StepCutoffLfo(instrument);
    MoveOldSoundOut(track);
    Channel& channel = GetChannel(track);
    channel.lastInstrument = channel.instrument = static_cast<std::uint8_t>(instrumentNumber);
    channel.fadeOut = instrument.fadeOut;
    channel.fadeLevel = kFullFade;
    channel.keyOff = 0;
    channel.newNoteAction = Load(instrument.newNoteAction);
    channel.noteVolume = volume;
    channel.SwitchOffEnvelopes();
    SetupNextEnvelopes(channel, instrument, static_cast<std::uint8_t>(pan), cutoff, instrument.resonance);
    SetRouting(channel, instrument);
    return channel;
}

void NoteStarter::PlayStretch(const JamNote& stretch, int track, std::uint32_t time) {
    const auto number = static_cast<int>(stretch.instrument);
    const Sample* sample = song_->Find({number, stretch.sample});
    if (!sample || !sample->Wave()) return;
    const Instrument& instrument = *song_->GetInstrument(number);
    midi_.SendOff(GetChannel(track), time);
    Channel& channel = TakeChannel(track, number, Load(sample->panning), std::min<int>(Load(sample->volume), kMaxVolume));
    channel.active = 1;
    channel.numVoices = 1;
    for (std::size_t k = 1; k < kMaxLayers; ++k) channel.voices[k].fadeCount = 0;
    channel.volume = 0;
    SetFilters(channel, instrument, mixer_.sampleRate);
    Voice& voice = channel.voices[0];
    const int pitch = std::clamp(kOwnRateNote + Load(sample->toneRel), 0, kMaxPitchNote);
    StartVoice(voice, *sample, instrument, static_cast<int>(stretch.from), pitch, mixer_.sampleRate);
    channel.noteOffset = static_cast<std::int8_t>(pitch - kOwnRateNote);
    if (stretch.to < sample->Count()) {           // not to the end: once, and no further
        voice.loopType = VTSAMPLE_LOOP_NONE;
        voice.end = std::max(voice.start + stretch.to / voice.frameSize * voice.frameSize, voice.position);
    }
    channel.instrumentMuted = Load(instrument.muted);
}

void NoteStarter::SetupNextEnvelopes(Channel& channel, Instrument& instrument, std::uint8_t pan, float cutoff,
                                   float resonance) {
    const auto next = [&instrument](EnvelopeKind kind) -> const Envelope& {
        const auto index = static_cast<std::size_t>(instrument.NextEnvelope(kind));
        return instrument.GetEnvelopes(kind)[index];
    };
    const Envelope& volumeCurve = next(EnvelopeKind::Volume);
    const Envelope& panCurve = next(EnvelopeKind::Pan);
    const Envelope& cutoffCurve = next(EnvelopeKind::Cutoff);
    channel.SetupEnvelopes(volumeCurve, panCurve, cutoffCurve, next(EnvelopeKind::Resonance), pan, cutoff, resonance);
}

void NoteStarter::StartVoices(const NoteStart& start) {
    Channel& channel = start.channel;
    const std::uint32_t rate = mixer_.sampleRate;
    const int pitch = PitchNote(start.instrument, start.sample, start.note);
    channel.active = 1;
    channel.numVoices = 1;
    for (std::size_t k = 1; k < kMaxLayers; ++k) channel.voices[k].fadeCount = 0;   // layers of a note that has ended
    channel.volume = 0;
    SetFilters(channel, start.instrument, rate);
    StartVoice(channel.voices[0], start.sample, start.instrument, start.offset, pitch, rate);
    channel.noteOffset = static_cast<std::int8_t>(pitch - start.note);

    const int layers = start.instrument.CountLayers(start.key, start.velocity);
    for (int k = 1; k < kMaxLayers && k < layers; ++k) {
        const Sample* sample = start.instrument.GetSample(
            start.instrument.GetKeySample(start.key, k, start.velocity));
        if (!sample || !sample->Wave()) continue;
        const int voice = channel.numVoices++;
        StartVoice(channel.voices[static_cast<std::size_t>(voice)], *sample, start.instrument, start.offset,
                   PitchNote(start.instrument, *sample, start.note), rate);
        channel.SetPan(voice, static_cast<float>((start.pan & 0xFF00) ? start.pan & 0xFF : Load(sample->panning)));
    }
}

// The LFO steps once for each note, not in time. Returns the cutoff of this note.
float NoteStarter::StepCutoffLfo(Instrument& instrument) {
    constexpr float kTurn = 360.0f;
    const float depth = instrument.cutoffLfoDepth;
    float& phase = instrument.cutoffLfoPhase;
    if (!(phase >= 0.0f && phase <= kTurn)) phase = 0.0f;
    const float sine = std::cos(phase * kDegree) * depth;
    const float saw = (2.0f * phase / kTurn - 1.0f) * depth;
    float cutoff = instrument.cutoff;
    switch (instrument.cutoffLfoWave) {
        case 1: cutoff -= sine; break;
        case 2: cutoff += sine < 0.0f ? depth : -depth; break;
        case 3:
        case 4: cutoff -= saw; break;
        case 5:
            random_ = random_ * 1103515245u + 12345u;
            return cutoff - (2.0f * static_cast<float>((random_ >> 16) & 0x7FFF) / 32767.0f - 1.0f) * depth;
        default: return cutoff;
    }
    const float turn = std::fmod(kTurn / instrument.cutoffLfoPeriod, kTurn);
    if (!std::isfinite(turn)) return cutoff;
    phase += instrument.cutoffLfoWave == 4 ? -turn : turn;
    if (phase >= kTurn) phase -= kTurn;
    if (phase <= 0.0f && instrument.cutoffLfoWave == 4) phase += kTurn;
    return cutoff;
}

// The MIDI note stays with the track: its note off is still to come.
void NoteStarter::MoveOldSoundOut(int track) {
    const auto index = static_cast<std::size_t>(track);
    std::unique_ptr<Channel>& current = mixer_.channels[index];
    if (current->volumeEnvelope.on && current->active) current->keyOff = 1;
    if (!current->active && !current->voices[0].fadeCount) return;

    const bool goesOn = current->newNoteAction == 1;
    std::unique_ptr<Channel>& place = mixer_.reserve[goesOn ? mixer_.reserveIndex : index];
    std::swap(current, place);
    std::swap(current->midi, place->midi);
    current->Reset();
    if (!goesOn) {
        place->Stop();
        return;
    }
    mixer_.reserveIndex = (mixer_.reserveIndex + 1) % kTracks;
    if (place->volumeEnvelope.on && place->active) {
        place->fadeOut = std::max(place->fadeOut, kReserveFadeOut);
    } else {
        place->Kill();
    }
}

void NoteStarter::KeyOff(int track, std::uint32_t time) {
    Channel& channel = GetChannel(track);
    midi_.SendOff(channel, time);
    if (channel.volumeEnvelope.on && channel.active) {
        channel.keyOff = 1;
    } else {
        channel.Stop();
    }
}

}  // namespace vonta
