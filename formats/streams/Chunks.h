// The tree of length-prefixed chunks of which the native formats are made.
//
// A chunk is u32 id, u32 length, body; the id holds the type in its high and the version of the body in its low half.
// Inside a pattern a small chunk is used: u16 id, u16 length, body. The length counts the body only. A list of chunks
// ends with a chunk of type 0xFFFF (0xFF if small), or with the file.
//
// Types are numbered per level, so each level has its own table. A reader walks the fields of a body as its version
// says and uses the length only to skip what it does not know.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "formats/streams/FileStream.h"
#include "platform/Debug.h"

namespace vonta {

struct ChunkHeader {
    std::uint16_t type = 0;
    std::uint16_t version = 0;
    std::uint32_t length = 0;                        // bytes of the body; untrusted
};

// One row of a level's table: who reads the body of a type, in which versions.
template <class Loader>
struct ChunkRow {
    std::uint16_t type;
    std::uint16_t firstVersion, lastVersion;
    void (*read)(Loader& loader, const ChunkHeader& chunk);
    const char* versionWarning;                      // logged for any other version
};

class ChunkReader {
public:
    explicit ChunkReader(FileStream& stream) : in_(stream) {}

    Reader& In() { return in_; }
    bool HasUnknownChunks() const { return unknown_; }

    // The next header; false at the end marker or when the file ends first.
    bool Next(ChunkHeader& chunk);
    bool NextSmall(ChunkHeader& chunk);
    // Passes over the body of a chunk that the reader doesn't know, and remembers it.
    void SkipUnknown(const ChunkHeader& chunk);

    // Reads chunks to the end of their list. The body of each is read by its row; one without a row is logged
    // (unknownLine) and passed over.
    template <class Loader>
    void ReadList(Loader& loader, std::span<const ChunkRow<Loader>> rows, const char* unknownLine) {
        for (ChunkHeader chunk; Next(chunk);) Dispatch(loader, rows, unknownLine, chunk);
    }
    template <class Loader>
    void ReadSmallList(Loader& loader, std::span<const ChunkRow<Loader>> rows, const char* unknownLine) {
        for (ChunkHeader chunk; NextSmall(chunk);) Dispatch(loader, rows, unknownLine, chunk);
    }

private:
    template <class Loader>
    void Dispatch(Loader& loader, std::span<const ChunkRow<Loader>> rows, const char* unknownLine,
                  const ChunkHeader& chunk) {
        const char* line = unknownLine;
        for (const auto& row : rows) {
            if (row.type != chunk.type) continue;
            if (chunk.version >= row.firstVersion && chunk.version <= row.lastVersion) return row.read(loader, chunk);
            line = row.versionWarning;
        }
        DebugOutput("%s", line);
        SkipUnknown(chunk);
    }

    Reader in_;
    bool unknown_ = false;
};

// Sizes are patched when a body is complete, so the stream must be seekable.
class ChunkWriter {
public:
    explicit ChunkWriter(FileStream& stream) : out_(stream) {}

    Writer& Out() { return out_; }

    std::int64_t BeginChunk(std::uint32_t id);       // the position of the length, for EndChunk
    void EndChunk(std::int64_t position);
    std::int64_t BeginSmallChunk(std::uint16_t id);
    void EndSmallChunk(std::int64_t position);
    std::size_t WriteText(std::string_view text) { return out_.Text(text); }
    void WriteEnd();
    void WriteSmallEnd();

    // The same as a block, so that no path can forget the end: writer.Chunk(kInfoId, [&] { ... });
    template <class Body>
    void Chunk(std::uint32_t id, Body&& body) {
        const std::int64_t position = BeginChunk(id);
        body();
        EndChunk(position);
    }
    template <class Body>
    void SmallChunk(std::uint16_t id, Body&& body) {
        const std::int64_t position = BeginSmallChunk(id);
        body();
        EndSmallChunk(position);
    }

private:
    Writer out_;
};

}  // namespace vonta
