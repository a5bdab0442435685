#include "interface/screens/SaveNames.h"

#include "interface/video/Latin1.h"

namespace vonta {
namespace {

constexpr std::size_t kMaxName = 200;            // bytes; file systems take 255, and the suffixes come on top

constexpr const char* kSuffixes[] = {".vtm", ".xm", ".mod", "", ""};

// What lies behind the last separator, of either kind: a name cannot lead elsewhere.
std::string Plain(std::string name, const char* otherwise) {
    const auto separator = name.find_last_of("/\\");
    if (separator != std::string::npos) name.erase(0, separator + 1);
    name = name.substr(0, kMaxName);
    return name.empty() || name == "." || name == ".." ? otherwise : name;
}

std::string WithSuffix(std::string name, const char* suffix) {
    return name.find('.') == std::string::npos ? name + suffix : name;
}

std::string Stem(const std::string& name) { return name.substr(0, name.find('.')); }

}  // namespace

std::string SongFileName(std::string name, SaveFormat format) {
    std::string stem = Stem(Plain(std::move(name), kDefaultSongName));
    if (stem.empty()) stem = Stem(kDefaultSongName);
    return stem + kSuffixes[static_cast<int>(format)];
}

std::string InstrumentFileName(std::string name) { return WithSuffix(Plain(std::move(name), kDefaultInstrumentName), ".vti"); }
std::string SampleFileName(std::string name) { return WithSuffix(Plain(std::move(name), kDefaultSampleName), ".wav"); }

const char* SuffixOf(SaveFormat format) {
    return format == SaveFormat::Wav ? ".wav" : kSuffixes[static_cast<int>(format)];
}

std::string ShortName(const std::string& name, std::size_t most) {
    const int room = static_cast<int>(most) - 3, front = (room + 3) / 2, characters = CountCharacters(name);
    if (characters <= room + 3) return name;
    return name.substr(0, BytesOf(name, front)) + "..." + name.substr(BytesOf(name, characters - (room - front)));
}

}  // namespace vonta
