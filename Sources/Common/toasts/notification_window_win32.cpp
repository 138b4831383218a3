#include "toasts/notification_window_win32.h"

#include "dialogs/theme_helpers_win32.h"
#include "platform/com_object_win32.h"
#include "platform/unique_resource_win32.h"
#include "platform/window_impl_win32.h"
#include "toasts/toast_rules.h"

#include <exception>
#include <string>

namespace toast_utilities {

namespace {

constexpr UINT_PTR TIMER_POLL = 1;

class notification_window : public window_impl<notification_window> {
public:
    static window_class_info class_info() noexcept {
        return {NOTIFICATION_WINDOW_CLASS, CS_DROPSHADOW, IDC_HAND, 0};
    }

    std::wstring title, text;
    HICON icon = nullptr;  // shared, not owned
    IQueryContinue* query = nullptr;
    IUserNotificationCallback* sink = nullptr;
    bool contrast = false;
    bool done = false;
    HRESULT result = HRESULT_FROM_WIN32(ERROR_CANCELLED);
    std::exception_ptr failure;  // thrown by the click's sink, for the show's caller

    void open(DWORD poll_ms) {
        // Named by its title, so that a screen reader and other programs can tell one toast from another.
        if (!create(title.c_str(), WS_POPUP, WS_EX_TOPMOST | WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE)) {
            done = true;
            result = HRESULT_FROM_WIN32(GetLastError());
            return;
        }
        scheme_ = common_dialogs::read_scheme(contrast);
        common_dialogs::apply_frame_attributes(hwnd(), common_dialogs::dark_frame(scheme_));
        font_.reset(common_dialogs::create_ui_font(hwnd()));
        LOGFONTW bold{};
        GetObjectW(font_.get(), sizeof(bold), &bold);
        bold.lfWeight = FW_SEMIBOLD;
        bold_font_.reset(CreateFontIndirectW(&bold));
        place();
        ShowWindow(hwnd(), SW_SHOWNOACTIVATE);
        SetTimer(hwnd(), TIMER_POLL, poll_ms, nullptr);
    }

    LRESULT process_message(UINT message, WPARAM w, LPARAM l, bool& handled) {
        switch (message) {
            case WM_PAINT: {
                PAINTSTRUCT ps;
                if (const HDC dc = BeginPaint(hwnd(), &ps)) paint(dc);
                EndPaint(hwnd(), &ps);
                return 0;
            }
            case WM_PRINTCLIENT: paint(reinterpret_cast<HDC>(w)); return 0;
            case WM_SETFOCUS:
            case WM_KILLFOCUS:
            case WM_UPDATEUISTATE:
                InvalidateRect(hwnd(), nullptr, FALSE);
                handled = message != WM_UPDATEUISTATE;
                return 0;
            // Once given the focus, Enter or Space opens it as a click does, Esc dismisses it.
            case WM_KEYDOWN:
                if (w == VK_RETURN || w == VK_SPACE) {
                    RECT r{};
                    GetClientRect(hwnd(), &r);
                    click({r.right / 2, r.bottom / 2});
                } else if (w == VK_ESCAPE) {
                    finish(HRESULT_FROM_WIN32(ERROR_CANCELLED));
                }
                return 0;
            case WM_TIMER:
                if (w == TIMER_POLL && query && query->QueryContinue() != S_OK) finish(HRESULT_FROM_WIN32(ERROR_CANCELLED));
                return 0;
            case WM_LBUTTONUP: click({GET_X_LPARAM(l), GET_Y_LPARAM(l)}); return 0;
            // A close from anywhere (Alt+F4, a polite shutdown of the process) is a dismissal.
            case WM_RBUTTONUP:
            case WM_CLOSE: finish(HRESULT_FROM_WIN32(ERROR_CANCELLED)); return 0;
            case WM_DESTROY:
                // However the window goes, the show's loop ends with it.
                done = true;
                return 0;
            case WM_MOUSEACTIVATE: return MA_NOACTIVATE;
            default: handled = false; return 0;
        }
    }

private:
    static int GET_X_LPARAM(LPARAM l) { return static_cast<short>(LOWORD(l)); }
    static int GET_Y_LPARAM(LPARAM l) { return static_cast<short>(HIWORD(l)); }

    void click(POINT at) {
        // Hidden first: the click may open a dialog and take long.
        ShowWindow(hwnd(), SW_HIDE);
        if (sink) {
            ClientToScreen(hwnd(), &at);
            // Never through user32: the show's caller rethrows it.
            try {
                sink->OnBalloonUserClick(&at);
            } catch (...) {
                failure = std::current_exception();
            }
        }
        finish(S_OK);
    }

    void finish(HRESULT hr) {
        if (done) return;
        done = true;
        result = hr;
        DestroyWindow(hwnd());
    }

    int scaled(int length) const { return MulDiv(length, static_cast<int>(dpi_), 96); }

