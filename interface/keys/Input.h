// Keyboard and mouse as the interface polls them: key events in our own codes (config/KeyTable.h), the mouse in pixels
// of the 800 by 600 picture, and the table of repeat counters. Interface thread only.
#pragma once

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

namespace vonta {

enum KeyModifierMask : int { kMaskControl = 1, kMaskShift = 2, kMaskAlt = 4 };

class Input {
public:
    static constexpr int kMaxEvents = 20;        // in one poll
    static constexpr int kMaxQueued = 1024;      // between two polls; what comes on top is dropped, releases kept
    static constexpr std::size_t kMaxMouseStates = 64;   // between two polls; of more, the last is what counts
    static constexpr int kMasks = 8, kKeys = 256, kActions = 256;
    static constexpr std::uint32_t kNotArmed = 65535;

    Input();

    // What the window's events say. scanCode: USB HID usage, as SDL gives it; a repeat of the system is not sent.
    void OnKey(int scanCode, bool pressed);
    void OnMouse(int x, int y, bool left, bool right);
    void OnWheel(float notches) { wheel_ += notches; }

    void Reset();                                // forgets held keys, queued events and repeats
    void Poll();                                 // takes at most kMaxEvents of what came
    int EventCount() const { return count_; }
    void GetEvent(int index, int& key, bool& pressed) const;   // 99 for a key that the program does not know
    void EndEvents() { count_ = 0; }

    void ArmRepeat(int key, int mask, int action, std::uint32_t delay);   // ticks
    void DisarmKey(int key);
    std::uint32_t& Repeat(int key, int mask, int action);

    // The mouse as the next frame sees it: each change of a button in a frame of its own, so that a click between two
    // frames is one, at its place.
    void PollMouse();
    void SkipMouse();                            // to where it is now: what it did meanwhile is forgotten
    float GetMouseWheel();                       // notches since the last call; up is positive
    int MouseX() const { return mouse_.x; }
    int MouseY() const { return mouse_.y; }
    bool Left() const { return mouse_.left; }
    bool Right() const { return mouse_.right; }

private:
    void Queue(int scanCode, bool pressed);
    struct KeyEvent { int scanCode = 0; bool pressed = false; };
    struct MouseEvent { int x = 400, y = 300; bool left = false, right = false; };
    std::vector<KeyEvent> queue_;
    std::array<KeyEvent, kMaxEvents> events_;
    int count_ = 0;
    std::vector<MouseEvent> mouseQueue_;         // neighbours differ in their buttons
    MouseEvent mouse_;
    float wheel_ = 0;
    std::vector<std::uint32_t> repeats_;         // by mask, key, action
};

// Our key code of a scan code by the key's place on the keyboard, whatever letter stands on it; kNoKey if we know none.
int KeyOfScanCode(int scanCode);

}  // namespace vonta
