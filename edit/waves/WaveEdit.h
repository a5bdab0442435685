// What the sample editor does to the wave of the sample that `at` tells, each as one step of the journal. Nothing
// happens where there is no sample or no wave, and what needs a selection does nothing without one. A clone that is
// edited gets a wave of its own.
//
// The new wave is made beside the old one, which sounds on meanwhile; the two are exchanged in a moment.
#pragma once

#include <cstdint>

#include "edit/Editor.h"
#include "edit/waves/WaveTools.h"

namespace vonta {

// The selection, in floats; made even in a stereo wave. It is a way of looking, and no step.
void SelectRange(Editor& editor, const Place& at, std::int64_t start, std::int64_t end);
void SelectNothing(Editor& editor, const Place& at);

// --- On the selection. The loop is set anew, to the whole wave.
bool CutRange(Editor& editor, const Place& at, SampleClip& clip);      // the clip is taken only if there is a selection
bool CopyRange(const Song& song, const Place& at, SampleClip& clip);   // no step: nothing changes
// Before the selection, with as many channels; into a sample without a wave, as its wave.
void PasteRange(Editor& editor, const Place& at, const SampleClip& clip);
void DeleteRange(Editor& editor, const Place& at);
void CropToRange(Editor& editor, const Place& at);

// --- On the selection, or on all without one. The loop stays where it is; if all is reversed it turns with it.
void UseWaveTool(Editor& editor, const Place& at, WaveTool tool);
void ScaleWave(Editor& editor, const Place& at, float factor);

// --- On the whole wave.
void ToggleSign(Editor& editor, const Place& at);
void ToMono(Editor& editor, const Place& at);

// Makes the sample, of whatever kind, play `source` from now on. False if there is no source, or none but itself.
bool CloneSample(Editor& editor, const Place& at, SampleNumber source);

// --- The loop. Points are floats and made even in a stereo wave; neither passes the other.
void SetLoopType(Editor& editor, const Place& at, LoopType type);
void SetLoopStart(Editor& editor, const Place& at, std::int64_t floats);
void SetLoopEnd(Editor& editor, const Place& at, std::int64_t floats);
void StepLoopStart(Editor& editor, const Place& at, int frames);   // by -1 or 1; stops before the end
void StepLoopEnd(Editor& editor, const Place& at, int frames);
enum class LoopWork { Done, NoLoop, NothingBefore, NothingFound };
LoopWork CrossfadeLoop(Editor& editor, const Place& at, std::int64_t frames);      // forward loops alone
LoopWork FindLoopEnd(Editor& editor, const Place& at);

}  // namespace vonta
