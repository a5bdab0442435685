// What note and instrument column of a cell ask for; and how all notes end at once.
#include <algorithm>

#include "engine/channels/NoteStarter.h"

namespace vonta {
namespace {

// What a note sounds with when only its instrument is repeated and a filter envelope is on.
constexpr float kRestartCutoff = 1000.0f, kRestartResonance = 0.8f;

}  // namespace

bool NoteStarter::Trigger(int channelNumber, int note, int instrument, int volume, bool restartEnvelopes,
                        std::uint32_t time) {
    if (note == kNoteOff) {
        KeyOff(channelNumber, time);
        return false;
    }
    if (note == kNoNote) {
        if (instrument) TriggerInstrumentAlone(channelNumber, instrument, volume, restartEnvelopes, time);
        return false;
    }
    if (instrument) {
        PlayNote(instrument - 1, note, 0, volume, channelNumber, 0, time);
        return true;
    }
    const Channel& channel = GetChannel(channelNumber);
    if (!song_->GetInstrument(channel.lastInstrument)) return false;
    const bool isMidi = song_->GetInstrument(channel.lastInstrument)->midi.enabled;
    const int least = isMidi ? 1 : 0;             // a velocity of 0 would be a note off
    PlayNote(channel.lastInstrument, note, 0, std::max(channel.noteVolume, least), channelNumber, 0, time);
    return true;
}

void NoteStarter::TriggerInstrumentAlone(int channelNumber, int instrumentNumber, int volume, bool restartEnvelopes,
                                       std::uint32_t time) {
    Channel& channel = GetChannel(channelNumber);
    if (channel.lastInstrument == kNoInstrument) return;   // nothing played here: there is no key to take up
    const int key = channel.voices[0].note - channel.noteOffset;
    if (instrumentNumber != channel.lastInstrument + 1) {
        PlayNote(instrumentNumber - 1, key, 0, volume, channelNumber, 0, time);
        return;
    }
    Instrument* const instrument = song_->GetInstrument(instrumentNumber - 1);
    if (!instrument || key < 0 || key > kLastNote) return;
    const Sample* sample = instrument->GetSample(instrument->GetKeySample(key, 0, kFullVelocity));
    if (!sample) return;
    if (restartEnvelopes) RestartEnvelopes(channel, *instrument, sample->panning);
    channel.fadeOut = instrument->fadeOut;
    channel.fadeLevel = kFullFade;
    channel.keyOff = 0;
    channel.noteVolume = std::min<int>(sample->volume, kMaxVolume);
    channel.RecomputeVolume();
    channel.Resume(true);
}

// Without a filter envelope the note keeps its filter as it is.
void NoteStarter::RestartEnvelopes(Channel& channel, Instrument& instrument, std::uint8_t pan) {
    const float cutoff = channel.cutoff, resonance = channel.resonance;
    SetupNextEnvelopes(channel, instrument, pan, kRestartCutoff, kRestartResonance);
    if (!channel.cutoffEnvelope.on) channel.cutoff = cutoff;
    if (!channel.resonanceEnvelope.on) channel.resonance = resonance;
}

void NoteStarter::Kill(int channel, std::uint32_t time) {
    midi_.SendOff(GetChannel(channel), time);
    GetChannel(channel).Kill();
}

void NoteStarter::KillTracks(std::uint32_t time) {
    for (int channel = 0; channel < kTracks; ++channel) Kill(channel, time);
}

void NoteStarter::KeepPitch() {
    for (auto* table : {&mixer_.channels, &mixer_.reserve})
        for (const auto& channel : *table)
            for (Voice& voice : channel->voices)
                if (voice.position) voice.step = FrequencyToStep(voice.frequency, mixer_.sampleRate);
}

void NoteStarter::StopAll(std::uint32_t time) {
    for (auto* table : {&mixer_.channels, &mixer_.reserve})
        for (const auto& channel : *table) {
            midi_.SendOff(*channel, time);
            channel->SwitchOffEnvelopes();
            channel->Reset();
        }
}

void NoteStarter::ReleaseAll(std::uint32_t time) {
    for (const auto& channel : mixer_.channels) {
        midi_.SendOff(*channel, time);
        if (channel->volumeEnvelope.on && channel->active) {
            channel->keyOff = 1;
        } else {
            channel->Kill();
        }
    }
}

void NoteStarter::StopInstrument(int instrument, std::uint32_t time) {
    for (auto* table : {&mixer_.channels, &mixer_.reserve})
        for (const auto& channel : *table) {
            if (channel->lastInstrument != instrument) continue;
            midi_.SendOff(*channel, time);
            channel->LetGo();
        }
}

}  // namespace vonta
