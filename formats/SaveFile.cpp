#include "formats/ForeignSavers.h"
#include "formats/Loaders.h"
#include "formats/NameAfter.h"
#include "formats/native/SaverVTM.h"

namespace vonta {
namespace {

int SaveNothing(FileStream&, Song&, const SaveOptions&) { return 0; }

int SaveMixdown(FileStream& stream, Song& song, const SaveOptions& options) {
    return options.mixdown ? options.mixdown(stream.GetPath(), song) : 1;
}

struct SaverRow {
    SaveMode mode;
    bool writesStream;                               // else the stream only names the place, and is left unwritten
    int (*save)(FileStream& stream, Song& song, const SaveOptions& options);   // 0 on success
};

// The writers of other trackers' files look at nothing but the report.
template <int (*save)(FileStream&, const Song&, LoadReport*)>
int SaveForeign(FileStream& stream, Song& song, const SaveOptions& options) {
    return save(stream, song, options.report);
}

constexpr SaverRow kSavers[] = {
    {SaveMode::Module, true, SaveModule},
    {SaveMode::Xm, true, SaveForeign<SaveXM>},
    {SaveMode::Mod, true, SaveForeign<SaveMOD>},
    {SaveMode::Nothing, false, SaveNothing},
    {SaveMode::Mixdown, false, SaveMixdown},
};

const SaverRow* FindSaver(SaveMode mode) {
    for (const auto& row : kSavers)
        if (row.mode == mode) return &row;
    return nullptr;
}

}  // namespace

int SaveFile(FileStream* stream, SaveMode mode, Song& song, const SaveOptions& options) {
    if (!stream) return 1;
    const SaverRow* saver = FindSaver(mode);
    const bool writes = saver && saver->writesStream;
    if (!writes) stream->Abandon();
    const std::string formerName = song.fileName;
    if (writes) NameAfter(*stream, song);            // a native file holds its own name
    if (saver && saver->save(*stream, song, options) == 0 && (!writes || stream->Close())) return 0;
    song.fileName = formerName;
    stream->Abandon();
    return 1;
}

}  // namespace vonta
