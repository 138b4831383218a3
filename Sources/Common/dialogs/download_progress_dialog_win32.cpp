#include "dialogs/download_progress_dialog_win32.h"

#include <commctrl.h>

#include "dialogs/download_progress.h"
#include "dialogs/theme_helpers_win32.h"

namespace common_dialogs {

namespace {

constexpr DWORD PROGRESS_STYLE = WS_CHILD | WS_VISIBLE | PBS_SMOOTH;
constexpr DWORD CANCEL_STYLE = WS_CHILD | WS_VISIBLE | WS_TABSTOP;

}  // namespace

window_class_info download_progress_dialog::class_info() noexcept {
    return {L"KTN_SimpleProgressDialogWnd", CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS, IDC_ARROW, COLOR_WINDOW + 1};
}

HWND download_progress_dialog::open(const std::wstring& caption) {
    // A caption and nothing else: no system menu, so the window cannot be closed but by its owner.
    return create(caption.c_str(), WS_VISIBLE | WS_CAPTION);
}

HRESULT download_progress_dialog::QueryInterface(REFIID iid, void** object) {
    if (!object) return E_POINTER;
    if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IBindStatusCallback)) {
        *object = static_cast<IBindStatusCallback*>(this);
        return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
}

HRESULT download_progress_dialog::OnProgress(ULONG progress, ULONG maximum, ULONG, LPCWSTR) {
    if (cancelled.load()) return E_ABORT;
    // The download thread touches nothing of the window but by posting.
    if (const auto percent = download_progress::next_percent(last_percent, progress, maximum)) {
        PostMessageW(hwnd(), WM_DOWNLOAD_PERCENT, static_cast<WPARAM>(*percent), 0);
    }
    return cancelled.load() ? E_ABORT : S_OK;
}

LRESULT download_progress_dialog::process_message(UINT message, WPARAM w, LPARAM, bool& handled) {
    switch (message) {
        case WM_CREATE:
            return on_create();
        case WM_DOWNLOAD_PERCENT:
            SendMessageW(progress_window, PBM_SETPOS, w, 0);
            return 0;
        case WM_DOWNLOAD_DONE:
            done = true;
            return 0;
        case WM_COMMAND:
            if (LOWORD(w) == ID_DOWNLOAD_CANCEL) {
                cancel();
                return 0;
            }
            break;
        case WM_CLOSE:
            // Alt+F4 or a polite shutdown: the download is still posting here, so the window stays
            // until it has stopped, as after Cancel.
            cancel();
            return 0;
        case WM_ERASEBKGND: {
            RECT client{};
            GetClientRect(hwnd(), &client);
            FillRect(reinterpret_cast<HDC>(w), &client, static_cast<HBRUSH>(background_brush.get()));
            return 1;
        }
        case WM_DESTROY:
            // Gone before the download ended: it stops at its next report.
            cancelled.store(true);
            background_brush.reset();
            return 0;
        default:
            break;
    }
    handled = false;
    return 0;
}

void download_progress_dialog::cancel() {
    cancelled.store(true);
    // A second click is impossible.
    EnableWindow(cancel_button.window(), FALSE);
}

LRESULT download_progress_dialog::on_create() {
    const HWND window = hwnd();
    scheme = read_scheme();
    const bool dark = dark_frame(scheme);
    apply_frame_attributes(window, dark);
    background_brush.reset(CreateSolidBrush(theme_colours::for_surface(theme_colours::surface::dialog, scheme, 0).background));
    font_.reset(create_ui_font(window));

    int dpi_x = 96, dpi_y = 96;
    if (const HDC dc = GetDC(window)) {
        dpi_x = GetDeviceCaps(dc, LOGPIXELSX);
        dpi_y = GetDeviceCaps(dc, LOGPIXELSY);
        ReleaseDC(window, dc);
    }
    const auto sx = [&](int length) { return download_progress::scale_truncated(length, dpi_x); };
    const auto sy = [&](int length) { return download_progress::scale_truncated(length, dpi_y); };
    SetWindowPos(window, nullptr, 0, 0, sx(400), sy(150), SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);

    RECT client{};
    GetClientRect(window, &client);
    const int left = sx(20);
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    const INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    progress_window = CreateWindowExW(0, PROGRESS_CLASSW, L"", PROGRESS_STYLE, left, sy(20), client.right - 2 * left,
                                      sy(25), window, nullptr, instance, nullptr);
    SendMessageW(progress_window, PBM_SETRANGE, 0, MAKELPARAM(0, 100));
    apply_dark_theme(progress_window, dark);

    const int right = client.right - left;
    const HWND cancel = CreateWindowExW(0, L"BUTTON", L"Cancel", CANCEL_STYLE, right - sx(90), sy(70), sx(90), sy(30),
                                        window, reinterpret_cast<HMENU>(static_cast<INT_PTR>(ID_DOWNLOAD_CANCEL)),
                                        instance, nullptr);
    cancel_button.attach(cancel);
    // Esc and Space reach the button through the owner's dialog-message loop.
    SetFocus(cancel);
    apply_dark_theme(cancel, dark);
    SendMessageW(cancel, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), TRUE);

    apply_dark_theme(window, dark);
    RECT own{};
    GetWindowRect(window, &own);
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    const RECT& area = monitor.rcWork;
    SetWindowPos(window, nullptr, area.left + ((area.right - area.left) - (own.right - own.left)) / 2,
                 area.top + ((area.bottom - area.top) - (own.bottom - own.top)) / 2, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    return 0;
}

}  // namespace common_dialogs
