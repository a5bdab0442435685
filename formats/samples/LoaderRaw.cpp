#include "formats/samples/LoaderRaw.h"

#include "formats/OpenToLoad.h"
#include "formats/samples/WaveBytes.h"
#include "platform/Debug.h"

namespace vonta {

bool LoaderRaw::Check(const std::string& path) { return DiskStream().Open(path, "rb"); }

std::unique_ptr<Sample> LoaderRaw::Load(const std::string& path, LoadReport& report) {
    DebugOutput("* LOADING SMP file...\n");
    DiskStream stream;
    return OpenToLoad(stream, path, report) ? Load(stream, report) : nullptr;
}

std::unique_ptr<Sample> LoaderRaw::Load(FileStream& stream, LoadReport& report) {
    DebugOutput("\t- file (%s) opened\n", stream.GetPath().c_str());
    const std::int64_t count = stream.Size();
    if (count == 0 || count > kMaxWaveFloats) {
        report.Fail(count == 0 ? "the file is empty" : "the wave is too long");
        return nullptr;
    }
    Reader in(stream);
    auto sample = std::make_unique<Sample>();
    ReadWaveValues<std::int8_t>(in, sample->Allocate(static_cast<std::uint32_t>(count), 1));
    DebugOutput("\t- file (%s) closed\n", stream.GetPath().c_str());
    DebugOutput("\t- sample loaded correctly\n");
    return sample;
}

}  // namespace vonta
