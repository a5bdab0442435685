// What one region of the mouse tells its callbacks, and what a callback is.
#pragma once

#include <cstdint>
#include <string>

namespace vonta {

// Which happenings a region answers to; a set of bits.
enum ControlEvent : std::uint32_t {
    kOnLeftPress = 1,
    kOnRightPress = 2,
    kOnLeftHeld = 4,                 // repeats per tick after the mouse delay
    kOnRightHeld = 8,                // repeats per tick, at once
    kOnRelease = 16,                 // a click
    kOnBothPress = 32,
    kOnLeftHeldOutside = 64,         // the left button held outside calls onClick too
    kOnBothHeld = 128,
};

struct ControlRecord {
    static constexpr std::uint32_t kNoSurface = 65535;

    std::int32_t param = 0;          // the caller's own: item number, amount
    std::uint32_t events = kOnRelease;
    std::uint32_t sourceSurface = kNoSurface;   // of the pressed look
    std::int32_t x = 0, y = 0;       // mouse, relative to the region
    float relX = 0, relY = 0;        // the same, 0 to 1; below 0.01 is 0, above 0.99 is 1
    std::int32_t dragX = 0, dragY = 0;          // mouse, relative to where the press began
    bool hasPressedLook = false;
    std::int32_t originX = 0, originY = 0;      // of sourceSurface on the screen
    const std::string* text = nullptr;     // of a text field; ends to be edited when its owner may go
    bool rightHeld = false, leftHeld = false;
    bool first = false;              // the first call of a press
    bool released = false;
    bool rightPressed = false, leftPressed = false, leftNow = false, rightNow = false;
    float value = 0;                 // of a slider or knob, 0 to 1
    bool useTicks = true;            // false: held events run once per frame, with no delay
    bool ticksPassed = false;        // at least one tick in this frame
};

// A member operation of an object that outlives the frame. One pointer to the object, one to the code: copies are
// free, and a screen declares hundreds of them each frame.
class ControlCallback {
public:
    ControlCallback() = default;
    ControlCallback(void* owner, void (*call)(void*, ControlRecord&)) : owner_(owner), call_(call) {}
    explicit operator bool() const { return call_ != nullptr; }
    void operator()(ControlRecord& record) const { if (call_) call_(owner_, record); }

private:
    void* owner_ = nullptr;
    void (*call_)(void*, ControlRecord&) = nullptr;
};

// Bind<&DiskOpScreen::OnList>(this)
template <auto operation, class Owner>
ControlCallback Bind(Owner* owner) {
    return {owner, [](void* self, ControlRecord& record) { (static_cast<Owner*>(self)->*operation)(record); }};
}

template <class> struct OwnerOf;
template <class Owner> struct OwnerOf<void (Owner::*)(ControlRecord&)> { using Type = Owner; };

// The code alone, for tables whose reader knows the owner: Press<&DiskOpScreen::OnLoad>.
template <auto operation>
void Press(void* owner, ControlRecord& record) {
    (static_cast<typename OwnerOf<decltype(operation)>::Type*>(owner)->*operation)(record);
}

}  // namespace vonta
