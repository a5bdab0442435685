#include "formats/instruments/LoaderAKP.h"
#include "formats/instruments/LoaderSF2.h"
#include "formats/instruments/LoaderXI.h"
#include "formats/Loaders.h"
#include "formats/native/LoaderVTI.h"
#include "formats/Repair.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

template <class Loader>
std::unique_ptr<InstrumentLoader> Make() {
    return std::make_unique<Loader>();
}

struct LoaderRow {
    const char* formatName;                          // as the user reads it
    std::unique_ptr<InstrumentLoader> (*make)();
};

// The foreign formats, in the order in which they are asked.
constexpr LoaderRow kForeignLoaders[] = {
    {"XI", Make<LoaderXI>},
    {"SF2", Make<LoaderSF2>},
    {"AKP", Make<LoaderAKP>},
};

std::unique_ptr<Instrument> LoadForeign(const std::string& path, LoadReport& report) {
    for (const LoaderRow& row : kForeignLoaders) {
        const auto loader = row.make();
        if (!loader->Check(path)) continue;
        report.formatName = row.formatName;
        return loader->Load(path, report);
    }
    DebugOutput("\t- Instrument format not supported\n");
    report.Fail("not an instrument this program knows");
    return nullptr;
}

}  // namespace

std::unique_ptr<Instrument> LoadInstrument(const std::string& path, LoadReport& report) {
    DebugOutput("* Trying Load Instrument (%s)\n", path.c_str());
    auto instrument = LoadInstrumentNative(path, report);
    if (!instrument) instrument = LoadForeign(path, report);
    if (instrument) Repair(*instrument, report);
    return instrument;
}

}  // namespace vonta
