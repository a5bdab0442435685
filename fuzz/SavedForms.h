// What loaded must also save in its native form, load again, and save to the same bytes.
#pragma once

#include <cstdint>
#include <vector>

#include "formats/ForeignSavers.h"
#include "formats/native/LoaderVTI.h"
#include "formats/native/LoaderVTM.h"
#include "formats/native/SaverVTI.h"
#include "formats/native/SaverVTM.h"
#include "formats/samples/SampleSetup.h"
#include "fuzz/PlayMoment.h"

namespace vonta {

using Bytes = std::vector<std::uint8_t>;

// Null if the loader refuses them. What it takes is validated, as it is in the program.
template <class Loader>
std::unique_ptr<Song> LoadSong(Bytes bytes) {
    MemoryStream stream(std::move(bytes));
    Loader loader;
    const bool known = loader.Check(stream);
    stream.Seek(0, kFromStart);
    LoadReport report;
    if (!known) return nullptr;
    auto song = loader.Load(stream, report);
    Require(song || !report.error.empty());
    if (song) song->Validate();
    return song;
}

template <int (*save)(FileStream&, const Song&, LoadReport*)>
Bytes SavedAsForeign(const Song& song) {
    MemoryStream stream;
    LoadReport report;
    save(stream, song, &report);
    return stream.Bytes();
}

// Other formats may hold loops beyond their waves; a native reader cuts them.
inline void KeepLoopsInside(Instrument& instrument) {
    for (const auto& sample : instrument.samples)
        if (sample && sample->data->block) SetLoopPoints(*sample, sample->data->loopStart, sample->data->loopEnd);
}

inline Bytes SavedAsModule(Song& song) {
    MemoryStream stream;
    Require(SaveModule(stream, song, {}) == 0);
    return stream.Bytes();
}

// The native form has no place for a length of 256, and a song in it is never without its first pattern.
inline void RequireSongSurvives(Song& song) {
    song.length = std::min(song.length, 255u);
    song.restartPos = std::min(song.restartPos, song.length - 1);
    if (!song.GetPattern(0)) song.SetPattern(0, std::make_unique<Pattern>());
    for (const auto& instrument : song.instruments)
        if (instrument) KeepLoopsInside(*instrument);
    const Bytes saved = SavedAsModule(song);
    const auto again = LoadSong<LoaderNative>(saved);
    Require(again && SavedAsModule(*again) == saved);
}

inline Bytes SavedAsInstrument(const Instrument& instrument) {
    MemoryStream stream;
    Require(SaveInstrument(stream, instrument) == 0);
    return stream.Bytes();
}

inline void RequireInstrumentSurvives(Instrument& instrument) {
    KeepLoopsInside(instrument);
    const Bytes saved = SavedAsInstrument(instrument);
    MemoryStream stream(saved);
    LoadReport report;
    const auto again = LoadInstrumentNative(stream, report);
    Require(again != nullptr);
    again->Validate();
    Require(SavedAsInstrument(*again) == saved);
}

// Any bytes as an instrument: refused with a reason; or loaded, saved and played.
template <class Loader>
int LoadAnyInstrument(Bytes bytes, const std::string& path = {}) {
    MemoryStream stream(std::move(bytes), path);
    LoadReport report;
    auto instrument = Loader().Load(stream, report);
    Require((instrument == nullptr) != report.error.empty());
    if (!instrument) return 0;
    instrument->Validate();
    RequireInstrumentSurvives(*instrument);
    PlayInstrument(std::move(instrument));
    return 0;
}

}  // namespace vonta
