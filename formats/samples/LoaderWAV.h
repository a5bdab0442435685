// RIFF WAV files of 8 or 16 bits, mono or stereo, uncompressed. The first chunk must be the format; those behind it may
// come in any order.
#pragma once

#include "formats/Loaders.h"
#include "formats/samples/SampleSetup.h"
#include "formats/samples/WavFormat.h"
#include "formats/streams/Riff.h"

namespace vonta {

class LoaderWAV final : public SampleLoader {
public:
    std::unique_ptr<Sample> Load(const std::string& path, LoadReport& report) override;
    std::unique_ptr<Sample> Load(FileStream& stream, LoadReport& report);
    bool Check(const std::string& path) override { return IsRiff(path, kWaveTag); }
    std::uint32_t GetSampleRate() const override { return sampleRate_; }
    std::uint32_t GetLoopStart() const override { return loopStart_; }
    std::uint32_t GetLoopEnd() const override { return loopEnd_; }
    int GetBaseNote() const override { return baseNote_; }

private:
    bool ReadChunks(Reader& in, Sample& sample, LoadReport& report);
    void ReadSampler(Reader& in, const RiffChunk& chunk);

    std::uint32_t sampleRate_ = 0;
    std::uint32_t loopStart_ = 0, loopEnd_ = 0;
    int baseNote_ = kDefaultBaseNote;
};

}  // namespace vonta
