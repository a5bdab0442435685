// Notes on their way to a MIDI output or a plug-in, with what was last sent to each output's channels.
#include <algorithm>

#include "engine/SndPlayer.h"

namespace vonta {
namespace {

enum Controller { kBankHigh = 0, kVolume = 7, kPan = 8, kBankLow = 32 };
constexpr int kSynthOutputs = 128;                // output numbers from here on are plug-ins

// Sends `value` through `send` unless it was the last one.
template <class Send>
void SendChanged(std::uint16_t& last, std::uint16_t value, Send send) {
    if (last == value) return;
    last = value;
    send();
}

}  // namespace

void SndPlayer::SendMidiNote(int track, int instrumentNumber, int note, int volume, std::uint32_t time) {
    const Instrument& instrument = *song_->GetInstrument(instrumentNumber);
    const MidiSettings& midi = instrument.midi;
    if (instrument.useSynth && midi.synth > kMidiMax) return;   // there is no such plug-in
    std::int64_t pitch = std::int64_t{note} + midi.transpose;
    int velocity = std::min(volume, kMidiMax);
    if (const Sample* sample = instrument.GetSample(instrument.GetKeySample(note, 0, kMidiMax))) {
        pitch += std::int64_t{sample->toneRel} + instrument.transpose;
        if (volume > kMaxVolume) velocity = std::min<int>(sample->volume, kMidiMax);
    }
    const int outputNumber = instrument.useSynth ? kSynthOutputs + midi.synth : midi.device;

    Channel& channel = GetChannel(track);
    SendMidiNoteOff(channel, time);
    MidiNoteState& state = channel.midi;
    state.midiActive = 1;
    state.midiNote = static_cast<std::uint8_t>(std::clamp<std::int64_t>(pitch, 0, kMidiMax));
    state.midiChannel = midi.channel & 15;
    state.midiVelocity = static_cast<std::uint8_t>(velocity);
    state.midiDevice = static_cast<std::uint8_t>(outputNumber);
    state.controllers = midi.controllers;
    channel.noteOffset = 0;
    channel.lastInstrument = channel.instrument = static_cast<std::uint8_t>(instrumentNumber);
    if (DrvMIDIOUT* output = mixer_->MidiOutput(*song_, outputNumber)) {
        SendMidiSettings(*output, instrument, outputNumber, time);
        output->NoteOn(state.midiNote, state.midiChannel, state.midiVelocity, time);
    }
}

void SndPlayer::SendMidiSettings(DrvMIDIOUT& output, const Instrument& instrument, int outputNumber,
                                 std::uint32_t time) {
    const MidiSettings& midi = instrument.midi;
    const int channel = midi.channel & 15;
    MidiSent& sent = midiSent_[static_cast<std::size_t>(outputNumber)][static_cast<std::size_t>(channel)];
    if (midi.sendBank)
        SendChanged(sent.bank, midi.bank, [&] {
            output.ControlChange(channel, kBankLow, MidiData(midi.bank & 0xFF), time);
            output.ControlChange(channel, kBankHigh, MidiData(midi.bank >> 8), time);
        });
    SendChanged(sent.program, midi.program, [&] { output.ProgramChange(channel, MidiData(midi.program), time); });
    if (midi.sendVolume)
        SendChanged(sent.volume, midi.volume, [&] { output.ControlChange(channel, kVolume, MidiData(midi.volume), time); });
    if (midi.sendPan)
        SendChanged(sent.pan, midi.pan, [&] { output.ControlChange(channel, kPan, MidiData(midi.pan), time); });
}

// A new receiver has heard nothing of what the former one was sent.
void SndPlayer::ForgetMidiSent(int firstOutput) {
    for (std::size_t output = static_cast<std::size_t>(firstOutput); output < midiSent_.size(); ++output)
        midiSent_[output].fill({});
}

void SndPlayer::ForgetSynthsSent() { ForgetMidiSent(kSynthOutputs); }

void SndPlayer::SendMidiNoteOff(Channel& channel, std::uint32_t time) {
    if (!channel.midi.midiActive) return;
    if (DrvMIDIOUT* output = mixer_->MidiOutput(*song_, channel.midi.midiDevice))
        output->NoteOff(channel.midi.midiNote, channel.midi.midiChannel, time);
    channel.midi.midiActive = 0;
}

}  // namespace vonta
