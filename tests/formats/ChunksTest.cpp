#include "formats/streams/Chunks.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "formats/streams/Record.h"
#include "tests/support/ByteBuilder.h"
#include "tests/support/LogCapture.h"

namespace vonta {
namespace {

using test::ByteBuilder;

TEST(ChunkWriter, LengthsCountTheBodiesOfEachLevel) {
    MemoryStream stream;
    ChunkWriter writer(stream);
    writer.Chunk(0x00010002, [&] {
        writer.WriteText("ab");
        writer.SmallChunk(0x0301, [&] { writer.Out().U8(9); });
        writer.WriteSmallEnd();
        writer.WriteText({});
    });
    writer.WriteEnd();
    EXPECT_EQ(stream.Bytes(), ByteBuilder()
                                  .U32(0x00010002).U32(3 + 5 + 4 + 1)
                                  .Text("ab").U8(0)
                                  .U16(0x0301).U16(1).U8(9)
                                  .U16(0xFF01).U16(0)
                                  .U8(0)
                                  .U32(0xFFFF0001).U32(0).bytes);
}

TEST(ChunkWriter, ASmallChunkThatHoldsTooMuchIsLogged) {
    const LogCapture log;
    for (const std::size_t size : {65535u, 65536u}) {
        EXPECT_EQ(log.Text(), "");
        MemoryStream stream;
        ChunkWriter writer(stream);
        writer.SmallChunk(0x0101, [&] { writer.Out().FixedText({}, size); });
    }
    EXPECT_EQ(log.Text(), "WARNING: WriteChunkLenghtW > 64k\n");
}

struct Collector {
    ChunkReader chunks;
    std::string seen;
};

constexpr std::array<ChunkRow<Collector>, 2> kRows{{
    {1, 1, 1, [](Collector& c, const ChunkHeader&) { c.seen += c.chunks.In().Text(); }, "one is newer"},
    {2, 1, 3,
     [](Collector& c, const ChunkHeader& chunk) {
         c.seen += static_cast<char>('0' + chunk.version) + c.chunks.In().Text();
     },
     "two is newer"},
}};

void Append(ByteBuilder& out, unsigned id, std::string_view body) {
    out.U32(id).U32(static_cast<unsigned>(body.size())).Text(body);
}

struct ChunkCase {
    const char* what;
    ByteBuilder bytes;
    std::string seen, log;
    bool unknown;
};

std::vector<ChunkCase> ChunkCases() {
    using namespace std::string_view_literals;
    ByteBuilder between, newer, noEnd, lying, cutHeader;
    Append(between, 0x00010001, "a\0"sv);
    Append(between, 0x00070001, "whatever");
    Append(between, 0x00020003, "b\0"sv);
    between.U32(0xFFFF0001).U32(0);
    Append(between, 0x00010001, "not any more\0"sv);
    Append(newer, 0x00020004, "later");
    Append(newer, 0x00010001, "a\0"sv);
    newer.U32(0xFFFF0009).U32(0);
    Append(noEnd, 0x00010001, "a\0"sv);
    lying.U32(0x00090001).U32(0xFFFFFFFF).Text("rest of the file");
    Append(cutHeader, 0x00010001, "a\0"sv);
    cutHeader.U32(0x00010001).U16(5);
    return {
        {"unknown type between known ones", between, "a3b", "unknown", true},
        {"newer version of a known type", newer, "a", "two is newer", true},
        {"no end marker", noEnd, "a", "", false},
        {"length beyond the file", lying, "", "unknown", true},
        {"header cut short", cutHeader, "a", "", false},
    };
}

TEST(ChunkReader, ReadsWhatItKnowsAndPassesOverTheRest) {
    for (const auto& c : ChunkCases()) {
        SCOPED_TRACE(c.what);
        const LogCapture log;
        MemoryStream stream(c.bytes.bytes);
        Collector collector{ChunkReader(stream), {}};
        collector.chunks.ReadList<Collector>(collector, kRows, "unknown");
        EXPECT_EQ(collector.seen, c.seen);
        EXPECT_EQ(log.Text(), c.log);
        EXPECT_EQ(collector.chunks.HasUnknownChunks(), c.unknown);
    }
}

struct Fields {
    std::uint8_t on = 0, output = 0;
    std::int32_t target = -1;
    float gain = 1.0f;
    std::string name = "default";
    std::uint8_t kind = 3;
    bool operator==(const Fields&) const = default;
};

template <class Io, class F>
void FieldsRecord(Io& io, F& fields) {
    io.Bits(fields.on, fields.output);
    io.I16(fields.target);
    io.ConstU32(7);
    io.F32(fields.gain);
    io.Text(fields.name);
    io.U8(fields.kind);
}

std::vector<std::uint8_t> Written(const Fields& fields) {
    MemoryStream stream;
    Writer out(stream);
    RecordWriter io(out);
    FieldsRecord(io, fields);
    return stream.Bytes();
}

Fields ReadBack(std::vector<std::uint8_t> bytes) {
    MemoryStream stream(std::move(bytes));
    Reader in(stream);
    RecordReader io(in);
    Fields fields;
    FieldsRecord(io, fields);
    return fields;
}

TEST(Record, FieldsThatTheFileLacksOrSpoilsKeepTheirDefaults) {
    const Fields fields{1, 93, -300, -2.5f, "a name", 9};
    auto bytes = Written(fields);
    EXPECT_EQ(ReadBack(bytes), fields);
    bytes.resize(9);                                 // inside the gain
    EXPECT_EQ(ReadBack(bytes), (Fields{1, 93, -300, 1.0f, "default", 3}));
    for (const float bad : {std::nanf(""), std::numeric_limits<float>::infinity()})
        EXPECT_EQ(ReadBack(Written({1, 0, 5, bad, "x", 1})), (Fields{1, 0, 5, 1.0f, "x", 1}));
}

}  // namespace
}  // namespace vonta
