#pragma once

#include <string_view>

namespace corvane {

/// The dialogs' style sheet in the toolkit's CSS, with the theme left open: "$name" stands for a colour or a length,
/// "$name/35" for a colour at 35 % of its opacity. The toolkit's own sheet takes many colours from the desktop's
/// scheme, not from the theme: what is not set here would be drawn in those.
inline constexpr std::string_view dialogStyleTemplate = R"(
.themed-dialog {
    background-color: $background2;
    background-image: linear-gradient(135deg, $background1, $background2, $background3);
    color: $text;
}
.themed-dialog.csd:not(.maximized):not(.fullscreen):not(.tiled) { border-radius: $radius; }

.themed-dialog .dialog-header {
    background-image: linear-gradient(to bottom, $background1, $background2, $background3);
    border-bottom: 1px solid $text/12;
    color: $heading;
    font-weight: bold;
}
.themed-dialog .dialog-title, .themed-dialog .heading { color: $heading; font-weight: bold; }
.themed-dialog .dialog-content { background: none; color: $text; }
.themed-dialog .dialog-footer { border-top: 1px solid $text/15; }
.themed-dialog .muted { color: $muted; }

.themed-dialog .card {
    background-color: $card1/55;
    box-shadow: none;
    border-radius: $radius;
    color: $text;
}
.themed-dialog .form { background-color: $card1/18; border-radius: $radius; color: $text; }
.themed-dialog .copied-label {
    background-color: $card3/75;
    border-radius: $radius;
    color: $text;
}

.themed-dialog button {
    border-radius: $buttonRadius;
    color: $text;
    transition: background-color 150ms ease-out, border-color 150ms ease-out;
}
.themed-dialog button:disabled { opacity: 0.45; filter: none; }
.themed-dialog button:focus:focus-visible, .themed-dialog switch:focus:focus-visible {
    outline: 2px solid $link;
    outline-offset: 2px;
}

.themed-dialog button.primary, .themed-dialog button.segment:checked {
    background-color: $primary;
    border: 1px solid transparent;
    box-shadow: none;
    color: $primaryLabel;
}
.themed-dialog button.primary:hover, .themed-dialog button.segment:checked:hover { background-color: $primaryHover; }
.themed-dialog button.primary:active, .themed-dialog button.segment:checked:active { background-color: $primaryActive; }

.themed-dialog button.donate {
    background-color: $donate;
    border: 1px solid transparent;
    box-shadow: none;
    color: $donateLabel;
}
.themed-dialog button.donate:hover { background-color: $donateHover; }
.themed-dialog button.donate:active { background-color: $donateActive; }

.themed-dialog button.secondary, .themed-dialog button.segment, .themed-dialog dropdown > button {
    background-color: $text/10;
    border: 1px solid $text/35;
    box-shadow: none;
    color: $text;
}
.themed-dialog button.secondary:hover, .themed-dialog button.segment:hover, .themed-dialog dropdown > button:hover {
    background-color: $text/6;
    border-color: $text/70;
}
.themed-dialog button.secondary:active, .themed-dialog button.segment:active, .themed-dialog dropdown > button:active,
.themed-dialog dropdown > button:checked {
    background-color: $text/3;
    border-color: $text;
}

.themed-dialog .linked > button:dir(ltr):not(:first-child), .themed-dialog .linked > button:dir(rtl):not(:last-child) {
    border-top-left-radius: 0;
    border-bottom-left-radius: 0;
    margin-left: -1px;
}
.themed-dialog .linked > button:dir(ltr):not(:last-child), .themed-dialog .linked > button:dir(rtl):not(:first-child) {
    border-top-right-radius: 0;
    border-bottom-right-radius: 0;
}

.themed-dialog button.flat-row { background-color: transparent; box-shadow: none; font-weight: normal; }
.themed-dialog button.flat-row:hover { background-color: $text/8; }
.themed-dialog button.flat-row:active { background-color: $text/5; }
.themed-dialog button.flat-row:hover .muted, .themed-dialog button.flat-row:active .muted { color: $text; }

.themed-dialog .icon-button {
    min-width: 28px;
    min-height: 28px;
    background-color: transparent;
    box-shadow: none;
}
.themed-dialog .icon-button:hover { background-color: $text/10; }
.themed-dialog .icon-button:active { background-color: $text/5; }

.themed-dialog .link-button, .themed-dialog .support-address {
    min-height: 0;
    background-color: transparent;
    border: none;
    box-shadow: none;
    font-weight: normal;
    color: $link;
}
.themed-dialog .support-address { color: $text; }
.themed-dialog .support-address.white { color: white; }
.themed-dialog .link-button:hover label, .themed-dialog .support-address:hover label { text-decoration: underline; }
.themed-dialog .link-button:active, .themed-dialog .support-address:active { opacity: 0.8; }

.themed-dialog switch { background-color: $text/25; background-image: none; color: $text; }
.themed-dialog switch:hover { background-color: $text/35; }
.themed-dialog switch:checked { background-color: $primary; color: $primaryLabel; }
.themed-dialog switch:checked:hover { background-color: $primaryHover; }
.themed-dialog switch:disabled { opacity: 0.45; filter: none; }
.themed-dialog switch > slider { background-color: $slider; background-image: none; border: 1px solid $text/55; }
.themed-dialog switch:checked > slider { background-color: $primaryLabel; border-color: transparent; }

.themed-dialog popover > contents {
    background-color: $popover;
    background-image: none;
    border: 1px solid $text/15;
    color: $text;
}
.themed-dialog popover > arrow { background-color: $popover; border: 1px solid $text/15; }
.themed-dialog list, .themed-dialog listview { background: none; color: $text; }
.themed-dialog row:hover { background-color: $text/8; }
.themed-dialog row:selected { background-color: $text/5; color: $text; }
.themed-dialog row:focus:focus-visible { outline: 2px solid $link; outline-offset: -2px; }
.themed-dialog dropdown > button row:hover, .themed-dialog dropdown > button row:selected {
    background-color: transparent;
}

.themed-dialog separator { background-color: $text/15; }
.themed-dialog scrollbar { background-color: transparent; box-shadow: none; color: $text; }
.themed-dialog scrollbar slider { background-color: $text/30; outline-color: transparent; }
.themed-dialog scrollbar slider:hover, .themed-dialog scrollbar slider:active { background-color: $text/55; }
)";

} // namespace corvane
