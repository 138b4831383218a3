#pragma once

#include <cstdint>

// The colours of the suite's owner-painted button, from its role and state. COLORREF values.
namespace button_colours {

struct look {
    bool primary = false;  // painted in the accent colour
    bool flat = false;     // blends with the dialog's background
    bool dark = false;
    bool hover = false;
    bool pushed = false;
    bool enabled = true;
    uint32_t accent = 0;  // read again at each paint; 0 when it could not be read
};

struct colours {
    uint32_t fill = 0, border = 0, text = 0;
    friend bool operator==(const colours&, const colours&) = default;
};

colours for_look(const look& l) noexcept;

}  // namespace button_colours
