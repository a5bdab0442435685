#include "engine/channels/MidiNotes.h"

#include <algorithm>


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

void MidiNotes::Send(int track, int instrumentNumber, int note, int volume, std::uint32_t time) {
    const Instrument& instrument = *song_->GetInstrument(instrumentNumber);
    const MidiSettings& midi = instrument.midi;
    if (instrument.useSynth && midi.synth > kMidiMax) return;   // there is no such plug-in
    std::int64_t pitch = std::int64_t{note} + midi.transpose;
    int loudness = volume;
    if (const Sample* sample = instrument.GetSample(instrument.GetKeySample(note, 0, kMidiMax))) {
        pitch += std::int64_t{sample->toneRel} + instrument.transpose;
        if (volume > kMaxVolume) loudness = sample->volume;
    }
    const int outputNumber = instrument.useSynth ? kSynthOutputs + midi.synth : midi.device;

    Channel& channel = *mixer_.channels[static_cast<std::size_t>(track)];
    SendOff(channel, time);
    MidiNoteState& state = channel.midi;
    state.midiActive = 1;
    state.midiNote = static_cast<std::uint8_t>(std::clamp<std::int64_t>(pitch, 0, kMidiMax));
    state.midiChannel = midi.channel & 15;
    state.midiVelocity = static_cast<std::uint8_t>(std::min(loudness, kMidiMax));
    state.midiDevice = static_cast<std::uint8_t>(outputNumber);
    state.controllers = midi.controllers;
    channel.noteOffset = 0;
    channel.noteVolume = std::min<int>(loudness, kMaxVolume);   // for a later note without an instrument number
    channel.lastInstrument = channel.instrument = static_cast<std::uint8_t>(instrumentNumber);
    if (DrvMIDIOUT* output = mixer_.MidiOutput(*song_, outputNumber)) {
        SendSettings(*output, instrument, outputNumber, time);
        output->NoteOn(state.midiNote, state.midiChannel, state.midiVelocity, time);
    }
}

void MidiNotes::SendSettings(DrvMIDIOUT& output, const Instrument& instrument, int outputNumber,
                                 std::uint32_t time) {
    const MidiSettings& midi = instrument.midi;
    const int channel = midi.channel & 15;
    Sent& sent = sent_[static_cast<std::size_t>(outputNumber)][static_cast<std::size_t>(channel)];
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

void MidiNotes::ForgetFrom(std::size_t firstOutput) {
    for (std::size_t output = firstOutput; output < sent_.size(); ++output) sent_[output].fill({});
}

void MidiNotes::ForgetSynths() { ForgetFrom(kSynthOutputs); }

void MidiNotes::SendOff(Channel& channel, std::uint32_t time) {
    if (!channel.midi.midiActive) return;
    if (DrvMIDIOUT* output = mixer_.MidiOutput(*song_, channel.midi.midiDevice))
        output->NoteOff(channel.midi.midiNote, channel.midi.midiChannel, time);
    channel.midi.midiActive = 0;
}

bool MidiNotes::SendController(int track, int effect, int param, std::uint32_t time) {
    const MidiNoteState& midi = mixer_.channels[static_cast<std::size_t>(track)]->midi;
    const auto number = static_cast<std::size_t>(effect);
    if (!midi.midiActive || number >= midi.controllers.size()) return false;
    const std::uint8_t controller = midi.controllers[number];
    if (controller == 255) return false;
    if (DrvMIDIOUT* output = mixer_.MidiOutput(*song_, midi.midiDevice))
        output->ControlChange(midi.midiChannel, MidiData(controller), MidiData(param), time);
    return true;
}

}  // namespace vonta
