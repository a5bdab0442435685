// What the readers of one native file share while it loads, song or instrument.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "formats/Loaders.h"
#include "formats/PluginLoader.h"
#include "formats/streams/Chunks.h"
#include "formats/streams/Record.h"

namespace vonta {

// Bytes of memory that the packed waves of one file take together: a save packs no more, a load unpacks no more.
constexpr std::int64_t kMaxUnpackedBytes = std::int64_t{1} << 30;

struct NativeLoad {
    NativeLoad(FileStream& stream, LoadReport& to) : chunks(stream), report(to) {}

    ChunkReader chunks;
    LoadReport& report;
    std::int64_t unpackAllowance = kMaxUnpackedBytes;   // what packed waves may still take
    int missingPlugins = 0;

    RecordReader Fields() { return RecordReader(chunks.In()); }

    // The first of the paths that is a plug-in; null, counted and reported (by its file name) if none is.
    std::unique_ptr<EffectSlot> LoadEffect(const std::vector<std::string>& paths);
    std::unique_ptr<SynthPlugin> LoadSynth(const std::vector<std::string>& paths);
    // What the user has to know at the end: a file cut short, what became of the settings of missing plug-ins.
    void ReportLosses();
};

// The part of a path after its last separator, of this system or of the one where most songs were made.
std::string FileNameOf(const std::string& path);

// The last of what a number of the file may index in the player.
constexpr int kLastOutputPair = 15;
constexpr int kLastFilterType = 8;

// A number that would point outside its table gives way to the default.
template <class Number>
void KeepInside(Number& number, int last, Number standard) {
    if (std::cmp_less(number, 0) || std::cmp_greater(number, last)) number = standard;
}

void KeepSendsInside(Sends& sends);

// What a record takes in the file, to be written again as it is.
template <class Record>
std::vector<std::uint8_t> BytesOf(Record&& write) {
    MemoryStream stream;
    Writer out(stream);
    RecordWriter io(out);
    write(io);
    return stream.Bytes();
}

// Hands the values to a plug-in that has so many parameters; those that are no number are left out.
template <class Plugin>
void SetParameters(Plugin& plugin, const std::vector<float>& values) {
    const int count = std::min(plugin.GetNumParameters(), static_cast<int>(values.size()));
    for (int i = 0; i < count; ++i)
        if (const float value = values[static_cast<std::size_t>(i)]; std::isfinite(value))
            plugin.SetParameter(i, value);
}

template <class Plugin>
std::vector<float> GetParameters(const Plugin& plugin) {
    std::vector<float> values;
    for (int i = 0; i < plugin.GetNumParameters(); ++i) values.push_back(plugin.GetParameter(i));
    return values;
}

}  // namespace vonta
