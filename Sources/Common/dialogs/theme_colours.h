#pragma once

#include <cstdint>
#include <optional>

// The one source of the colours of everything the suite draws itself: its menu, its notification
// window, its dialogs and their buttons. Colours are COLORREF values (0x00BBGGRR) unless named ARGB.
namespace theme_colours {

enum class theme { light, dark, contrast };

// The user's own colours, as GetSysColor gives them; only a contrast theme draws in them.
struct system_colours {
    uint32_t window = 0, window_text = 0, menu = 0, menu_text = 0, highlight = 0, highlight_text = 0,
             gray_text = 0, button_face = 0, button_text = 0, window_frame = 0;
};

struct scheme {
    theme kind = theme::light;
    system_colours system;
};

enum class surface { menu, notification, dialog };

struct roles {
    uint32_t background = 0, text = 0;
    uint32_t secondary_text = 0;  // a notification's body under its title
    uint32_t hot_background = 0, hot_text = 0, disabled_text = 0;
    uint32_t border = 0;               // the menu's separator, the notification's frame
    std::optional<uint32_t> accent;    // nothing: no accent fill at all
    uint32_t dot_ring = 0;             // ARGB, the ring around a menu item's status dot
    friend bool operator==(const roles&, const roles&) = default;
};

// `accent` is the user's accent colour, 0 when there is none.
roles for_surface(surface s, const scheme& sch, uint32_t accent) noexcept;

struct button_look {
    bool primary = false;  // the default button, painted in the accent colour
    bool flat = false;     // blends with the dialog's background
    bool hover = false;
    bool pushed = false;
    bool enabled = true;
};

struct button_paint {
    uint32_t fill = 0, border = 0, text = 0, focus = 0;
    friend bool operator==(const button_paint&, const button_paint&) = default;
};

// `accent` is read again at each paint; 0 when it could not be read.
button_paint for_button(const button_look& look, const scheme& sch, uint32_t accent) noexcept;

// Whether icons drawn beside these surfaces want their dark-theme look: in contrast, when the
// user's window background is dark.
bool looks_dark(const scheme& sch) noexcept;

}  // namespace theme_colours
