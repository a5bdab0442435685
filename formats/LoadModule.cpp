#include "formats/LoaderMOD.h"
#include "formats/LoaderXM.h"
#include "formats/Loaders.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

using ModuleLoaderFactory = std::unique_ptr<ModuleLoader> (*)();

template <class Loader>
std::unique_ptr<ModuleLoader> Make() {
    return std::make_unique<Loader>();
}

// In the order in which they are asked.
constexpr ModuleLoaderFactory kModuleLoaders[] = {
    Make<LoaderXM>,
    Make<LoaderMOD>,
};

std::unique_ptr<ModuleLoader> FindLoader(FileStream& stream) {
    for (const auto make : kModuleLoaders) {
        auto loader = make();
        const bool known = loader->Check(stream);
        stream.Seek(0, kFromStart);
        if (known) return loader;
    }
    return nullptr;
}

}  // namespace

std::unique_ptr<Song> LoadModule(FileStream& stream, bool& outUnknown, LoadReport& report) {
    outUnknown = false;
    const auto loader = FindLoader(stream);
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
    song->Validate();
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
