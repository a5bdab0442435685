// What the operations on samples have in common.
#pragma once

#include <memory>

#include "edit/Editor.h"

namespace vonta {

SampleNumber NumberOf(const Place& at);
const Sample* WithWave(const Song& song, const Place& at);     // null if there is no sample, or no wave in it
// What the sample plays, with its loop and selection, and nothing copied: what is written to it makes a wave of its
// own.
std::unique_ptr<Sample> ViewOf(const Sample& sample);
std::unique_ptr<Sample> CopyOf(const Sample& sample);          // the same with a wave of its own, not yet checked
// Loop and selection where their sound is after `ratio` frames were made of one.
void MovePoints(Sample& copy, const Sample& from, double ratio);
// A step of its own: the sample gets the wave.
void Exchange(Editor& editor, const Place& at, const char* name, std::unique_ptr<Sample> wave);

}  // namespace vonta
