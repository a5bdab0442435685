#include "platform/HeadlessWindow.h"

namespace vonta {
namespace {

bool SameShape(const Surface& a, const Surface& b) {
    return a.Width() == b.Width() && a.Height() == b.Height() && a.Bits() == b.Bits();
}

}  // namespace

int HeadlessDisplay::Open(int width, int height, int bits, bool fullscreen) {
    open_ = !refuse && !(fullscreen && refuseFullscreen) && Surface::Create(width, height, bits) != nullptr;
    fullscreen_ = fullscreen;
    return open_ ? 0 : 1;
}

void HeadlessDisplay::Present(const Surface& picture) {
    if (!open_) return;
    if (!shown_ || !SameShape(*shown_, picture))
        shown_ = Surface::Create(picture.Width(), picture.Height(), picture.Bits());
    if (shown_) shown_->Blit(picture, 0, 0, picture.Width(), picture.Height(), 0, 0, false);
    ++presents_;
}

std::uint32_t HeadlessDisplay::PixelAt(int x, int y) const { return shown_ ? shown_->RgbAt(x, y) : 0; }

bool HeadlessWindow::PollEvent(WindowEvent& event) {
    if (events_.empty()) return false;
    event = std::move(events_.front());
    events_.pop_front();
    return true;
}

}  // namespace vonta
