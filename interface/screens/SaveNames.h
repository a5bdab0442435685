// The names that files are saved under.
#pragma once

#include <string>

namespace vonta {

enum class SaveFormat : int { Native = 0, Xm, Mod, Other, Wav };

constexpr const char* kDefaultSongName = "noname.vtm";
constexpr const char* kDefaultInstrumentName = "noname.vti";
constexpr const char* kDefaultSampleName = "noname.wav";

// Each takes the file name that the user typed, and gives one without directories. An empty name counts as the default
// one. Songs keep what stands before the first point and get the suffix of the format, but none for WAV, since the
// mixdown forms the names; the others keep a name with a point as it is.
std::string SongFileName(std::string name, SaveFormat format);
std::string InstrumentFileName(std::string name);
std::string SampleFileName(std::string name);

// What SongFileName adds; of the mixdown ".wav", for the eye.
const char* SuffixOf(SaveFormat format);

// As a message tells it: a long name without its middle, in so many characters.
constexpr std::size_t kShortName = 24;
std::string ShortName(const std::string& name, std::size_t most = kShortName);

}  // namespace vonta
