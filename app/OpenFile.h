// A file on its way into a sub-command: a song, an instrument or a sample, whatever it turns out to be.
#pragma once

#include <memory>
#include <string>

#include "formats/Loaders.h"
#include "song/Song.h"

namespace vonta {

// One of the three, or none.
struct FileContent {
    std::unique_ptr<Song> song;
    std::unique_ptr<Instrument> instrument;
    std::unique_ptr<Sample> sample;                  // tuned to the file's rate, of full volume, named as the file
    bool hasUnknownChunks = false;                   // parts of a newer format, which are left out

    explicit operator bool() const { return song || instrument || sample; }
};

std::string ExtensionOf(const std::string& path);    // with its point, in small letters

// Any bytes can be a raw sample, so only a name says so: .raw, .smp, .sam, .snd or .iff. report.error says why there
// is nothing.
FileContent LoadFile(const std::string& path, LoadReport& report);

// These two tell the user what was dropped or repaired, or why it failed.
FileContent OpenFile(const std::string& path, LoadReport& report);
std::unique_ptr<Song> OpenSong(const std::string& path, LoadReport& report);

extern const char* const kNewerPartsText;            // what is told of hasUnknownChunks

}  // namespace vonta
