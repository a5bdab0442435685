// The Sample Data chunk: a sample's wave in one of four forms.
#pragma once

#include "formats/native/NativeLoad.h"
#include "formats/native/VtiFormat.h"
#include "formats/streams/Chunks.h"
#include "song/Sample.h"

namespace vonta {

// Whether the waves of a file are to go out in the lossy form, and how far that may go.
struct WavePacking {
    bool wanted = false;
    bool leftOut = false;                            // no wave is written at all
    LoadReport* report = nullptr;                    // names the waves that stay plain; may be null
    std::int64_t allowance = kMaxUnpackedBytes;      // what a load will still unpack
};

// In the smallest form that holds every value, or packed: then what was packed is unpacked again and measured before
// it is believed, and a wave that would not come back whole stays plain. A sample without a wave writes nothing.
void WriteWave(ChunkWriter& chunks, const Sample& sample, WavePacking& packing);

// Reads the body of the chunk. The wave is as long as the file says, and holds.
void ReadWave(NativeLoad& load, Sample& sample, WaveForm form);

}  // namespace vonta
