#include "formats/Loaders.h"
#include "formats/OpenToLoad.h"
#include "formats/samples/LoaderRaw.h"
#include "formats/samples/LoaderWAV.h"
#include "formats/samples/SampleSetup.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

template <class Loader>
std::unique_ptr<SampleLoader> Make() {
    return std::make_unique<Loader>();
}

struct LoaderRow {
    const char* formatName;                          // as the user reads it
    std::unique_ptr<SampleLoader> (*make)();
};

// In the order in which they are asked. The last one takes any file that opens.
constexpr LoaderRow kSampleLoaders[] = {
    {"WAV", Make<LoaderWAV>},
    {"raw", Make<LoaderRaw>},
};

std::unique_ptr<SampleLoader> FindLoader(const std::string& path, LoadReport& report) {
    for (const LoaderRow& row : kSampleLoaders) {
        auto loader = row.make();
        if (!loader->Check(path)) continue;
        report.formatName = row.formatName;
        return loader;
    }
    return nullptr;
}

}  // namespace

std::unique_ptr<Sample> LoadSample(const std::string& path, bool autoTune, LoadReport& report) {
    DebugOutput("* Trying Load Sample (%s)\n", path.c_str());
    const auto loader = FindLoader(path, report);
    if (!loader) {
        DebugOutput("\t- Sample format not supported\n");
        DiskStream closed;
        OpenToLoad(closed, path, report);            // says why
        return nullptr;
    }
    auto sample = loader->Load(path, report);
    if (!sample) return nullptr;
    if (autoTune && loader->GetSampleRate() != 0) TuneSample(*sample, loader->GetSampleRate());
    const auto channels = static_cast<std::uint64_t>(sample->Channels());
    SetLoopPoints(*sample, loader->GetLoopStart() * channels, loader->GetLoopEnd() * channels);
    return sample;
}

}  // namespace vonta
