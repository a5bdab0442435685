// The song that the benches of files save and load, in memory.
#pragma once

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

#include "formats/Loaders.h"

namespace vonta {

// 16 channels; 64 patterns with a note in every second cell; each instrument has the sample that is made for it.
template <class MakeSample>
std::unique_ptr<Song> MakeSong(int instruments, MakeSample makeSample) {
    std::mt19937 random;
    auto song = std::make_unique<Song>();
    song->SetNumChannels(16);
    song->SetPatternPosLenght(64);
    for (int i = 0; i < 64; ++i) {
        song->SetPatternPosIndex(i, i);
        auto pattern = std::make_unique<Pattern>();
        for (int row = 0; row < 64; ++row)
            for (int channel = row % 2; channel < 16; channel += 2)
                pattern->Write(row, channel, {static_cast<std::uint8_t>(random() % 96), 1, 64, 4, 0x37});
        song->AddPattern(std::move(pattern));
    }
    for (int i = 0; i < instruments; ++i) {
        auto instrument = std::make_unique<Instrument>();
        instrument->AddSample(makeSample(random));
        instrument->MapAllKeys();
        song->AddInstrument(std::move(instrument));
    }
    return song;
}

inline std::vector<std::uint8_t> SaveBytes(Song& song, SaveMode mode, bool compress = false) {
    MemoryStream stream;
    LoadReport report;
    SaveOptions options;
    options.compress = compress;
    options.report = &report;
    SaveFile(&stream, mode, song, options);
    return stream.Bytes();
}

inline void LoadAndDrop(const std::vector<std::uint8_t>& bytes) {
    MemoryStream stream(bytes);
    LoadReport report;
    bool unknown = false;
    benchmark::DoNotOptimize(LoadModule(stream, unknown, report));
}

inline void CountBytes(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}

}  // namespace vonta
