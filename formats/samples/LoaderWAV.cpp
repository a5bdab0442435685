#include "formats/samples/LoaderWAV.h"

#include <algorithm>
#include <cstdint>

#include "formats/OpenToLoad.h"
#include "formats/samples/WaveBytes.h"
#include "formats/streams/Record.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

// The body of a "smpl" chunk: nine fields, then its loops.
constexpr std::int64_t kSamplerBytes = 36, kSamplerLoopBytes = 24;
constexpr std::int64_t kBaseNoteAt = 12, kLoopCountAt = 28, kLoopPointsAt = kSamplerBytes + 8;
constexpr std::uint32_t kHighestNote = 127;

bool Refuse(LoadReport& report, const char* line, const char* reason) {
    DebugOutput("%s", line);
    report.Fail("%s", reason);
    return false;
}

bool ReadHead(Reader& in, WavFormat& format, LoadReport& report) {
    const RiffHead head = ReadRiffHead(in);
    if (head.tag != kRiffTag) return Refuse(report, "\t- ERROR: not a WAV file\n", "not a WAV file");
    if (head.form != kWaveTag) return Refuse(report, "\t- ERROR: not WAVE format\n", "a RIFF file, but no WAV file");
    RiffChunk chunk;
    if (!NextRiffChunk(in, in.Stream().Size(), chunk) || chunk.tag != kFormatTag)
        return Refuse(report, "\t- ERROR: format header not found\n", "the WAV file does not begin with its format");
    RecordReader record(in);
    WavFormatRecord(record, format);
    if (format.tag != kWavPcm)
        return Refuse(report, "\t- ERROR: compresed WAVE data not supported\n",
                      "the WAV file is compressed, or has more than 16 bits or two channels");
    if (chunk.size > kWavFormatBytes) LeaveRiffChunk(in, chunk);
    return true;
}

// How many floats a wave of so many bytes makes: whole frames.
std::int64_t CountValues(const WavFormat& format, std::int64_t bytes) {
    const std::int64_t values = bytes / (format.bits / 8);
    return values - values % format.channels;
}

bool ReadWave(Reader& in, const RiffChunk& chunk, const WavFormat& format, Sample& sample, LoadReport& report) {
    DebugOutput("\t- %s %i Bits \n", format.channels == 1 ? "Mono" : "Stereo", format.bits);
    if (format.channels != 1 && format.channels != 2)
        return Refuse(report, "\t- ERROR: WAVE channels bigger than 2\n", "the WAV file is neither mono nor stereo");
    const int bytes = format.bits / 8;
    if (bytes != 1 && bytes != 2) {
        report.Fail("the WAV file has %i bits: 8 and 16 are known", format.bits);
        return false;
    }
    const std::int64_t count = CountValues(format, chunk.Held());
    if (count > kMaxWaveFloats) {
        report.Fail("the wave is too long");
        return false;
    }
    if (chunk.IsCut()) report.Add("The WAV file ends in its wave: the rest is missing.");
    const auto wave = sample.Allocate(static_cast<std::uint32_t>(count), format.channels);
    if (bytes == 1)
        ReadWaveValues<std::uint8_t>(in, wave);
    else
        ReadWaveValues<std::int16_t>(in, wave);
    return true;
}

}  // namespace

void LoaderWAV::ReadSampler(Reader& in, const RiffChunk& chunk) {
    if (chunk.Held() < kSamplerBytes) return;
    in.Skip(kBaseNoteAt);
    if (const std::uint32_t note = in.U32(); note <= kHighestNote) baseNote_ = static_cast<int>(note);
    in.Skip(kLoopCountAt - kBaseNoteAt - 4);
    const std::uint32_t loops = in.U32();
    if (loops == 0 || chunk.Held() < kSamplerBytes + kSamplerLoopBytes) return;
    in.Skip(kLoopPointsAt - kLoopCountAt - 4);
    loopStart_ = in.U32();
    loopEnd_ = in.U32();
}

bool LoaderWAV::ReadChunks(Reader& in, Sample& sample, LoadReport& report) {
    WavFormat format;
    if (!ReadHead(in, format, report)) return false;
    sampleRate_ = format.sampleRate;
    bool sound = true;
    WalkRiffChunks(in, in.Stream().Size(), [&](const RiffChunk& chunk) {
        if (chunk.tag == kDataTag) sound = ReadWave(in, chunk, format, sample, report);
        if (chunk.tag == kSamplerTag) ReadSampler(in, chunk);
        return sound;
    });
    return sound;
}

std::unique_ptr<Sample> LoaderWAV::Load(const std::string& path, LoadReport& report) {
    DebugOutput("* LOADING WAV file...\n");
    DiskStream stream;
    return OpenToLoad(stream, path, report) ? Load(stream, report) : nullptr;
}

std::unique_ptr<Sample> LoaderWAV::Load(FileStream& stream, LoadReport& report) {
    *this = {};
    DebugOutput("\t- file (%s) opened\n", stream.GetPath().c_str());
    Reader in(stream);
    auto sample = std::make_unique<Sample>();
    if (!ReadChunks(in, *sample, report)) return nullptr;
    DebugOutput("\t- file (%s) closed\n", stream.GetPath().c_str());
    if (sample->Count() == 0) {
        report.Fail("the WAV file holds no wave");
        return nullptr;
    }
    DebugOutput("\t- sample loaded correctly\n");
    return sample;
}

}  // namespace vonta
