#include "interface/widgets/MouseRegions.h"

#include <algorithm>

#include "interface/skin/Skin.h"
#include "interface/video/Video.h"

namespace vonta {
namespace {

constexpr float kSnap = 0.01f;                   // of the length: as near to an end counts as the end

float Relative(int offset, int length) {
    const float value = static_cast<float>(offset) / static_cast<float>(std::max(length, 1));
    return value < kSnap ? 0.0f : value > 1.0f - kSnap ? 1.0f : value;
}

void SetLook(ControlRecord& record, const PressedLook& look) {
    record.sourceSurface = look.surface;
    record.originX = look.originX;
    record.originY = look.originY;
}

// Along the groove, in pixels.
struct KnobPlace {
    int size, position;
};

KnobPlace PlaceKnob(const MouseRegions::SliderShape& shape, int length) {
    const int steps = std::max(shape.steps, 1);
    int size = shape.knobSize + 5;
    if (size == 0) size = shape.proportional ? length + 2 - 2 * steps : std::max(length / (2 * steps) - 2, 3);
    size = std::clamp(size, 1, std::max(length, 1));
    const int value = std::clamp(shape.value, 0, steps - 1);
    return {size, (length - size) * value / std::max(steps - 1, 1)};
}

// What both kinds of sliders tell their callback.
ControlRecord SliderRecord(const MouseRegions::SliderShape& shape, const PressedLook& look, ControlRecord record) {
    SetLook(record, look);
    record.events = kOnLeftPress | kOnLeftHeld;
    record.useTicks = false;
    record.value = std::clamp(static_cast<float>(shape.value) / static_cast<float>(std::max(shape.steps - 1, 1)), 0.0f, 1.0f);
    return record;
}

}  // namespace

void MouseRegions::Clear() { regions_.clear(); }

void MouseRegions::AddRegion(int x0, int y0, int x1, int y1, ControlCallback onClick, ControlCallback onDrag,
                             const ControlRecord& record) {
    if (blitMode_ || regions_.size() >= kMaxRegions) return;
    regions_.push_back({x0, y0, x1, y1, onClick, onDrag, record});
}

void MouseRegions::Button(const LayoutItem& item, ControlCallback onClick, const PressedLook& look, ControlRecord record) {
    SetLook(record, look);
    record.hasPressedLook = look.surface != ControlRecord::kNoSurface;
    AddRegion(item.x, item.y, item.x + item.width - 1, item.y + item.height - 1, onClick, {}, record);
}

void MouseRegions::LatchedButton(const LayoutItem& item, ControlCallback onClick, const PressedLook& look,
                                 ControlRecord record) {
    if (blitMode_)
        video_.BlitRect(item.x, item.y, look.originX, look.originY, item.width, item.height,
                        static_cast<int>(look.surface), false);
    Button(item, onClick, look, record);
}

void MouseRegions::TextField(int x0, int y0, int x1, int y1, const std::string& text, ControlCallback onClick,
                             ControlCallback onDrag, ControlRecord record) {
    record.text = &text;
    AddRegion(x0, y0, x1, y1, onClick, onDrag, record);
}

void MouseRegions::Slider(const SliderShape& shape, ControlCallback onClick, ControlCallback onDrag,
                          const PressedLook& look, ControlRecord record) {
    AddRegion(shape.x0, shape.y0, shape.x1, shape.y1, onClick, onDrag, SliderRecord(shape, look, record));
    if (!blitMode_) return;
    const int length = shape.x1 - shape.x0, height = shape.y1 - shape.y0, surface = static_cast<int>(look.surface);
    KnobPlace knob = PlaceKnob(shape, length);
    if (shape.proportional) {
        video_.BlitRect(shape.x0 + knob.position, shape.y0, look.originX, look.originY, knob.size, height, surface, false);
        return;
    }
    const int picture = skin_.LoadSkinBitmap(kBitmapSlider);
    knob.position = std::max(std::min(knob.position, length - video_.WidthOf(picture)), 0);   // whole inside the groove
    video_.BlitRect(shape.x0, shape.y0, look.originX, look.originY, knob.position, height, surface, false);
    video_.BlitToBack(shape.x0 + knob.position, shape.y0 - 1, picture);
}

void MouseRegions::VSlider(const SliderShape& shape, ControlCallback onClick, ControlCallback onDrag,
                           const PressedLook& look, ControlRecord record) {
    AddRegion(shape.x0, shape.y0, shape.x1, shape.y1, onClick, onDrag, SliderRecord(shape, look, record));
    if (!blitMode_) return;
    const int length = shape.y1 - shape.y0, width = shape.x1 - shape.x0, surface = static_cast<int>(look.surface);
    KnobPlace knob = PlaceKnob(shape, length);
    if (shape.proportional) {
        video_.BlitRect(shape.x0, shape.y0 + knob.position, look.originX, look.originY, width, knob.size, surface, false);
        return;
    }
    const int picture = skin_.LoadSkinBitmap(kBitmapSlider);
    knob.position = std::max(std::min(knob.position, length - video_.HeightOf(picture)), 0);
    video_.BlitRect(shape.x0, shape.y0, look.originX, look.originY, width, knob.position, surface, false);
    video_.BlitToBack(shape.x0 - 1, shape.y0 + knob.position, picture);
}

void MouseRegions::Knob(int x, int y, float range, float value, ControlCallback onClick, KnobColour colour,
                        ControlRecord record) {
    constexpr int kSize = 16;
    constexpr int kFirst[] = {kBitmapRedKnob, kBitmapGreenKnob, kBitmapBlueKnob};
    const float turn = range > 0 ? value / range : 0.0f;
    record.value = turn >= kSnap ? std::min(turn > 1.0f - kSnap ? 1.0f : turn, 1.0f) : 0.0f;   // not a number is 0 too
    if (blitMode_) {
        const int position = static_cast<int>(record.value * static_cast<float>(kKnobPositions - 1));
        video_.BlitToBack(x, y, skin_.LoadSkinBitmap(kFirst[static_cast<int>(colour)] + position));
    }
    AddRegion(x, y, x + kSize - 1, y + kSize - 1, onClick, {}, record);
}

void MouseRegions::Update(const MouseState& mouse, int repeatDelay) {
    if (!holding_ && (mouse.leftEdge || mouse.rightEdge)) Capture(mouse, repeatDelay);
    if (!holding_) return;
    Follow(mouse);
    const bool inside = captured_.Holds(mouse.x, mouse.y);
    if (mouse.leftEdge || mouse.rightEdge) OnPress(mouse, inside);
    else if (mouse.left || mouse.right) OnHeld(mouse, inside);
    else OnReleased(inside);
}

void MouseRegions::Capture(const MouseState& mouse, int repeatDelay) {
    const auto hit = std::find_if(regions_.begin(), regions_.end(),
                                  [&](const MouseRegion& region) { return region.Holds(mouse.x, mouse.y); });
    if (hit == regions_.end()) return;
    captured_ = *hit;
    captured_.record.first = true;
    holding_ = true;
    repeatDelay_ = repeatDelay;
    pressX_ = mouse.x;
    pressY_ = mouse.y;
}

void MouseRegions::Follow(const MouseState& mouse) {
    ControlRecord& record = captured_.record;
    record.x = mouse.x - captured_.x0;
    record.y = mouse.y - captured_.y0;
    record.relX = Relative(record.x, captured_.x1 - captured_.x0);
    record.relY = Relative(record.y, captured_.y1 - captured_.y0);
    record.dragX = mouse.x - pressX_;
    record.dragY = mouse.y - pressY_;
    record.leftPressed = mouse.leftEdge;
    record.rightPressed = mouse.rightEdge;
    record.leftNow = mouse.left;
    record.rightNow = mouse.right;
    record.ticksPassed = mouse.ticks > 0;
}

void MouseRegions::OnPress(const MouseState& mouse, bool inside) {
    ControlRecord& record = captured_.record;
    if (mouse.leftEdge) record.leftHeld = true;
    if (mouse.rightEdge) record.rightHeld = true;
    const bool both = mouse.leftEdge && mouse.rightEdge;
    const std::uint32_t event = both ? kOnBothPress : mouse.leftEdge ? kOnLeftPress : kOnRightPress;
    if (!(record.events & event)) return;
    if (inside) Call(captured_.onClick);
    if (both) holding_ = false;
}

void MouseRegions::OnHeld(const MouseState& mouse, bool inside) {
    const ControlRecord& record = captured_.record;
    const bool rightOnly = mouse.right && !mouse.left;
    const std::uint32_t event = mouse.left && mouse.right ? kOnBothHeld : mouse.left ? kOnLeftHeld : kOnRightHeld;
    if (!(record.events & event)) return;
    const int calls = record.useTicks ? mouse.ticks : 1;
    for (int i = 0; i < calls && holding_; ++i) {
        if (!inside) {
            if (!rightOnly) CallOutside(event);
        } else if (record.useTicks && !rightOnly && repeatDelay_ > 0) {
            --repeatDelay_;
        } else {
            Call(captured_.onClick);
        }
    }
}

void MouseRegions::CallOutside(std::uint32_t event) {
    if (captured_.onDrag) Call(captured_.onDrag);
    else if (event == kOnLeftHeld && (captured_.record.events & kOnLeftHeldOutside)) Call(captured_.onClick);
}

void MouseRegions::OnReleased(bool inside) {
    holding_ = false;
    if (!inside || !(captured_.record.events & kOnRelease)) return;
    captured_.record.released = true;
    Call(captured_.onClick);
}

// The callback may let go of the capture, or close the screen that declared it.
void MouseRegions::Call(const ControlCallback& callback) {
    const ControlCallback call = callback;
    call(captured_.record);
    captured_.record.first = false;
}

void MouseRegions::PaintPressed(int mouseX, int mouseY) {
    const ControlRecord& record = captured_.record;
    if (!holding_ || !record.hasPressedLook || !captured_.Holds(mouseX, mouseY)) return;
    video_.BlitRect(captured_.x0, captured_.y0, record.originX, record.originY, captured_.x1 - captured_.x0 + 1,
                    captured_.y1 - captured_.y0 + 1, static_cast<int>(record.sourceSurface), false);
}

void MouseRegions::ReleaseCapture() { holding_ = false; }

}  // namespace vonta
