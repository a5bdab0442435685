// Any bytes as one of the files of the start directory; the first byte tells which. What was read can be saved, and
// read again it is the same.
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

#include "app/config/ConfigSettings.h"
#include "app/config/ConfigText.h"
#include "app/config/Environment.h"
#include "formats/streams/FileStream.h"

namespace vonta {
namespace {

void RequireEqual(bool equal) {
    if (!equal) std::abort();
}

// The text keeps six decimals of a number, so it is the text that is compared.
void LoadText(std::span<const std::uint8_t> bytes) {
    Config config, again;
    ReadConfigText({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, config);
    SettingsOf(config);
    const std::string text = ConfigText(config);
    ReadConfigText(text, again);
    RequireEqual(ConfigText(again) == text);
}

template <class Data, void (*read)(FileStream&, Data&), void (*write)(FileStream&, const Data&)>
void LoadBinary(std::span<const std::uint8_t> bytes, Data data) {
    MemoryStream stream({bytes.begin(), bytes.end()}), written;
    read(stream, data);
    write(written, data);
    written.Seek(0, kFromStart);
    Data again = data;
    read(written, again);
    RequireEqual(again == data);
}

}  // namespace
}  // namespace vonta

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vonta;
    if (size == 0) return 0;
    const std::span<const std::uint8_t> bytes(data + 1, size - 1);
    switch (data[0] % 3) {
    case 0: LoadText(bytes); break;
    case 1: LoadBinary<KeyTable, ReadKeyTable, WriteKeyTable>(bytes, DefaultKeyTable()); break;
    default: LoadBinary<Environment, ReadEnvironment, WriteEnvironment>(bytes, {}); break;
    }
    return 0;
}
