// The regions that the mouse can hit, declared anew by the paint code of each frame, and the controls that declare
// them. The mouse is tested against the list of the frame before.
//
// Controls are declared from Screen::PaintControls, which runs twice a frame: in the blit pass they draw their
// bitmaps, in the text pass they add their regions; what does not belong to a pass does nothing in it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "interface/layout/Layout.h"
#include "interface/widgets/Control.h"

namespace vonta {

class Skin;
class Video;

struct MouseRegion {
    int x0 = 0, y0 = 0, x1 = -1, y1 = -1;       // all four inclusive
    ControlCallback onClick, onDrag;
    ControlRecord record;

    bool Holds(int x, int y) const { return x >= x0 && x <= x1 && y >= y0 && y <= y1; }
};

// The buttons of one frame, and how many repeat ticks have passed in it.
struct MouseState {
    int x = 0, y = 0;
    bool leftEdge = false, rightEdge = false;   // went down in this frame
    bool left = false, right = false;
    int ticks = 0;
};

// A screen's pressed look: where its picture lies and which surface it is.
struct PressedLook {
    int originX = 0, originY = 0;
    std::uint32_t surface = ControlRecord::kNoSurface;
};

enum class KnobColour { Red, Green, Blue };

class MouseRegions {
public:
    static constexpr int kMaxRegions = 800;     // those beyond are dropped

    MouseRegions(Video& video, Skin& skin) : video_(video), skin_(skin) {}

    void Clear();                               // at the start of a frame; the captured region stays
    void SetBlitMode(bool on) { blitMode_ = on; }
    bool IsBlitMode() const { return blitMode_; }

    void AddRegion(int x0, int y0, int x1, int y1, ControlCallback onClick, ControlCallback onDrag = {},
                   const ControlRecord& record = {});

    // Button and SmallButton by the item's look. Latched ones show the pressed look.
    void Button(const LayoutItem& item, ControlCallback onClick, const PressedLook& look, ControlRecord record = {});
    void LatchedButton(const LayoutItem& item, ControlCallback onClick, const PressedLook& look, ControlRecord record = {});

    // A click starts to edit the text; the caller passes the record on to TrackerInterface::StartTextEdit.
    void TextField(int x0, int y0, int x1, int y1, const std::string& text, ControlCallback onClick, ControlCallback onDrag = {},
                   ControlRecord record = {});

    // Both: `steps` of 0 counts as 1; knobSize -5 and 0 are computed; value 0 to steps - 1. surface -1: no pressed look.
    struct SliderShape {
        int x0, y0, x1, y1;
        int steps = 1, knobSize = -5, value = 0;
        bool proportional = false;
    };
    void Slider(const SliderShape& shape, ControlCallback onClick, ControlCallback onDrag, const PressedLook& look,
                ControlRecord record = {});
    void VSlider(const SliderShape& shape, ControlCallback onClick, ControlCallback onDrag, const PressedLook& look,
                 ControlRecord record = {});

    // A rotary knob of 16 by 16 pixels; value 0 to range.
    void Knob(int x, int y, float range, float value, ControlCallback onClick, KnobColour colour, ControlRecord record = {});

    // The hit test, once a frame after the input poll; calls the callbacks. repeatDelay in ticks.
    void Update(const MouseState& mouse, int repeatDelay);
    // Draws the pressed state of the control that holds the mouse, if the mouse is on it and it has a pressed look.
    void PaintPressed(int mouseX, int mouseY);
    void ReleaseCapture();                      // what the captured region stood for may be gone

    bool IsHolding() const { return holding_; }
    const MouseRegion& Captured() const { return captured_; }
    const std::vector<MouseRegion>& List() const { return regions_; }

private:
    void Capture(const MouseState& mouse, int repeatDelay);
    void Follow(const MouseState& mouse);
    void OnPress(const MouseState& mouse, bool inside);
    void OnHeld(const MouseState& mouse, bool inside);
    void OnReleased(bool inside);
    void CallOutside(std::uint32_t event);
    void Call(const ControlCallback& callback);

    Video& video_;
    Skin& skin_;
    std::vector<MouseRegion> regions_;          // of the present frame
    MouseRegion captured_;                      // copied out, so that it outlives the list
    bool holding_ = false;
    bool blitMode_ = false;
    int repeatDelay_ = 0;                       // ticks left before a held control fires
    int pressX_ = 0, pressY_ = 0;
};

}  // namespace vonta
