#pragma once

#include "dialogs/ui_metrics.h"

#include <cstdint>
#include <string>
#include <string_view>

// The arithmetic of the message dialog's layout. The shell measures texts with the dialog's font and
// feeds the numbers in; everything else is decided here.
namespace message_dialog_layout {

// Lengths at 96 dpi.
constexpr int32_t margin = 35;
constexpr int32_t gap = 15;
constexpr int32_t button_min_width = 120;
constexpr int32_t button_padding = 32;  // in total, both sides
constexpr int32_t button_height = 30;
constexpr int32_t check_row_height = 40;
constexpr int32_t min_width = 550;
constexpr int32_t max_width = 750;
constexpr int32_t check_extra = 20;
// More lines than this scroll in a read-only edit of this many lines.
constexpr int32_t max_static_lines = 7;

// The width to which the message text is wrapped.
int32_t text_width(uint32_t dpi) noexcept;

struct measured {
    uint32_t dpi = 96;
    int32_t text_height = 0;  // the wrapped text, at text_width
    int32_t line_height = 0;  // tmHeight + tmExternalLeading
    int32_t edge_height = 2;  // SM_CYEDGE
    int32_t check_text_width = 0;
    int32_t ok_text_width = 0, cancel_text_width = 0, no_text_width = 0;
    bool show_cancel = false, show_no = false, show_copy = true, show_check = false;
};

struct size {
    int32_t client_width = 0, client_height = 0;
    int32_t text_height = 0;  // of the text's control: seven lines and the edit's border when scrolling
    int32_t line_count = 0;   // 0 when the font has no line height
    bool scrolling = false;
    int32_t check_width = 0;
    int32_t ok_width = 0, cancel_width = 0, no_width = 0;
};

size size_for(const measured& m) noexcept;

struct children {
    ui_metrics::rect text, check, copy, ok, no, cancel;  // empty when not shown
};

// Places the controls in the client area that the window really got.
children place(const measured& m, const size& s, int32_t client_width, int32_t client_height) noexcept;

// Every lone CR, lone LF and CRLF becomes CRLF, as a multi-line edit wants it.
std::wstring to_crlf(std::wstring_view text);

}  // namespace message_dialog_layout
