// Any bytes walked as a tree of chunks: lists in lists, small lists, texts and records, to the end of the input.
#include <array>
#include <cstdint>

#include "formats/streams/Chunks.h"
#include "formats/streams/Record.h"

namespace vonta {
namespace {

constexpr int kMaxDepth = 40;                        // the formats have levels of their own; here a list holds itself

struct Walker {
    ChunkReader chunks;
    int depth = 0;
    float sum = 0;
};

void ReadLists(Walker& walker, const ChunkHeader& chunk);

void ReadFields(Walker& walker, const ChunkHeader&) {
    RecordReader io(walker.chunks.In());
    std::array<std::uint8_t, 16> bytes{};
    std::string text;
    std::uint8_t low = 0, high = 0;
    float value = 0;
    io.Bits(low, high);
    io.F32(value);
    io.Text(text);
    io.FixedText(text, 22);
    io.Bytes(bytes);
    walker.sum += value + static_cast<float>(text.size());
}

constexpr std::array<ChunkRow<Walker>, 2> kRows{{
    {1, 1, 2, ReadLists, "newer list\n"},
    {2, 0, 9, ReadFields, "newer fields\n"},
}};

void ReadLists(Walker& walker, const ChunkHeader& chunk) {
    if (walker.depth >= kMaxDepth) return walker.chunks.SkipUnknown(chunk);
    ++walker.depth;
    if (chunk.version == 1)
        walker.chunks.ReadList<Walker>(walker, kRows, "unknown\n");
    else
        walker.chunks.ReadSmallList<Walker>(walker, kRows, "unknown\n");
    --walker.depth;
}

}  // namespace
}  // namespace vonta

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vonta::MemoryStream stream({data, data + size});
    vonta::Walker walker{vonta::ChunkReader(stream)};
    walker.chunks.ReadList<vonta::Walker>(walker, vonta::kRows, "unknown\n");
    return 0;
}
