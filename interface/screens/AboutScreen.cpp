#include "interface/screens/AboutScreen.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "interface/layout/FunLayouts.h"
#include "interface/layout/TextLayouts.h"
#include "interface/skin/AboutEffect.h"
#include "interface/TrackerInterface.h"

namespace vonta {
namespace {

constexpr ControlRow<AboutScreen> kRows[] = {{kAboutExit, Press<&AboutScreen::OnExit>}};

constexpr std::size_t kPixels = std::size_t{kAboutWidth} * kAboutHeight;
constexpr int kEdge = 2;                         // of the recess around the picture
constexpr std::uint32_t kAcrossMs = 60, kDownMs = 24;    // in which the texture moves on by a pixel

constexpr std::string_view kScroller =
    "VONTA Sound Power Kick Ass        32 bit floating        64 channels, four voices on each        "
    "write, mix, play, and have fun        ";
constexpr std::uint32_t kScrollMs = 20;          // per pixel

constexpr const char* kCredits[] = {
    "Vonta Tracker", "", "written by", " the developers", " of Vonta Tracker", "", "built on", " SDL2", " RtMidi",
    " JACK", " Vorbis and Ogg", "", "Thank you for the", "music you will make",
};

std::vector<std::uint8_t> ReadEntry(PackFile* pack, const char* name, std::size_t size) {
    if (!pack || !pack->Find(name) || pack->Remaining() != size) return {};
    std::vector<std::uint8_t> bytes(size);
    return pack->Read(bytes.data(), size) ? bytes : std::vector<std::uint8_t>();
}

std::uint32_t Lit(const std::uint8_t* blueGreenRed, std::uint32_t light) {
    const auto part = [&](int at) { return blueGreenRed[at] * light / 255; };
    return part(2) << 16 | part(1) << 8 | part(0);
}

}  // namespace

void AboutScreen::ReadEffect() {
    if (read_) return;
    read_ = true;
    PackFile* pack = Ui().Packs().m_pDataPack.get();
    table_ = ReadEntry(pack, "data\\abouttable.raw", kAboutTableBytes);
    texture_ = ReadEntry(pack, "data\\abouttexture.raw", kAboutTextureBytes);
    pixels_.resize(kPixels);
}

void AboutScreen::PaintBackground() {
    ReadEffect();
    PaintLayout(kAboutLayout);
    PaintEffect(Ui().Now());
}

void AboutScreen::PaintEffect(std::uint32_t milliseconds) {
    const LayoutItem& view = ItemOf(kAboutLayout, kAboutPicture);
    const int x = view.x + kEdge, y = view.y + kEdge;
    if (!table_.empty() && !texture_.empty()) {
        const std::uint32_t across = milliseconds / kAcrossMs, down = milliseconds / kDownMs;
        const std::uint8_t* looksAt = table_.data();
        for (std::uint32_t& pixel : pixels_) {
            const std::uint32_t column = (looksAt[0] + across) % kAboutTextureSize, row = (looksAt[1] + down) % kAboutTextureSize;
            pixel = Lit(&texture_[(row * kAboutTextureSize + column) * 3], looksAt[2]);
            looksAt += 3;
        }
        // The visual's surface is free: the two screens are never up together.
        Surfaces().LoadPixels(Ui().VisualSurface(), pixels_.data(), kAboutWidth, kAboutHeight);
        Surfaces().BlitPart(x, y, kAboutWidth, kAboutHeight, Ui().VisualSurface(), false);
    }
    Surfaces().BlitToBack(x, y, Pictures().LoadSkinBitmap(kBitmapAboutPicture));
}

void AboutScreen::PaintControls() {
    if (!HasPainted()) return;
    PrintCredits();
    PrintScroller(Ui().Now());
    DeclareButtons(this, kAboutLayout, kRows);
}

void AboutScreen::PrintCredits() {
    const LayoutItem& list = ItemOf(kAboutLayout, kAboutCredits);
    int y = list.y + 4;
    for (const char* line : kCredits) {
        Text().m_fontStd.PrintClipped(list.x + 6, y, (list.width - 8) / 8, line);
        y += kTextRowHeight;
    }
}

// Pixel by pixel; the first and the last character may stand half a cell in the field's margin.
void AboutScreen::PrintScroller(std::uint32_t milliseconds) {
    const LayoutItem& field = ItemOf(kAboutLayout, kAboutScroller);
    const int advance = std::max(Text().m_fontStd.Advance(), 1);
    const int characters = (field.width - 4) / advance - 1;
    const auto pixels = static_cast<int>(milliseconds / kScrollMs % (kScroller.size() * static_cast<std::size_t>(advance)));
    std::string shown(kScroller.substr(static_cast<std::size_t>(pixels / advance)));
    while (shown.size() < static_cast<std::size_t>(characters)) shown += kScroller;
    Text().m_fontStd.PrintClipped(field.x + advance + 2 - pixels % advance, field.y, characters, shown);
}

void AboutScreen::OnExit(ControlRecord&) { Ui().ToggleScreen(kScreenAbout); }

}  // namespace vonta
