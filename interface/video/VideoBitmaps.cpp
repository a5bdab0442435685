// From files to surfaces: pictures, strips and colours, in the pixel format of the mode.
#include <algorithm>

#include "app/pack/ImageReader.h"
#include "interface/video/Pixels.h"
#include "interface/video/Video.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

std::uint32_t Packed(std::uint8_t value, const PixelFormat::Channel& channel) {
    return static_cast<std::uint32_t>(value >> channel.loss) << channel.shift;
}

ImageRequest ReadPicture(PackFile* pack, const std::string& name) {
    ImageRequest image;
    image.pack = pack;
    image.name = name;
    if (LoadImage(image) != kImageOk) DebugOutput("error loading tga: %s\n", name.c_str());
    return image;
}

}  // namespace

std::uint32_t Video::PackColour(std::uint8_t red, std::uint8_t green, std::uint8_t blue) const {
    return Packed(red, format_.red) | Packed(green, format_.green) | Packed(blue, format_.blue);
}

std::uint32_t Video::PackVisible(std::uint8_t red, std::uint8_t green, std::uint8_t blue) const {
    const std::uint32_t colour = PackColour(red, green, blue);
    if (colour != 0 || (red | green | blue) == 0) return colour;
    return 1u << format_.red.shift | 1u << format_.green.shift | 1u << format_.blue.shift;
}

std::uint32_t Video::Dimmed(std::uint32_t colour, int sixteenths) const {
    const auto part = [&](const PixelFormat::Channel& channel) {
        const std::uint32_t value = colour >> channel.shift & ((1u << channel.bits) - 1);
        return std::max(value * static_cast<std::uint32_t>(sixteenths) / 16, 1u) << channel.shift;
    };
    return part(format_.red) | part(format_.green) | part(format_.blue);
}

std::uint32_t Video::PackRgb(std::uint32_t rgb) const {
    return PackColour(static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8),
                      static_cast<std::uint8_t>(rgb));
}

// Every `step`-th column of the picture.
void Video::Convert(const ImageRequest& image, int step, Surface& surface) const {
    WithPixelBytes(format_.bitsPerPixel, [&](auto bytes) {
        for (int y = 0; y < surface.Height(); ++y) {
            const std::uint8_t* from = image.pixels.data() + static_cast<std::size_t>(y) * image.width * 3;
            std::uint8_t* to = surface.Pixels() + static_cast<std::ptrdiff_t>(y) * surface.Pitch();
            for (int x = 0; x < surface.Width(); ++x, from += 3 * step, to += bytes())
                StorePixel<bytes()>(to, PackVisible(from[2], from[1], from[0]));
        }
    });
}

bool Video::Fill(int id, bool forceAlpha) {
    Slot& slot = *Find(id);
    const ImageRequest image = ReadPicture(slot.pack, slot.name);
    const int step = std::max(slot.frames, 1);
    slot.hasAlpha = forceAlpha || image.bits == 32;
    slot.width = static_cast<int>(image.width) / step;
    slot.height = static_cast<int>(image.height);
    if (image.pixels.empty() || !CreateSurface(id, slot.width, slot.height)) return false;
    Convert(image, step, *slot.surface);
    return true;
}

int Video::LoadPicture(PackFile* pack, const std::string& name, int frame, bool forceAlpha) {
    const int id = NextFreeSlot();
    if (id == kNoSlot) return id;
    Slot& slot = *Find(id);
    slot.name = name;
    slot.pack = pack;
    slot.frames = frame;
    Fill(id, forceAlpha);
    return id;
}

int Video::LoadBitmap(PackFile* pack, const std::string& name, bool forceAlpha) {
    return LoadPicture(pack, name, 0, forceAlpha);
}

int Video::LoadStrip(PackFile* pack, const std::string& name, int frame) { return LoadPicture(pack, name, frame, false); }

bool Video::Reload(int id) {
    const Slot* slot = Find(id);
    return slot && !slot->name.empty() && Fill(id, slot->hasAlpha);
}

void Video::RestoreOne(int id) {
    if (IsLost()) Reload(id);
}

int Video::CreateEmpty(int width, int height) {
    const int id = NextFreeSlot();
    if (id != kNoSlot) CreateSurface(id, width, height);
    return id;
}

std::array<std::uint8_t, 3> Video::ColourOfBitmap(PackFile* pack, const std::string& name) {
    const ImageRequest image = ReadPicture(pack, name);
    if (image.pixels.empty()) return {};
    return {image.pixels[2], image.pixels[1], image.pixels[0]};
}

void Video::LoadPixels(int id, const std::uint32_t* pixels, int width, int height, int order) {
    Slot* slot = Find(id);
    if (!slot || !slot->surface || width < 1 || height < 1) return;
    const int redShift = order == 1 ? 16 : 0, blueShift = 16 - redShift;
    Surface& surface = *slot->surface;
    WithPixelBytes(format_.bitsPerPixel, [&](auto bytes) {
        for (int y = 0; y < std::min(height, surface.Height()); ++y) {
            const std::uint32_t* from = pixels + static_cast<std::ptrdiff_t>(y) * width;
            std::uint8_t* to = surface.Pixels() + static_cast<std::ptrdiff_t>(y) * surface.Pitch();
            for (int x = 0; x < std::min(width, surface.Width()); ++x, to += bytes())
                StorePixel<bytes()>(to, PackColour(static_cast<std::uint8_t>(from[x] >> redShift),
                                                   static_cast<std::uint8_t>(from[x] >> 8),
                                                   static_cast<std::uint8_t>(from[x] >> blueShift)));
        }
    });
}

}  // namespace vonta
