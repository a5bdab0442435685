// Damaged native files: whatever is cut or changed, a load ends, says why it refuses, and gives a song that can
// be saved and loaded again.
#include <gtest/gtest.h>

#include "formats/LoaderVTI.h"
#include "formats/SaverVTI.h"
#include "tests/support/FullSong.h"

namespace vonta {
namespace {

using namespace test;
using Bytes = std::vector<std::uint8_t>;

Bytes SaveSong(Song& song, bool compress) {
    SaveOptions options;
    options.compress = compress;
    MemoryStream stream;
    EXPECT_EQ(SaveFile(&stream, SaveMode::Module, song, options), 0);
    return stream.Bytes();
}

void LoadSong(const Bytes& bytes) {
    const FakeLoader plugins;
    LoadReport report;
    report.plugins = plugins.Get();
    MemoryStream stream(bytes);
    bool unknown = false;
    const auto song = LoadModule(stream, unknown, report);
    ASSERT_EQ(song == nullptr, !report.error.empty());
    if (!song) return;
    const auto saved = SaveSong(*song, false);
    MemoryStream second(saved);
    const auto again = LoadModule(second, unknown, report);
    ASSERT_TRUE(again);
    ASSERT_EQ(SaveSong(*again, false), saved);
}

void LoadInstrumentBytes(const Bytes& bytes) {
    const FakeLoader plugins;
    LoadReport report;
    report.plugins = plugins.Get();
    MemoryStream stream(bytes);
    const auto instrument = LoadInstrumentNative(stream, report);
    if (!instrument) return;
    instrument->Validate();
    MemoryStream saved;
    ASSERT_EQ(SaveInstrument(saved, *instrument), 0);
    MemoryStream second(saved.Bytes());
    ASSERT_TRUE(LoadInstrumentNative(second, report));
}

// Runs `load` over prefixes, flipped bytes and fields set to extremes, about `steps` places of each.
template <class LoadFile>
void Damage(const Bytes& good, std::size_t steps, LoadFile load) {
    const std::size_t step = std::max<std::size_t>(1, good.size() / steps);
    for (std::size_t at = 0; at < good.size(); at += step) {
        load(Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(at)));
        for (const std::size_t width : {1u, 2u, 4u})
            for (const std::uint32_t value : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
                Bytes bad = good;
                // An n-byte field of the same form: its top byte carries the sign.
                const std::uint32_t field = value > 1 && width < 4 ? value >> (32 - 8 * width) : value;
                for (std::size_t i = 0; i < width && at + i < bad.size(); ++i)
                    bad[at + i] = static_cast<std::uint8_t>(field >> 8 * i);
                load(bad);
            }
        Bytes flipped = good;
        flipped[at] ^= 0xFF;
        load(flipped);
        if (testing::Test::HasFatalFailure()) FAIL() << "at byte " << at;
    }
}

TEST(NativeDamage, SongsLoadWhatIsSoundOrRefuse) { Damage(SaveSong(*SmallSong(), false), 80, LoadSong); }

TEST(NativeDamage, PackedSongsLoadWhatIsSoundOrRefuse) { Damage(SaveSong(*SmallSong(), true), 40, LoadSong); }

TEST(NativeDamage, InstrumentsLoadWhatIsSoundOrRefuse) {
    MemoryStream stream;
    ASSERT_EQ(SaveInstrument(stream, *SmallSong()->GetInstrument(0)), 0);
    Damage(stream.Bytes(), 80, LoadInstrumentBytes);
}

}  // namespace
}  // namespace vonta
