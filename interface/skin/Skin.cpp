#include "interface/skin/Skin.h"

#include "interface/video/Video.h"

namespace vonta {
namespace {

constexpr int kPianoBitmap = 11, kBlackKey = 77, kWhiteKey = 78;
// Of the keys on bitmap 11, in pixels.
constexpr int kPianoY = 264, kFirstWhiteX = 8, kFirstBlackX = 17, kKeyWidth = 14, kWhiteEnd = 792, kBlackEnd = 801;

struct ColourRow {
    const char* name;
    std::uint32_t SkinColours::*colour;
};

constexpr ColourRow kColours[] = {
    {"skin\\Colors\\font1.tga", &SkinColours::m_colText},      {"skin\\Colors\\font2.tga", &SkinColours::m_colHighlight},
    {"skin\\Colors\\font3.tga", &SkinColours::m_colDim},       {"skin\\Colors\\lines.tga", &SkinColours::m_colLines},
    {"skin\\Colors\\points.tga", &SkinColours::m_colPoints},   {"skin\\Colors\\Selection.tga", &SkinColours::m_colSelection},
};

// Of the seven white keys of an octave, those without a black one behind them.
constexpr bool HasBlackKey(int whiteKey) { return whiteKey % 7 != 2 && whiteKey % 7 != 6; }

}  // namespace

PackFile* Skin::SkinForBitmap(int number) const {
    if (EntryOfBitmap(number).fromDataPack) return packs_.m_pDataPack.get();
    const int version = BitmapVersion(number);
    const bool own = version != 0 && packs_.m_pSkin && packs_.m_nSkinVersion >= version;
    return (own ? packs_.m_pSkin : packs_.m_pDefaultSkin).get();
}

int Skin::LoadSkinBitmap(int number, bool showProgress) {
    if (number >= 0 && number < kBitmaps)
        if (const int known = slots_[static_cast<std::size_t>(number)]; known != 0) return known - 1;
    const BitmapEntry entry = EntryOfBitmap(number);
    PackFile* const pack = SkinForBitmap(number);
    if (entry.name.empty() || !pack) return Video::kNoSlot;
    if (showProgress && advance_) advance_();
    int& slot = slots_[static_cast<std::size_t>(number)];
    slot = 1 + (entry.strip != 0 ? video_.LoadStrip(pack, entry.name, entry.strip) : video_.LoadBitmap(pack, entry.name));
    return slot - 1;
}

void Skin::LoadAll(bool showProgress) {
    for (int number = 0; number < kBitmaps; ++number) LoadSkinBitmap(number, showProgress);
}

void Skin::LoadColours() {
    for (const ColourRow& row : kColours) {
        const auto [red, green, blue] = video_.ColourOfBitmap(packs_.m_pDefaultSkin.get(), row.name);
        colours_.*row.colour = video_.PackColour(red, green, blue);
    }
}

void Skin::Forget() {
    slots_.fill(0);
    pianoPending_ = true;
}

bool Skin::SetSkin(const std::string& path) {
    auto pack = std::make_unique<PackFile>(path);
    if (!pack->IsOpen()) return false;
    for (const int slot : slots_)
        if (slot != 0) video_.ReleaseSurface(slot - 1);
    Forget();
    packs_.m_pSkin = std::move(pack);
    packs_.m_nSkinVersion = GetSkinVersion(path);
    LoadColours();
    return true;
}

void Skin::BuildPiano() {
    pianoPending_ = false;
    const int piano = LoadSkinBitmap(kPianoBitmap), white = LoadSkinBitmap(kWhiteKey), black = LoadSkinBitmap(kBlackKey);
    for (int x = kFirstWhiteX; x < kWhiteEnd; x += kKeyWidth) video_.Blit(x, kPianoY, white, piano);
    for (int i = 0; kFirstBlackX + kKeyWidth * i < kBlackEnd; ++i)
        if (HasBlackKey(i)) video_.Blit(kFirstBlackX + kKeyWidth * i, kPianoY, black, piano);
}

void Skin::BuildPendingPiano() {
    if (pianoPending_) BuildPiano();
}

}  // namespace vonta
