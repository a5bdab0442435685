// Any bytes as a pack, each of its entries as a picture. What is read has the size that it tells.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "app/pack/ImageReader.h"
#include "app/pack/PackFile.h"

namespace vonta {
namespace {

constexpr std::size_t kEntriesRead = 32;         // of a pack; there may be thousands, all of them the same

void Require(bool condition) {
    if (!condition) std::abort();
}

void LoadPicture(PackFile& pack, const std::string& name, bool invertAlpha) {
    ImageRequest request;
    request.pack = &pack;
    request.name = name;
    request.invertAlpha = invertAlpha;
    const bool read = LoadImage(request) == kImageOk;
    Require(request.pixels.size() == (read ? std::size_t{request.width} * request.height * 3 : 0));
    Require(request.pixels.size() <= kMaxImageBytes);
}

void CountBytes(PackFile& pack, const std::string& name) {
    if (!pack.Find(name)) return;
    const std::uint32_t promised = pack.Remaining();
    std::uint32_t count = 0;
    for (char byte; pack.Read(&byte, 1); ++count) {}
    Require(count == promised);
}

}  // namespace
}  // namespace vonta

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vonta;
    PackFile pack(std::make_unique<MemoryStream>(std::vector<std::uint8_t>(data, data + size)));
    for (std::size_t i = 0; i < std::min(pack.Count(), kEntriesRead); ++i) {
        const std::string name(pack.EntryName(i));
        CountBytes(pack, name);
        LoadPicture(pack, name, i % 2 != 0);
    }
    return 0;
}
