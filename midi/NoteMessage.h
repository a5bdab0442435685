// What a message of a MIDI input means to the tracker: a key of its keyboard, pressed or let go.
#pragma once

#include <algorithm>
#include <cstdint>

namespace vonta {

struct NoteMessage {
    enum class Kind { Other, On, Off };
    Kind kind = Kind::Other;                       // all but notes is ignored
    int note = 0;                                  // 0 to 95; higher keys act as the highest
    int velocity = 0;                              // 1 to 127 with On
};

// A note-on of velocity 0 is a note-off.
constexpr NoteMessage DecodeNote(std::uint32_t message) {
    constexpr std::uint32_t kOffStatus = 0x80, kOnStatus = 0x90;
    constexpr int kHighestNote = 95;
    const std::uint32_t status = message & 0xF0;
    const int note = std::min(static_cast<int>(message >> 8 & 0x7F), kHighestNote);
    const int velocity = static_cast<int>(message >> 16 & 0x7F);
    if (status == kOnStatus && velocity > 0) return {NoteMessage::Kind::On, note, velocity};
    if (status == kOnStatus || status == kOffStatus) return {NoteMessage::Kind::Off, note, velocity};
    return {};
}

}  // namespace vonta
