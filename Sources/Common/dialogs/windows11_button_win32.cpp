#include "dialogs/windows11_button_win32.h"

#include <commctrl.h>
#include <uxtheme.h>

#include "dialogs/theme_helpers_win32.h"
#include "dialogs/ui_metrics.h"

namespace common_dialogs {

namespace {

constexpr UINT_PTR SUBCLASS_ID = 0x5742;  // one subclass of ours per button
constexpr wchar_t copy_glyph[] = L"\xE8C8";
// A parent that reflects notifications sends them back to the control as OCM_BASE + the message.
// Only those a button is sent are answered as the plain message would be; the rest of the range
// belongs to the common controls' own CCM_* messages.
constexpr UINT OCM_BASE = WM_USER + 0x1C00;

bool is_reflected_to_a_button(UINT message) noexcept {
    switch (message) {
        case OCM_BASE + WM_COMMAND: case OCM_BASE + WM_NOTIFY: case OCM_BASE + WM_DRAWITEM:
        case OCM_BASE + WM_CTLCOLORBTN: case OCM_BASE + WM_CTLCOLORSTATIC:
            return true;
        default:
            return false;
    }
}

// Messages after which the stock button paints itself at once, through a DC of its own. They run
// with the window's drawing switched off, then our paint follows.
bool paints_by_itself(UINT message) noexcept {
    switch (message) {
        case BM_SETSTATE: case BM_SETSTYLE: case BM_SETCHECK: case WM_SETFOCUS: case WM_KILLFOCUS:
        case WM_ENABLE: case WM_SETTEXT: case WM_UPDATEUISTATE: case WM_LBUTTONDOWN: case WM_LBUTTONUP:
        case WM_LBUTTONDBLCLK: case WM_KEYDOWN: case WM_KEYUP: case WM_CAPTURECHANGED:
            return true;
        default:
            return false;
    }
}

void draw_copy_sheets(HDC dc, const RECT& client, COLORREF ink, COLORREF paper, uint32_t dpi) {
    const int sheet = ui_metrics::scale(9, dpi);
    const int offset = ui_metrics::scale(3, dpi);
    const int left = (client.left + client.right - sheet - offset) / 2;
    const int top = (client.top + client.bottom - sheet - offset) / 2;
    const unique_hgdiobj pen(CreatePen(PS_SOLID, 1, ink));
    const unique_hgdiobj brush(CreateSolidBrush(paper));
    const HGDIOBJ old_pen = SelectObject(dc, pen.get());
    const HGDIOBJ old_brush = SelectObject(dc, brush.get());
    Rectangle(dc, left + offset, top, left + offset + sheet, top + sheet);
    Rectangle(dc, left, top + offset, left + sheet, top + offset + sheet);
    SelectObject(dc, old_brush);
    SelectObject(dc, old_pen);
}

}  // namespace

windows11_button::~windows11_button() { detach(); }

void windows11_button::attach(HWND window) {
    if (window_ || !window) return;
    if (!SetWindowSubclass(window, &windows11_button::subclass_proc, SUBCLASS_ID, reinterpret_cast<DWORD_PTR>(this))) {
        return;
    }
    window_ = window;
    SetWindowLongPtrW(window, GWL_STYLE, GetWindowLongPtrW(window, GWL_STYLE));
    scheme = read_scheme();
    const UINT window_dpi = GetDpiForWindow(window);
    dpi = window_dpi ? window_dpi : 96;
    own_font_.reset(create_ui_font(window));
    font = static_cast<HFONT>(own_font_.get());
}

void windows11_button::detach() noexcept {
    if (window_ && IsWindow(window_)) RemoveWindowSubclass(window_, &windows11_button::subclass_proc, SUBCLASS_ID);
    window_ = nullptr;
}

LRESULT CALLBACK windows11_button::subclass_proc(HWND window, UINT message, WPARAM w, LPARAM l, UINT_PTR,
                                                 DWORD_PTR data) noexcept {
    auto* self = reinterpret_cast<windows11_button*>(data);
    try {
        return self->process_message(message, w, l);
    } catch (...) {
        // Painting allocates nothing that throws in practice; never unwind through user32.
        return DefSubclassProc(window, message, w, l);
    }
}

LRESULT windows11_button::process_message(UINT message, WPARAM w, LPARAM l) {
    const HWND window = window_;
    switch (message) {
        case WM_PAINT: {
            PAINTSTRUCT ps;
            const HDC dc = BeginPaint(window, &ps);
            if (dc) paint(dc);
            EndPaint(window, &ps);
            return 0;
        }
        case WM_PRINTCLIENT:
            paint(reinterpret_cast<HDC>(w));
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_MOUSEMOVE:
            if (!hover) {
                hover = true;
                InvalidateRect(window, nullptr, FALSE);
                TRACKMOUSEEVENT track{sizeof(track), TME_LEAVE, window, 0};
                TrackMouseEvent(&track);
            }
            break;
        case WM_MOUSELEAVE:
            hover = false;
            InvalidateRect(window, nullptr, FALSE);
            break;
        case WM_SETFONT:
            font = reinterpret_cast<HFONT>(w);
            if (l) InvalidateRect(window, nullptr, FALSE);
            return 0;
        case WM_NCDESTROY: {
            const LRESULT result = DefSubclassProc(window, message, w, l);
            detach();
            return result;
        }
        default:
            break;
    }
    if (is_reflected_to_a_button(message)) return DefWindowProcW(window, message - OCM_BASE, w, l);
    if (paints_by_itself(message) && IsWindowVisible(window)) {
        SendMessageW(window, WM_SETREDRAW, FALSE, 0);
        const LRESULT result = DefSubclassProc(window, message, w, l);
        SendMessageW(window, WM_SETREDRAW, TRUE, 0);
        InvalidateRect(window, nullptr, FALSE);
        return result;
    }
    return DefSubclassProc(window, message, w, l);
}

void windows11_button::paint(HDC dc) {
    RECT client{};
    GetClientRect(window_, &client);
    const LRESULT state = SendMessageW(window_, BM_GETSTATE, 0, 0);
    theme_colours::button_look look;
    look.primary = primary;
    look.flat = flat;
    look.hover = hover;
    look.pushed = (state & BST_PUSHED) != 0;
    look.enabled = IsWindowEnabled(window_) != FALSE;
    const bool focused = (state & BST_FOCUS) != 0;
    const theme_colours::button_paint c = theme_colours::for_button(look, scheme, read_accent_color());

    DrawThemeParentBackground(window_, dc, &client);
    const unique_hgdiobj brush(CreateSolidBrush(c.fill));
    const unique_hgdiobj pen(CreatePen(PS_SOLID, 1, focused ? c.focus : c.border));
    const HGDIOBJ old_brush = SelectObject(dc, brush.get());
    const HGDIOBJ old_pen = SelectObject(dc, pen.get());
    const int corner = ui_metrics::scale(8, dpi);
    RoundRect(dc, client.left, client.top, client.right, client.bottom, corner, corner);

    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, c.text);
    if (glyph.empty()) {
        const int length = GetWindowTextLengthW(window_);
        std::wstring text(static_cast<size_t>(length) + 1, L'\0');
        text.resize(static_cast<size_t>(GetWindowTextW(window_, text.data(), length + 1)));
        const HGDIOBJ old_font = SelectObject(dc, font);
        DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &client, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
        SelectObject(dc, old_font);
    } else {
        if (!glyph_font_tried_) {
            glyph_font_tried_ = true;
            own_glyph_font_.reset(create_glyph_font(window_));
            glyph_font = static_cast<HFONT>(own_glyph_font_.get());
        }
        if (glyph_font || glyph != copy_glyph) {
            const HGDIOBJ old_font = SelectObject(dc, glyph_font ? glyph_font : font);
            DrawTextW(dc, glyph.c_str(), static_cast<int>(glyph.size()), &client, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
            SelectObject(dc, old_font);
        } else {
            // Without the icon font, the copy glyph would be an empty box: draw its two sheets instead.
            draw_copy_sheets(dc, client, c.text, c.fill, dpi);
        }
    }
    if (focused && !focus_cues_hidden(window_)) {
        // The outline alone is too faint on a light dialog for a keyboard user to follow.
        const int inset = ui_metrics::scale(3, dpi);
        RECT cue{client.left + inset, client.top + inset, client.right - inset, client.bottom - inset};
        DrawFocusRect(dc, &cue);
    }
    SelectObject(dc, old_pen);
    SelectObject(dc, old_brush);
}

}  // namespace common_dialogs
