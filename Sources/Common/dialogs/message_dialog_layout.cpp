#include "dialogs/message_dialog_layout.h"

#include <algorithm>

namespace message_dialog_layout {

using ui_metrics::scale;

int32_t text_width(uint32_t dpi) noexcept {
    return std::min(scale(max_width, dpi) - 2 * scale(margin, dpi),
                    std::max(scale(min_width, dpi) - 2 * scale(margin, dpi), 0));
}

size size_for(const measured& m) noexcept {
    const uint32_t dpi = m.dpi;
    size s;
    s.text_height = m.text_height;
    if (m.line_height >= 1) {
        s.line_count = (m.text_height - 1 + m.line_height) / m.line_height;
        if (s.line_count > max_static_lines) {
            s.scrolling = true;
            s.text_height = m.line_height * max_static_lines + 2 * m.edge_height;
        }
    }
    s.check_width = m.check_text_width + scale(check_extra, dpi);
    const auto button_width = [&](int32_t text) {
        return std::max(scale(button_min_width, dpi), scale(button_padding, dpi) + text);
    };
    s.ok_width = button_width(m.ok_text_width);
    s.cancel_width = button_width(m.cancel_text_width);
    s.no_width = button_width(m.no_text_width);

    int32_t buttons_width = s.ok_width;
    if (m.show_cancel) buttons_width += s.cancel_width + scale(gap, dpi);
    if (m.show_no) buttons_width += s.no_width + scale(gap, dpi);

    // The check box's width counts even when the box is hidden.
    s.client_width = std::max({buttons_width, s.check_width, text_width(dpi)}) + 2 * scale(margin, dpi);
    s.client_height = s.text_height + 2 * (scale(gap, dpi) + scale(margin, dpi)) + scale(button_height, dpi);
    if (m.show_check) s.client_height += scale(check_row_height, dpi);
    return s;
}

children place(const measured& m, const size& s, int32_t client_width, int32_t client_height) noexcept {
    const uint32_t dpi = m.dpi;
    const int32_t margin_px = scale(margin, dpi);
    const int32_t gap_px = scale(gap, dpi);
    const int32_t button_px = scale(button_height, dpi);
    children c;
    c.text = {margin_px, margin_px, client_width - margin_px, margin_px + s.text_height};
    if (m.show_check) {
        c.check = {margin_px, margin_px + s.text_height + gap_px, margin_px + s.check_width,
                   margin_px + s.text_height + scale(check_row_height, dpi) + gap_px};
    }
    const int32_t top = client_height - button_px - margin_px;
    const int32_t bottom = client_height - margin_px;
    if (m.show_copy) c.copy = {margin_px, top, margin_px + button_px, bottom};

    // From the right edge leftwards, so that the row reads OK, No, Cancel.
    int32_t right = client_width - margin_px;
    if (m.show_cancel) {
        c.cancel = {right - s.cancel_width, top, right, bottom};
        right -= s.cancel_width + gap_px;
    }
    if (m.show_no) {
        c.no = {right - s.no_width, top, right, bottom};
        right -= s.no_width + gap_px;
    }
    c.ok = {right - s.ok_width, top, right, bottom};
    return c;
}

std::wstring to_crlf(std::wstring_view text) {
    std::wstring out;
    out.reserve(text.size() + text.size() / 8);
    for (size_t i = 0; i < text.size(); ++i) {
        const wchar_t ch = text[i];
        if (ch == L'\r') {
            out += L"\r\n";
            if (i + 1 < text.size() && text[i + 1] == L'\n') ++i;
        } else if (ch == L'\n') {
            out += L"\r\n";
        } else {
            out += ch;
        }
    }
    return out;
}

}  // namespace message_dialog_layout
