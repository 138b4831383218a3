#include <windows.h>

#include <gtest/gtest.h>

#include "platform/com_ptr_win32.h"
#include "platform/paths_win32.h"
#include "toasts/tray_toast_ipc_win32.h"

#include <cwchar>

// Besides running the tests, this program stands in for other processes:
//   --sleep MS                          a long-lived foreign one, such as the installer's maintenance
//   --send-toast TITLE TEXT             a sibling asking for a toast through send_tray_toast (which
//                                       starts the tray if needed)
int wmain(int argc, wchar_t** argv) {
    if (argc == 3 && std::wcscmp(argv[1], L"--sleep") == 0) {
        Sleep(static_cast<DWORD>(std::wcstoul(argv[2], nullptr, 10)));
        return 0;
    }
    if (argc == 4 && std::wcscmp(argv[1], L"--send-toast") == 0) {
        const com_scope com;
        tray_toast_ipc::send_tray_toast((module_folder() / L"Content\\Icons\\veldrake-logo-ai.ico").wstring(), L"Veldrake",
                                        argv[2], argv[3], tray_toast_ipc::toast_click_action::none, L"", {});
        return 0;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
