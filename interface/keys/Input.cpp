#include "interface/keys/Input.h"

#include <algorithm>

#include "app/config/KeyTable.h"
#include "platform/Debug.h"

namespace vonta {
namespace {

constexpr int kScanLeftControl = 224, kScanAltGr = 230;   // USB HID usages

}  // namespace

Input::Input() : repeats_(std::size_t{kMasks} * kKeys * kActions, kNotArmed) {}

// The binding of Alt Gr counts on the left Control that comes with it on other systems.
void Input::OnKey(int scanCode, bool pressed) {
    if (scanCode == kScanAltGr) Queue(kScanLeftControl, pressed);
    Queue(scanCode, pressed);
}

void Input::Queue(int scanCode, bool pressed) {
    const bool full = queue_.size() >= kMaxQueued;
    if (full && (pressed || queue_.size() >= 2 * kMaxQueued)) return;
    queue_.push_back({scanCode, pressed});
}

void Input::OnMouse(int x, int y, bool left, bool right) {
    const MouseEvent now{x, y, left, right};
    const MouseEvent& before = mouseQueue_.empty() ? mouse_ : mouseQueue_.back();
    const bool moved = before.left == left && before.right == right;
    if (!mouseQueue_.empty() && (moved || mouseQueue_.size() == kMaxMouseStates)) mouseQueue_.back() = now;
    else mouseQueue_.push_back(now);
}

void Input::PollMouse() {
    if (mouseQueue_.empty()) return;
    mouse_ = mouseQueue_.front();
    mouseQueue_.erase(mouseQueue_.begin());
}

void Input::SkipMouse() {
    if (!mouseQueue_.empty()) mouse_ = mouseQueue_.back();
    mouseQueue_.clear();
    wheel_ = 0;
}

void Input::Reset() {
    queue_.clear();
    count_ = 0;
    std::fill(repeats_.begin(), repeats_.end(), kNotArmed);
}

void Input::Poll() {
    count_ = static_cast<int>(std::min<std::size_t>(queue_.size(), kMaxEvents));
    std::copy_n(queue_.begin(), count_, events_.begin());
    queue_.erase(queue_.begin(), queue_.begin() + count_);
}

void Input::GetEvent(int index, int& key, bool& pressed) const {
    key = kNoKey;
    pressed = false;
    if (index < 0 || index >= count_) return;
    const KeyEvent& event = events_[static_cast<std::size_t>(index)];
    key = KeyOfScanCode(event.scanCode);
    pressed = event.pressed;
    if (key == kNoKey) DebugOutput("*warning: key pressed not in case\n");
}

void Input::ArmRepeat(int key, int mask, int action, std::uint32_t delay) { Repeat(key, mask, action) = delay; }

void Input::DisarmKey(int key) {
    for (int mask = 0; mask < kMasks; ++mask)
        std::fill_n(&Repeat(key, mask, 0), kActions, kNotArmed);
}

// Numbers beyond a table's end wrap within it.
std::uint32_t& Input::Repeat(int key, int mask, int action) {
    const auto at = [](int value, int count) { return static_cast<std::size_t>(value) & static_cast<std::size_t>(count - 1); };
    return repeats_[(at(mask, kMasks) * kKeys + at(key, kKeys)) * kActions + at(action, kActions)];
}

float Input::GetMouseWheel() { return std::exchange(wheel_, 0.0f); }

}  // namespace vonta
