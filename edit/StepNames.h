// What the steps are called where they are taken back: "Undo: transpose block".
#pragma once

#include <string_view>

namespace vonta {

using StepName = std::string_view;               // of static text

// Cells
inline constexpr StepName kStepNote = "note", kStepNoteOff = "note off", kStepVolume = "volume", kStepDigit = "digit",
    kStepDelete = "delete", kStepMacro = "macro", kStepInsertNote = "insert note", kStepInsertRow = "insert row",
    kStepDeleteNote = "delete note", kStepDeleteRow = "delete row", kStepTake = "recording";
// Ranges; those of four by Scope
inline constexpr StepName kStepTranspose[] = {"transpose track", "transpose pattern", "transpose song", "transpose block"};
inline constexpr StepName kStepReplace[] = {"replace instrument in track", "replace instrument in pattern",
                                            "replace instrument in song", "replace instrument in block"};
inline constexpr StepName kStepFade = "scale fade", kStepExpand = "expand pattern", kStepShrink = "shrink pattern",
    kStepRows = "pattern length";
// Clipboards
inline constexpr StepName kStepCutTrack = "cut track", kStepPasteTrack = "paste track", kStepCutPattern = "cut pattern",
    kStepPastePattern = "paste pattern", kStepCutBlock = "cut block", kStepPasteBlock = "paste block";
// Order list and numbers
inline constexpr StepName kStepOrder = "pattern in the order", kStepInsertPosition = "insert position",
    kStepDeletePosition = "delete position", kStepLength = "song length", kStepRestart = "restart position",
    kStepBpm = "BPM", kStepTempo = "tempo", kStepChannels = "channels", kStepTitle = "title",
    kStepMasterVolume = "amplification";
// Instruments and samples
inline constexpr StepName kStepNewInstrument = "new instrument", kStepNewSample = "new sample",
    kStepLoadInstrument = "load instrument", kStepLoadSample = "load sample", kStepCopyInstrument = "copy instrument",
    kStepSwapInstruments = "exchange instruments", kStepDeleteInstrument = "delete instrument",
    kStepCopySample = "copy sample", kStepSwapSamples = "exchange samples", kStepDeleteSample = "delete sample",
    kStepInstrumentName = "instrument name", kStepSampleName = "sample name", kStepColour = "instrument colour";
// Plug-ins and the whole song
inline constexpr StepName kStepLoadSynth = "load synth", kStepDeleteSynth = "delete synth", kStepLoadEffect = "load effect",
    kStepDeleteEffect = "delete effect", kStepLoadSong = "load song", kStepNewSong = "new song",
    kStepClearPatterns = "clear patterns", kStepClearInstruments = "clear instruments", kStepClearEffects = "clear effects";

}  // namespace vonta
