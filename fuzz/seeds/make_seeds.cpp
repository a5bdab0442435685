// make_seeds TARGET DIRECTORY: writes small valid inputs of a fuzz target, so that it need not find the formats by
// chance. A target without a row here starts from nothing.
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "app/config/Config.h"
#include "app/config/ConfigText.h"
#include "app/config/Environment.h"
#include "formats/Loaders.h"
#include "formats/native/SaverVTI.h"
#include "formats/streams/Chunks.h"
#include "tests/support/AkpBuilder.h"
#include "tests/support/FullSong.h"
#include "tests/support/ModBuilder.h"
#include "tests/support/PackBuilder.h"
#include "tests/support/Sf2Builder.h"
#include "tests/support/WavBuilder.h"
#include "tests/support/XiBuilder.h"
#include "tests/support/XmBuilder.h"

namespace vonta {
namespace {

using test::ModBuilder;
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

Bytes SavedSong(Song& song, bool compress) {
    SaveOptions options;
    options.compress = compress;
    MemoryStream stream;
    SaveFile(&stream, SaveMode::Module, song, options);
    return stream.Bytes();
}

std::vector<Bytes> XmSeeds() {
    XmBuilder looped = XmBuilder::Small();
    looped.instruments[1].samples[0].type = 2;
    looped.instruments[1].samples[1].type = 0x12;
    looped.instruments[1].panType = 7;
    looped.patterns[0].cells = {49, 2, 0x60, 4, 0x37, 0x9E, 2, 0x71, 0x0E, 0x93};
    XmBuilder sounding = looped;
    sounding.instruments[1].samples[0].wave.resize(500, 3);
    return {XmBuilder{}.Build(), XmBuilder::Small().Build(), looped.Build(), sounding.Build()};
}

Bytes SavedInstrument(const Instrument& instrument) {
    MemoryStream stream;
    SaveInstrument(stream, instrument);
    return stream.Bytes();
}

// Half of an instrument's bytes are points of envelopes.
void KeepOnePoint(Instrument& instrument) {
    for (int kind = 0; kind < kEnvelopeKinds; ++kind)
        for (Envelope& envelope : instrument.GetEnvelopes(static_cast<EnvelopeKind>(kind))) envelope.numPoints = 1;
}

// The first two fit whole into the usual size of an input: see tools/fuzz.
std::vector<Bytes> NativeSongSeeds() {
    const auto bare = test::SmallSong(), small = test::SmallSong(), full = test::FullSong();
    bare->SetInstrument(0, nullptr);
    KeepOnePoint(*small->GetInstrument(0));
    return {SavedSong(*bare, false), SavedSong(*small, false), SavedSong(*small, true), SavedSong(*full, false),
            SavedSong(*full, true)};
}

std::vector<Bytes> NativeInstrumentSeeds() {
    const auto small = test::SmallSong();
    KeepOnePoint(*small->GetInstrument(0));
    return {SavedInstrument(*small->GetInstrument(0)), SavedInstrument(*test::FullInstrument())};
}

// The first byte tells the fuzz target which of the files follows.
std::vector<Bytes> ConfigSeeds() {
    MemoryStream text, keys, environment;
    Writer(text).U8(0);
    WriteConfigText(text, {});
    Writer(keys).U8(1);
    WriteKeyTable(keys, DefaultKeyTable());
    Writer(environment).U8(2);
    WriteEnvironment(environment, {});
    return {text.Bytes(), keys.Bytes(), environment.Bytes()};
}

std::vector<Bytes> WavSeeds() {
    using test::WavBuilder;
    const auto sampler = WavBuilder::Sampler(60, {{0, 1}});
    return {WavBuilder::EightBit({0, 128, 255}).With(sampler).Build(),
            WavBuilder::SixteenBit({1, 2, 3, 4}, 2).Before({"LIST", {1, 2, 3, 0}, 3}).Before(sampler).Build()};
}

std::vector<Bytes> XiSeeds() {
    Bytes forward(64), pingPong(64);
    forward[0] = 100;
    pingPong[3] = 100;
    test::XmInstrumentRecipe looped;
    looped.samples = {{.wave = forward, .loopLength = 64, .type = 1}, {.wave = pingPong, .loopLength = 32, .type = 0x12}};
    looped.keyMap[48] = 1;
    looped.volumeType = looped.panType = 7;
    return {test::BuildXi(looped), test::BuildXi({})};
}

std::vector<Bytes> Sf2Seeds() {
    test::Sf2Builder two = test::Sf2Builder::Small();
    two.instruments.push_back({{{test::kSf2Keys, test::Sf2Range(0, 127)}, {test::kSf2Velocities, test::Sf2Range(0, 63)},
                                {test::kSf2Attack, -1200}, {test::kSf2Scale, 0}, {test::kSf2Sample, 1}}});
    two.presetZones = {{{test::kSf2Keys, test::Sf2Range(0, 96)}, {test::kSf2Instrument, 0}}};
    return {test::Sf2Builder::Small().Build(), two.Build()};
}

std::vector<Bytes> AkpSeeds() {
    test::AkpKeygroupRecipe layered;
    layered.attack = 30;
    layered.release = 60;
    layered.zones = {{.highVelocity = 63, .playback = 2}, {.lowVelocity = 64, .pan = -50, .keyTracking = 0}};
    return {test::AkpBuilder().Build(), test::AkpBuilder{{layered, {}}}.Build()};
}

std::vector<Bytes> PackSeeds() {
    const Bytes pictures[] = {test::Tga(3, 2, 24, {1, 2, 3, 4, 5, 6}), test::Tga(2, 2, 32, {0, 0xFF000000, 0x80123456, 7})};
    test::ByteBuilder pack;
    unsigned offset = 4 + 38 * 2;
    pack.U32(2);
    for (const Bytes& picture : pictures) {
        pack.FixedText(&picture == pictures ? "skin\\Misc\\cursor.tga" : "data\\loading.tga", 30).U32(offset).U32(static_cast<unsigned>(picture.size()));
        offset += static_cast<unsigned>(picture.size());
    }
    return {pack.Bytes(pictures[0]).Bytes(pictures[1]).bytes};
}

struct SeedRow {
    const char* target;
    std::vector<Bytes> (*make)();
};

constexpr SeedRow kSeeds[] = {
    {"chunk_reader", ChunkSeeds},
    {"load_mod", [] { return std::vector<Bytes>{ModBuilder{}.Build(), ModBuilder::Small().Build()}; }},
    {"load_config", ConfigSeeds},
    {"load_xm", XmSeeds},
    {"load_vtm", NativeSongSeeds},
    {"load_vti", NativeInstrumentSeeds},
    {"load_wav", WavSeeds},
    {"load_xi", XiSeeds},
    {"load_sf2", Sf2Seeds},
    {"load_akp", AkpSeeds},
    {"load_pack", PackSeeds},
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
