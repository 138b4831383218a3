#include <windows.h>

#include "e2e/toast_sender_win32.h"

#include "platform/com_ptr_win32.h"
#include "platform/paths_win32.h"
#include "toasts/tray_toast_ipc_win32.h"

#include <fmt/xchar.h>

#include <cwchar>

using namespace tray_toast_ipc;

int run_toast_sender(int argc, wchar_t** argv) {
    if (argc == 6 && std::wcscmp(argv[1], L"--send-toast") == 0) {
        const com_scope com;
        const std::wstring icon = (module_folder() / L"Content\\Icons\\veldrake-logo-ai.ico").wstring();
        send_tray_toast(icon, L"Veldrake", argv[2], argv[3], static_cast<toast_click_action>(std::wcstol(argv[4], nullptr, 10)),
                        argv[5], {});
        return 0;
    }
    if (argc == 4 && std::wcscmp(argv[1], L"--flood") == 0) {
        const long count = std::wcstol(argv[2], nullptr, 10);
        long taken = 0;
        for (long i = 0; i < count; ++i) {
            taken += send_toast_request({L"", L"", fmt::format(L"Flood {} {}", argv[3], i), L"Many requests at once",
                                         toast_click_action::none, L""});
        }
        return taken == count ? 0 : 1;
    }
    return -1;
}
