#include "plugins/SynthPlugin.h"

namespace vonta {

void SynthMidiSide::NoteOn(int note, int, int velocity, std::uint32_t) { synth_.NoteOn(note, velocity, 0); }

void SynthMidiSide::NoteOff(int note, int, std::uint32_t) { synth_.NoteOff(note); }

}  // namespace vonta
