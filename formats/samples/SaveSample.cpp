#include <limits>
#include <string>

#include "formats/Loaders.h"
#include "formats/samples/WaveBytes.h"
#include "formats/samples/WavFormat.h"
#include "formats/SaveLosses.h"

namespace vonta {
namespace {

// A sample has no rate of its own, so every file is written with this one.
constexpr std::uint32_t kSavedRate = 44100;
constexpr std::uint16_t kSavedBits = 16;

constexpr FormatLimits kWavLimits = {
    .frames = std::numeric_limits<std::uint32_t>::max(),
    .sixteenBits = true,
    .sampleNameLength = std::string::npos,           // the name of the file serves
    .oddFrames = true,
    .stereo = true,
    .loops = false,
    .fixedRate = kSavedRate,
};

}  // namespace

bool SaveSample(FileStream& stream, const Sample& sample) {
    Writer out(stream);
    const auto channels = static_cast<std::uint16_t>(sample.Channels());
    WriteWavHead(out, MakeWavFormat(channels, kSavedRate, kSavedBits), sample.Count() * 2);
    WriteWaveValues<std::int16_t>(out, {sample.Wave(), sample.Count()});
    return stream.Close();
}

int SaveSample(const std::string& path, const Sample& sample, LoadReport& report) {
    constexpr std::uint32_t most = std::numeric_limits<std::uint32_t>::max() - kWavHeadBytes;
    if (sample.Count() == 0 || sample.Count() > most / 2) {
        report.Fail(sample.Count() == 0 ? "the sample is empty" : "the sample is too long for a WAV file");
        return 1;
    }
    DiskStream stream;
    if (!stream.Open(path, "wb") || !SaveSample(stream, sample)) {
        report.Fail("%s", stream.Error().c_str());
        return 1;
    }
    ReportLosses(sample, kWavLimits, report);
    return 0;
}

}  // namespace vonta
