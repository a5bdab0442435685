#include <vector>

#include "formats/LoaderVTI.h"
#include "formats/Loaders.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

using LoaderFactory = std::unique_ptr<InstrumentLoader> (*)();

// The foreign formats, in the order in which they are asked.
const std::vector<LoaderFactory> kForeignLoaders = {};

std::unique_ptr<Instrument> LoadForeign(const std::string& path, LoadReport& report) {
    for (const auto make : kForeignLoaders)
        if (const auto loader = make(); loader->Check(path)) return loader->Load(path, report);
    DebugOutput("\t- Instrument format not supported\n");
    report.Fail("not an instrument this program knows");
    return nullptr;
}

}  // namespace

std::unique_ptr<Instrument> LoadInstrument(const std::string& path, LoadReport& report) {
    DebugOutput("* Trying Load Instrument (%s)\n", path.c_str());
    auto instrument = LoadInstrumentNative(path, report);
    if (!instrument) instrument = LoadForeign(path, report);
    if (instrument) instrument->Validate();
    return instrument;
}

}  // namespace vonta
