// The text of Vonta.cfg: a header that explains every key, then a line "#NAME value" for each key.
//
// A line whose first word does not begin with '#' is a comment; so taking the '#' away disables an option. A flag has
// no value: it is on if it has a line. Nothing in the text can fail.
#pragma once

#include <string>
#include <string_view>

namespace vonta {

class FileStream;
struct Config;

// Clears the flags, then works off the lines. A key without a line, a name that is none and a text that is not among
// a key's values change nothing. Of a line the first 1024 characters count.
void ReadConfigText(std::string_view text, Config& config);

// A text that no line can hold (with a quote or a line feed in it, or too long) is saved as empty.
std::string ConfigText(const Config& config);
void WriteConfigText(FileStream& stream, const Config& config);

// False if the file cannot be opened, or not be written; the old file is then as it was.
bool LoadConfigText(const std::string& path, Config& config);
bool SaveConfigText(const std::string& path, const Config& config);

}  // namespace vonta
