// The song's speed, its channels and its texts.
#pragma once

#include <string>

#include "edit/Editor.h"
#include "edit/StepNames.h"

namespace vonta {

// What the song begins with; what plays changes with it, as with the next two.
void SetBpm(Editor& editor, const Place& at, int bpm);
void SetTempo(Editor& editor, const Place& at, int ticksPerRow);     // 0 holds the song
void SetMasterVolume(Editor& editor, const Place& at, float volume); // linear
void SetChannels(Editor& editor, const Place& at, int channels);

// A text that is being typed stands in the song's own field already; `former` is what was there. One step for as long
// as the gesture lasts.
void KeepTyped(Editor& editor, StepName name, const Place& at, const Field<std::string>& field, std::string former);

}  // namespace vonta
