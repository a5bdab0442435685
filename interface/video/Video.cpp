#include "interface/video/Video.h"

#include <algorithm>
#include <bit>

#include "platform/Debug.h"
#include "platform/Display.h"

namespace vonta {
namespace {

PixelFormat::Channel ChannelOf(std::uint32_t mask) {
    const int bits = std::popcount(mask);
    return {bits, std::countr_zero(mask), 8 - bits};
}

PixelFormat FormatOf(const Surface& surface) {
    std::uint32_t red, green, blue;
    surface.Masks(red, green, blue);
    return {ChannelOf(red), ChannelOf(green), ChannelOf(blue), surface.Bits()};
}

}  // namespace

Video::~Video() { ShutdownSurfaces(); }

// The picture is always drawn in memory and handed over whole, so that there is no other way than to blit.
int Video::SetMode(int bits, bool, bool fullscreen, int width, int height) {
    if (display_.Open(width, height, bits, fullscreen) != 0) return 1;
    back_ = Surface::Create(width, height, bits);
    if (!back_) return 1;
    format_ = FormatOf(*back_);
    return 0;
}

void Video::ShutdownSurfaces() {
    SetTarget(nullptr, 0);
    slots_.clear();
    if (!back_) return;
    back_.reset();
    display_.Close();
}

void Video::Present() {
    if (back_) display_.Present(*back_);
}

void Video::Repair() { Present(); }
void Video::SetDialogMode() { Present(); }

void Video::Clear(std::uint32_t colour) {
    if (back_) back_->Fill(0, 0, back_->Width(), back_->Height(), colour);
}

bool Video::IsLost() const { return !back_ || display_.IsLost(); }

void Video::Restore() {
    for (int id = 0; id < static_cast<int>(slots_.size()); ++id)
        if (!slots_[static_cast<std::size_t>(id)].name.empty() && !Reload(id)) return;
}

Video::Slot* Video::Find(int id) {
    return id >= 0 && id < static_cast<int>(slots_.size()) ? &slots_[static_cast<std::size_t>(id)] : nullptr;
}

const Surface* Video::Get(int id) const {
    return id >= 0 && id < static_cast<int>(slots_.size()) ? slots_[static_cast<std::size_t>(id)].surface.get() : nullptr;
}

int Video::WidthOf(int id) const { return Get(id) ? Get(id)->Width() : 0; }
int Video::HeightOf(int id) const { return Get(id) ? Get(id)->Height() : 0; }

bool Video::CreateSurface(int id, int width, int height) {
    if (id < 0 || id >= kSlots) return false;
    if (id >= static_cast<int>(slots_.size())) slots_.resize(static_cast<std::size_t>(id) + 1);
    Slot& slot = *Find(id);
    slot.used = true;
    slot.surface = Surface::Create(width, height, format_.bitsPerPixel);
    if (!slot.surface) DebugOutput("can't create a surface\n");
    return slot.surface != nullptr;
}

void Video::ReleaseSurface(int id) {
    if (Slot* slot = Find(id)) *slot = {};
}

int Video::NextFreeSlot() {
    const auto free = std::find_if(slots_.begin(), slots_.end(), [](const Slot& slot) { return !slot.used; });
    const auto id = static_cast<int>(free - slots_.begin());
    if (id >= kSlots) return kNoSlot;
    if (free == slots_.end()) slots_.emplace_back();
    slots_[static_cast<std::size_t>(id)].used = true;
    return id;
}

bool Video::Lock(int id, LockInfo& info) {
    Slot* slot = Find(id);
    if (!slot || !slot->surface) return false;
    info = {slot->surface->Pixels(), slot->surface->Pitch(), slot->surface->Width(), slot->surface->Height(), format_};
    return true;
}

void Video::Unlock(int) {}

std::uint8_t* Video::LockBack(int& pitch) {
    if (!back_) {
        DebugOutput("* ERROR locking surface\n");
        return nullptr;
    }
    pitch = back_->Pitch();
    return back_->Pixels();
}

void Video::UnlockBack() {}

}  // namespace vonta
