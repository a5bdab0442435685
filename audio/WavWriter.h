// One stereo WAV file in the making: blocks of floats at the 16-bit scale go in, integers of 8, 16 or 32 bits go to disk.
//
// The file is written beside its target and takes its name at Close; until then, and on any failure, nothing
// appears at `path`.
#pragma once

#include <cstdint>
#include <string>

#include "formats/streams/FileStream.h"

namespace vonta {

class WavWriter {
public:
    bool Open(const std::string& path, std::uint32_t sampleRate, std::uint32_t bits);
    // `values` is interleaved stereo. False if the disk refused it.
    bool Write(const float* values, int frames);
    bool HasRoom(int frames) const;                  // within the 32-bit sizes of the format
    bool Close();                                    // false if not everything reached its place
    void Abandon() { stream_.Abandon(); }            // removes what was written

    const std::string& GetPath() const { return stream_.GetPath(); }
    std::string Error() const { return stream_.Error(); }

private:
    DiskStream stream_;
    std::uint32_t bits_ = 16;
    std::uint32_t dataSize_ = 0;                     // bytes
};

}  // namespace vonta
