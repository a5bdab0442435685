// Samples as wholes. `at` tells instrument and sample; a slot without an instrument gets one for a sample that comes.
#pragma once

#include <memory>
#include <string>

#include "edit/Editor.h"
#include "edit/StepNames.h"

namespace vonta {

Sample& EnsureSample(Editor& editor, const Place& at, int instrument, int sample);   // an empty one, if there is none
// Whether nothing sounds there that a song could rely on: no sample, or one without a wave, as a new instrument has.
bool IsSampleSlotEmpty(const Song& song, int instrument, int sample);
// What a file brought, at full volume. Over a sample it is played at the pitch at which the song plays the former one.
// A first sample names the instrument, too.
void LoadIntoSlot(Editor& editor, const Place& at, std::unique_ptr<Sample> sample, const std::string& instrumentName);
void CopySample(Editor& editor, const Place& at, int sourceInstrument, int sourceSample);
void ExchangeSamples(Editor& editor, const Place& at, int sourceInstrument, int sourceSample);
void DeleteSample(Editor& editor, const Place& at);

}  // namespace vonta
