// Keys of the program's own, tried when none of the 210 actions takes them. They cannot be bound to others.
#pragma once

#include <cstdint>
#include <string_view>

#include "app/config/KeyTable.h"

namespace vonta {

enum class OwnAction : std::uint8_t { Undo, Redo, Save };

struct OwnKey {
    OwnAction action;
    int key;
    bool control, shift;                             // each must be held, or else must not be; Alt must not
    std::string_view name;
};

inline constexpr OwnKey kOwnKeys[] = {
    {OwnAction::Undo, kKeyA + 'U' - 'A', true, false, "Undo"},
    {OwnAction::Undo, kKeyBack, true, false, "Undo"},
    {OwnAction::Redo, kKeyA + 'Y' - 'A', true, false, "Redo"},
    {OwnAction::Redo, kKeyA + 'U' - 'A', true, true, "Redo"},
    {OwnAction::Save, kKeyA + 'W' - 'A', true, false, "Save under the present name"},
};

}  // namespace vonta
