#include <windows.h>

#include <gtest/gtest.h>

#include "platform/com_ptr_win32.h"
#include "platform/paths_win32.h"
#include "toasts/tray_toast_ipc_win32.h"

#include <cwchar>

using namespace tray_toast_ipc;

// Besides running the tests, this program stands in for other processes:
//   --sleep MS                          a long-lived foreign one, such as the installer's maintenance
//   --send-toast TITLE TEXT ACTION ARG  a sibling asking for a toast through send_tray_toast (which
//                                       starts the tray if needed)
//   --flood COUNT TAG                   COUNT requests through send_toast_request, as fast as they go
int wmain(int argc, wchar_t** argv) {
    if (argc == 3 && std::wcscmp(argv[1], L"--sleep") == 0) {
        Sleep(static_cast<DWORD>(std::wcstoul(argv[2], nullptr, 10)));
        return 0;
    }
    if (argc == 6 && std::wcscmp(argv[1], L"--send-toast") == 0) {
        const com_scope com;
        send_tray_toast((module_folder() / L"Content\\Icons\\veldrake-logo-ai.ico").wstring(), L"Veldrake", argv[2],
                        argv[3], static_cast<toast_click_action>(std::wcstol(argv[4], nullptr, 10)), argv[5], {});
        return 0;
    }
    if (argc == 4 && std::wcscmp(argv[1], L"--flood") == 0) {
        long taken = 0, count = std::wcstol(argv[2], nullptr, 10);
        for (long i = 0; i < count; ++i) {
            taken += send_toast_request({L"", L"", std::wstring(L"Flood ") + argv[3] + L" " + std::to_wstring(i),
                                         L"Many requests at once", toast_click_action::none, L""});
        }
        return taken == count ? 0 : 1;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
