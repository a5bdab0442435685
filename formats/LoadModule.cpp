#include "formats/Loaders.h"
#include "formats/mod/LoaderMOD.h"
#include "formats/NameAfter.h"
#include "formats/native/LoaderVTM.h"
#include "formats/Repair.h"
#include "formats/xm/LoaderXM.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

template <class Loader>
std::unique_ptr<ModuleLoader> Make() {
    return std::make_unique<Loader>();
}

struct LoaderRow {
    const char* format;                              // as the user reads it
    std::unique_ptr<ModuleLoader> (*make)();
};

// In the order in which they are asked.
constexpr LoaderRow kModuleLoaders[] = {
    {"VTM", Make<LoaderNative>},
    {"XM", Make<LoaderXM>},
    {"MOD", Make<LoaderMOD>},
};

std::unique_ptr<ModuleLoader> FindLoader(FileStream& stream, LoadReport& report) {
    for (const LoaderRow& row : kModuleLoaders) {
        auto loader = row.make();
        const bool known = loader->Check(stream);
        stream.Seek(0, kFromStart);
        if (!known) continue;
        report.formatName = row.format;
        return loader;
    }
    return nullptr;
}

}  // namespace

std::unique_ptr<Song> LoadModule(FileStream& stream, bool& outUnknown, LoadReport& report) {
    outUnknown = false;
    const auto loader = FindLoader(stream, report);
    if (!loader) {
        DebugOutput("\t- Song format not supported\n");
        report.Fail(stream.Size() == 0 ? "the file is empty" : "not a song this program knows");
        return nullptr;
    }
    auto song = loader->Load(stream, report);
    if (!song) {
        report.Fail("the song is damaged");          // unless the loader knew better
        return nullptr;
    }
    outUnknown = loader->HasUnknownChunks();
    NameAfter(stream, *song);
    Repair(*song, report);
    return song;
}

std::unique_ptr<Song> LoadModule(const std::string& path, bool& outUnknown, LoadReport& report) {
    outUnknown = false;
    DiskStream stream;
    if (stream.Open(path, "rb")) return LoadModule(stream, outUnknown, report);
    report.Fail("%s", stream.Error().c_str());
    return nullptr;
}

}  // namespace vonta
