#include "formats/native/VorbisSetup.h"

#include <bit>
#include <cstdint>

namespace vonta {
namespace {

// The encoder's books have at most 6561 entries, and those of a stream hold some sixty thousand values
// together.
constexpr std::int64_t kMaxEntries = 8192;
constexpr std::int64_t kMaxValues = std::int64_t{1} << 20;

constexpr int kNameBytes = 7;                        // packet type and "vorbis"
constexpr std::int64_t kBookSync = 0x564342;

int BitWidth(std::int64_t value) { return static_cast<int>(std::bit_width(static_cast<std::uint64_t>(value))); }

// Fields of a packet, at most 24 bits wide; behind its end they read as -1, which no field can be.
class BitReader {
public:
    explicit BitReader(const ogg_packet& packet) {
        oggpack_readinit(&bits_, packet.packet, static_cast<int>(packet.bytes));
    }
    std::int64_t Read(int width) { return oggpack_read(&bits_, width); }
    // False if the packet ends before.
    bool Skip(std::int64_t count, int width) {
        while (count > 0 && Read(width) >= 0) --count;
        return count <= 0;
    }

private:
    oggpack_buffer bits_{};
};

// How many values each dimension of a lattice book takes: the largest number whose power is within the entries.
std::int64_t LatticeSide(std::int64_t entries, std::int64_t dimensions) {
    const auto fits = [&](std::int64_t side) {
        std::int64_t power = 1;
        for (std::int64_t i = 0; i < dimensions && power <= entries; ++i) power *= side;
        return power <= entries;
    };
    std::int64_t side = 1;
    while (fits(side + 1)) ++side;
    return side;
}

bool SkipOrderedLengths(BitReader& in, std::int64_t entries) {
    if (!in.Skip(1, 5)) return false;
    for (std::int64_t done = 0; done < entries;) {
        const std::int64_t run = in.Read(BitWidth(entries - done));
        if (run < 0) return false;
        done += run;
    }
    return true;
}

bool SkipLengths(BitReader& in, std::int64_t entries) {
    const bool sparse = in.Read(1) != 0;
    for (; entries > 0; --entries)
        if ((!sparse || in.Read(1) != 0) && in.Read(5) < 0) return false;
    return true;
}

bool SkipLookup(BitReader& in, std::int64_t entries, std::int64_t dimensions) {
    const std::int64_t kind = in.Read(4);
    if (kind == 0) return true;
    if (kind != 1 && kind != 2) return false;
    if (!in.Skip(4, 16)) return false;               // lowest value and step, two floats
    const std::int64_t width = in.Read(4) + 1;
    if (width < 1 || in.Read(1) < 0) return false;
    return in.Skip(kind == 1 ? LatticeSide(entries, dimensions) : entries * dimensions,
                   static_cast<int>(width));
}

// The number of values that the decoder makes of the next book, or -1 if it is not to get it.
std::int64_t BookValues(BitReader& in) {
    if (in.Read(24) != kBookSync) return -1;
    const std::int64_t dimensions = in.Read(16), entries = in.Read(24);
    if (dimensions < 1 || entries < 1 || entries > kMaxEntries || dimensions * entries > kMaxValues) return -1;
    const bool whole = in.Read(1) != 0 ? SkipOrderedLengths(in, entries) : SkipLengths(in, entries);
    return whole && SkipLookup(in, entries, dimensions) ? dimensions * entries : -1;
}

}  // namespace

bool HasModestCodebooks(const ogg_packet& setup) {
    BitReader in(setup);
    if (!in.Skip(kNameBytes, 8)) return false;
    std::int64_t values = 0;
    for (std::int64_t books = in.Read(8) + 1; books > 0; --books) {
        const std::int64_t added = BookValues(in);
        values += added;
        if (added < 0 || values > kMaxValues) return false;
    }
    return true;
}

}  // namespace vonta
