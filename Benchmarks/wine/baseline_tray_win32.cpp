// The least a tray can be: a hidden window, one notification icon, the tray's three start timers and
// an answer to WM_COPYDATA. scripts/bench measures the real tray as ratios against this program.
#include <windows.h>

#include <shellapi.h>

#include "tray_timings.h"

namespace {

constexpr wchar_t CLASS_NAME[] = L"VeldrakeBenchBaselineTray";
constexpr UINT ICON_ID = 1001;
constexpr UINT WM_ICON = WM_APP + 1;
enum : UINT_PTR { TIMER_SETTINGS = 1, TIMER_INDEX, TIMER_VERSION };

NOTIFYICONDATAW icon_data(HWND window) {
    NOTIFYICONDATAW data{};
    data.cbSize = sizeof(data);
    data.hWnd = window;
    data.uID = ICON_ID;
    return data;
}

LRESULT CALLBACK window_procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
    switch (message) {
        case WM_CREATE: {
            NOTIFYICONDATAW data = icon_data(window);
            data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
            data.uCallbackMessage = WM_ICON;
            data.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
            lstrcpyW(data.szTip, L"Baseline");
            Shell_NotifyIconW(NIM_ADD, &data);
            SetTimer(window, TIMER_SETTINGS, TRAY_TIMINGS.settings_poll_ms, nullptr);
            SetTimer(window, TIMER_INDEX, TRAY_TIMINGS.index_first_poll_ms, nullptr);
            SetTimer(window, TIMER_VERSION, TRAY_TIMINGS.version_first_check_ms, nullptr);
            return 0;
        }
        case WM_TIMER:
            // The tray's first index and version timers become its periodic ones.
            if (w == TIMER_INDEX) SetTimer(window, TIMER_INDEX, TRAY_TIMINGS.index_poll_ms, nullptr);
            if (w == TIMER_VERSION) SetTimer(window, TIMER_VERSION, TRAY_TIMINGS.version_check_ms, nullptr);
            return 0;
        case WM_COPYDATA: return TRUE;
        case WM_DESTROY: {
            NOTIFYICONDATAW data = icon_data(window);
            Shell_NotifyIconW(NIM_DELETE, &data);
            PostQuitMessage(0);
            return 0;
        }
        default: return DefWindowProcW(window, message, w, l);
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int) {
    WNDCLASSEXW window_class{};
    window_class.cbSize = sizeof(window_class);
    window_class.lpfnWndProc = window_procedure;
    window_class.hInstance = instance;
    window_class.lpszClassName = CLASS_NAME;
    if (!RegisterClassExW(&window_class)) return 1;
    if (!CreateWindowExW(0, CLASS_NAME, L"Baseline", WS_OVERLAPPEDWINDOW, 0, 0, 0, 0, nullptr, nullptr, instance,
                         nullptr)) {
        return 1;
    }
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    return 0;
}