    // Lays out icon, title and text, and places the window at the bottom right of the work area.
    void place() {
        dpi_ = GetDpiForWindow(hwnd());
        if (dpi_ == 0) dpi_ = 96;
        const int width = scaled(364);
        const int text_left = scaled(16) + (icon ? scaled(32 + 12) : 0);
        const int text_width = width - text_left - scaled(16);
        const HDC dc = GetDC(hwnd());
        RECT title_rect{0, 0, text_width, 0}, text_rect{0, 0, text_width, 0};
        SelectObject(dc, bold_font_.get());
        DrawTextW(dc, title.c_str(), -1, &title_rect, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
        SelectObject(dc, font_.get());
        DrawTextW(dc, text.c_str(), -1, &text_rect, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
        ReleaseDC(hwnd(), dc);
        title_height_ = title.empty() ? 0 : title_rect.bottom;
        text_height_ = text_rect.bottom;
        const int content = title_height_ + (title.empty() ? 0 : scaled(4)) + text_height_;
        const int height = scaled(16) * 2 + std::max(content, icon ? scaled(32) : 0);

        RECT work{};
        SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
        SetWindowPos(hwnd(), HWND_TOPMOST, work.right - width - scaled(12), work.bottom - height - scaled(12), width,
                     height, SWP_NOACTIVATE);
    }

    void paint(HDC dc) {
        const theme_colours::roles colours = theme_colours::for_surface(theme_colours::surface::notification, scheme_,
                                                                         common_dialogs::read_accent_color());
        RECT client;
        GetClientRect(hwnd(), &client);
        const unique_hgdiobj background(CreateSolidBrush(colours.background));
        FillRect(dc, &client, static_cast<HBRUSH>(background.get()));
        const unique_hgdiobj border(CreateSolidBrush(colours.border));
        FrameRect(dc, &client, static_cast<HBRUSH>(border.get()));
        if (colours.accent) {
            const unique_hgdiobj accent_brush(CreateSolidBrush(*colours.accent));
            RECT bar{client.left, client.top, client.left + scaled(3), client.bottom};
            FillRect(dc, &bar, static_cast<HBRUSH>(accent_brush.get()));
        }

        int left = scaled(16);
        if (icon) {
            DrawIconEx(dc, left, scaled(16), icon, scaled(32), scaled(32), 0, nullptr, DI_NORMAL);
            left += scaled(32 + 12);
        }
        SetBkMode(dc, TRANSPARENT);
        RECT title_rect{left, scaled(16), client.right - scaled(16), scaled(16) + title_height_};
        // The DC may be a caller's (WM_PRINTCLIENT): its font goes back.
        const HGDIOBJ old_font = SelectObject(dc, bold_font_.get());
        SetTextColor(dc, colours.text);
        DrawTextW(dc, title.c_str(), -1, &title_rect, DT_WORDBREAK | DT_NOPREFIX);
        const int text_top = title_rect.bottom + (title.empty() ? 0 : scaled(4));
        RECT text_rect{left, text_top, client.right - scaled(16), text_top + text_height_};
        SelectObject(dc, font_.get());
        SetTextColor(dc, colours.secondary_text);
        DrawTextW(dc, text.c_str(), -1, &text_rect, DT_WORDBREAK | DT_NOPREFIX);
        if (GetFocus() == hwnd() && !common_dialogs::focus_cues_hidden(hwnd())) {
            RECT cue{client.left + scaled(4), client.top + scaled(4), client.right - scaled(4), client.bottom - scaled(4)};
            DrawFocusRect(dc, &cue);
        }
        SelectObject(dc, old_font);
    }

    theme_colours::scheme scheme_;
    UINT dpi_ = 96;
    int title_height_ = 0, text_height_ = 0;
    unique_hgdiobj font_, bold_font_;
};

class local_notification : public com_object<IUserNotification2> {
public:
    explicit local_notification(bool contrast) : contrast_(contrast) {}

    HRESULT STDMETHODCALLTYPE SetBalloonInfo(LPCWSTR title, LPCWSTR text, DWORD flags) override {
        title_ = title ? title : L"";
        text_ = text ? text : L"";
        flags_ = flags;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetBalloonRetry(DWORD, DWORD, UINT) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetIconInfo(HICON icon, LPCWSTR tooltip) override {
        icon_ = icon;
        tooltip_ = tooltip ? tooltip : L"";
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE PlaySound(LPCWSTR) override { return S_OK; }

    // Blocks like the shell's object: until a click, the continue-query says stop, or the window goes.
    HRESULT STDMETHODCALLTYPE Show(IQueryContinue* query, DWORD poll_ms, IUserNotificationCallback* sink) override {
        notification_window window;
        window.title = title_;
        window.text = text_;
        window.icon = icon_;
        window.query = query;
        window.sink = sink;
        window.contrast = contrast_;
        window.open(poll_ms);
        MSG message;
        while (!window.done) {
            const BOOL got = GetMessageW(&message, nullptr, 0, 0);
            if (got <= 0) {
                // WM_QUIT belongs to the thread's own loop: hand it back and end the toast.
                if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
                if (window.hwnd()) DestroyWindow(window.hwnd());
                break;
            }
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        if (window.failure) std::rethrow_exception(window.failure);
        return window.result;
    }

private:
    std::wstring title_, text_, tooltip_;
    DWORD flags_ = 0;
    HICON icon_ = nullptr;
    bool contrast_ = false;
};

}  // namespace

com_ptr<IUserNotification2> create_local_notification(bool contrast) {
    com_ptr<IUserNotification2> notification;
    *notification.put() = new local_notification(contrast);
    return notification;
}

}  // namespace toast_utilities
