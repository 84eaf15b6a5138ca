#pragma once

namespace corvane {

/// A key with the modifiers that count; Caps Lock and the others do not.
struct KeyPress {
    char32_t character = 0; // in lower case, without regard to modifiers; 0 for keys without one
    bool shift = false;
    bool control = false;
    bool alternate = false;
    bool command = false;

    /// Control+Shift+U and no other modifier.
    bool togglesURLMode() const { return character == U'u' && shift && control && !alternate && !command; }
};

} // namespace corvane
