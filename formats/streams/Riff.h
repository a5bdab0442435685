// RIFF files: a head of "RIFF", u32 size and the form's name, then chunks of a tag, u32 size and a body.
//
// Sizes are untrusted: a chunk never reaches past the list that holds it, nor past the file, so that no walk reads a
// byte twice.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "formats/streams/FileStream.h"

namespace vonta {

constexpr std::string_view kRiffTag = "RIFF", kListTag = "LIST";
constexpr std::size_t kRiffTagBytes = 4;
constexpr std::int64_t kRiffChunkHeadBytes = 8;

struct RiffHead {
    std::string tag, form;
};

struct RiffChunk {
    std::string tag;
    std::uint32_t size = 0;                          // as told
    std::int64_t body = 0, end = 0;                  // positions in the stream; as much as there is

    std::int64_t Held() const { return end - body; }
    bool IsCut() const { return Held() < size; }
};

RiffHead ReadRiffHead(Reader& in);                   // empty where the file ends first
bool IsRiff(FileStream& stream, std::string_view form);
bool IsRiff(const std::string& path, std::string_view form);

// The chunk whose head stands at the position, inside a list that ends at `end`; false if no whole head fits there.
bool NextRiffChunk(Reader& in, std::int64_t end, RiffChunk& chunk);
// Moves behind the chunk. The byte that fills a body of odd size up is there in most files and missing in some.
void LeaveRiffChunk(Reader& in, const RiffChunk& chunk);

// Shows each chunk from the position to `end`. The visitor reads what it likes of it and answers whether to go on.
template <class Visit>
void WalkRiffChunks(Reader& in, std::int64_t end, Visit&& visit) {
    for (RiffChunk chunk; NextRiffChunk(in, end, chunk) && visit(chunk);) LeaveRiffChunk(in, chunk);
}

}  // namespace vonta
