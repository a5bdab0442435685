// What a recovery directory says of itself: from which file the song came, and which of its parts have changed since.
//
//   Recovery/<instance>/lock            held by the instance as long as it lives
//                       manifest.json   this
//                       base            the song's file as it was loaded or saved: a hard link, or a copy
//                       <part>.vtm      modules of one part each, by names that no other state of the part has
//
// The manifest is replaced in one go, after all the files that it names are on the disk. It comes from a disk that may
// have failed: whatever it says is checked.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vonta {

struct BaseFile {
    std::string path;                            // as the user knows it; empty: the song came from no file
    std::string kept;                            // name in the directory; empty while there is none
    std::uint64_t size = 0;                      // bytes
    std::int64_t modified = 0;                   // nanoseconds of the file's clock
};

struct Manifest {
    static constexpr const char* kFileName = "manifest.json";
    static constexpr const char* kBaseName = "base";

    // Loop points of a sample: a part without its wave could not hold them.
    struct Loop {
        int sample = 0;
        std::uint32_t start = 0, end = 0;        // floats
        int type = 0;
    };
    // An empty file says that the song has no such object.
    struct InstrumentPart {
        std::string file;
        std::vector<Loop> loops;
    };

    std::string song;                            // its title
    std::int64_t time = 0;                       // seconds since 1970, when it was written
    std::uint64_t edits = 0;                     // steps since the song was saved
    BaseFile base;
    std::uint32_t length = 0, tempo = 0;         // which a module cannot hold at their ends
    std::string numbers;                         // file; empty: those of the base
    std::map<int, std::string> patterns;         // file by number
    std::map<int, InstrumentPart> instruments;
    std::map<int, std::string> waves;            // by instrument * 256 + sample

    std::vector<std::string> Files() const;      // all that it names
    std::string Text() const;
    // None if the text is no manifest. Numbers outside and names that are paths are left out.
    static std::optional<Manifest> Parse(const std::string& text);
};

}  // namespace vonta
