// Damaged native files: whatever is cut or changed, a load ends, says why it refuses, and gives a song that can
// be saved and loaded again.
#include <gtest/gtest.h>

#include "formats/native/LoaderVTI.h"
#include "formats/native/SaverVTI.h"
#include "tests/support/Damage.h"
#include "tests/support/FullSong.h"

namespace vonta {
namespace {

using namespace test;
using Bytes = FileBytes;

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

// About so many places of the file are damaged.
template <class LoadFile>
void Damage(const Bytes& good, std::size_t places, LoadFile load) {
    const std::size_t step = std::max<std::size_t>(1, good.size() / places);
    TryPrefixes(good, load, step);
    TryFields(good, load, step);
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
