#pragma once

#include <cstdint>

namespace corvane {

/// A key with the modifiers that count; Caps Lock and the others do not.
struct KeyPress {
    /// The keys without a character that mean something to the program.
    enum class Named : std::uint8_t { none, left, right, home, escape, f1, f5 };

    char32_t character = 0; // in lower case, without regard to modifiers; 0 for keys without one
    Named named = Named::none;
    bool shift = false;
    bool control = false;
    bool alternate = false;
    bool command = false;

    bool operator==(const KeyPress&) const = default;

    /// Control+Shift+U and no other modifier.
    bool togglesURLMode() const { return character == U'u' && shift && control && !alternate && !command; }
};

} // namespace corvane
