// make_seeds TARGET DIRECTORY: writes small valid inputs of a fuzz target, so that it need not find the formats by
// chance. A target without a row here starts from nothing.
#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "formats/Chunks.h"
#include "tests/support/XmBuilder.h"

namespace vonta {
namespace {

using test::XmBuilder;

using Bytes = std::vector<std::uint8_t>;

std::vector<Bytes> ChunkSeeds() {
    MemoryStream stream;
    ChunkWriter writer(stream);
    writer.Chunk(0x00010001, [&] {
        writer.Chunk(0x00020001, [&] { writer.Out().FixedText("fields and a text", 60); });
        writer.WriteEnd();
    });
    writer.Chunk(0x00010002, [&] {
        writer.SmallChunk(0x0201, [&] { writer.Out().FixedText("fields and a text", 60); });
        writer.WriteSmallEnd();
    });
    writer.WriteEnd();
    return {stream.Bytes()};
}

std::vector<Bytes> ModuleSeeds() {
    XmBuilder bare;
    XmBuilder looped = XmBuilder::Small();
    looped.instruments[1].samples[0].type = 2;
    looped.instruments[1].samples[1].type = 0x12;
    looped.instruments[1].panType = 7;
    looped.patterns[0].cells = {49, 2, 0x60, 4, 0x37, 0x9E, 2, 0x71, 0x0E, 0x93};
    return {bare.Build(), XmBuilder::Small().Build(), looped.Build()};
}

struct SeedRow {
    const char* target;
    std::vector<Bytes> (*make)();
};

constexpr SeedRow kSeeds[] = {
    {"chunk_reader", ChunkSeeds},
    {"load_module", ModuleSeeds},
};

}  // namespace
}  // namespace vonta

int main(int count, char** arguments) {
    if (count != 3) return std::fprintf(stderr, "make_seeds TARGET DIRECTORY\n"), 2;
    int number = 0;
    for (const auto& row : vonta::kSeeds)
        if (std::string(arguments[1]) == row.target)
            for (const auto& bytes : row.make())
                std::ofstream(std::string(arguments[2]) + "/seed-" + std::to_string(number++), std::ios::binary)
                    .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return 0;
}
