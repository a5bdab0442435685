#include "app/pack/ImageReader.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "app/pack/PackFile.h"

namespace vonta {
namespace {

constexpr int kTrueColour = 2;
constexpr std::size_t kHeadBytes = 18, kTypeAt = 2, kWidthAt = 12, kHeightAt = 14, kDepthAt = 16;

// A picture of a pack or a file of its own; both give bytes or nothing.
class Source {
public:
    explicit Source(const ImageRequest& request) : pack_(request.pack) {
        open_ = pack_ ? pack_->Find(request.name) : file_.Open(request.name, "rb");
    }
    bool IsOpen() const { return open_; }
    bool Read(void* buffer, std::size_t size) {
        return size == 0 || (pack_ ? pack_->Read(buffer, size) : file_.Read(buffer, size, 1) == 1);
    }
    std::uint64_t Remaining() const {
        return pack_ ? pack_->Remaining() : static_cast<std::uint64_t>(file_.Remaining());
    }

private:
    PackFile* pack_;
    DiskStream file_;
    bool open_;
};

// Opaque black of a pack moves up to the darkest grey that shows, since pure black is the transparent colour.
void ApplyAlpha(std::uint8_t* pixel, std::uint8_t alpha, const ImageRequest& request) {
    if (request.pack && pixel[0] == 0 && pixel[1] == 0 && pixel[2] == 0) std::fill_n(pixel, 3, std::uint8_t{1});
    const bool clear = request.pack && request.invertAlpha ? alpha >= 129 : alpha < 128;
    if (clear) std::fill_n(pixel, 3, std::uint8_t{0});
}

// The row in the file's depth becomes one of three bytes a pixel.
void ConvertRow(const std::uint8_t* row, std::uint8_t* out, const ImageRequest& request) {
    if (request.bits == 24) {
        std::memcpy(out, row, std::size_t{request.width} * 3);
        return;
    }
    for (std::uint32_t x = 0; x < request.width; ++x, row += 4, out += 3) {
        std::copy_n(row, 3, out);
        ApplyAlpha(out, row[3], request);
    }
}

// The file's rows run from the bottom up.
bool ReadRows(Source& source, ImageRequest& request) {
    const std::size_t rowBytes = std::size_t{request.width} * 3, fileRowBytes = request.width * (request.bits / 8);
    if (fileRowBytes * request.height > source.Remaining()) return false;
    request.pixels.assign(rowBytes * request.height, 0);
    if (request.pixels.empty()) return true;
    std::vector<std::uint8_t> row(fileRowBytes);
    for (std::size_t y = request.height; y-- > 0;) {
        if (!source.Read(row.data(), row.size())) return false;
        ConvertRow(row.data(), request.pixels.data() + y * rowBytes, request);
    }
    return true;
}

int ReadTga(ImageRequest& request) {
    Source source(request);
    if (!source.IsOpen()) return kImageNotFound;
    std::array<std::uint8_t, kHeadBytes> head{};
    if (!source.Read(head.data(), head.size()) || head[kTypeAt] != kTrueColour) return kImageWrongType;
    const auto u16 = [&](std::size_t at) { return static_cast<std::uint32_t>(head[at] | head[at + 1] << 8); };
    const std::uint32_t width = u16(kWidthAt), height = u16(kHeightAt), bits = head[kDepthAt];
    if ((bits != 24 && bits != 32) || std::uint64_t{width} * height * 3 > kMaxImageBytes) return kImageWrongDepth;
    request.width = width;
    request.height = height;
    request.bits = bits;
    return ReadRows(source, request) ? kImageOk : kImageWrongType;
}

constexpr int (*kReaders[])(ImageRequest&) = {ReadTga};

}  // namespace

int LoadImage(ImageRequest& request) {
    int result = kImageNotFound;
    for (const auto read : kReaders) {
        result = read(request);
        if (result == kImageOk) return result;
    }
    request.width = request.height = request.bits = 0;
    request.pixels.clear();
    return result;
}

}  // namespace vonta
