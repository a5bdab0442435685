// The Sample Data chunk: a sample's wave in one of four forms.
#pragma once

#include "formats/native/NativeLoad.h"
#include "formats/native/VtiFormat.h"
#include "formats/streams/Chunks.h"
#include "song/Sample.h"

namespace vonta {

// With `compress` the lossy form, else the smallest that holds every value. A sample without a wave writes
// nothing.
void WriteWave(ChunkWriter& chunks, const Sample& sample, bool compress);

// Reads the body of the chunk. The wave is as long as the file says and holds.
void ReadWave(NativeLoad& load, Sample& sample, WaveForm form);

}  // namespace vonta
