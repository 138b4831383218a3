#include <windows.h>

#include <commdlg.h>

#include <gtest/gtest.h>

#include "platform/com_ptr_win32.h"
#include "platform/paths_win32.h"
#include "toasts/tray_toast_ipc_win32.h"

#include <cwchar>

// Besides running the tests, this program stands in for other processes:
//   --send-toast TITLE TEXT             a sibling asking for a toast through send_tray_toast (which
//                                       starts the tray if needed)
//   --file-dialog                       a program whose Open dialog the Corvane hook serves, with the
//                                       hook's window in it as if the controller had put it there
int wmain(int argc, wchar_t** argv) {
    if (argc == 4 && std::wcscmp(argv[1], L"--send-toast") == 0) {
        const com_scope com;
        tray_toast_ipc::send_tray_toast((module_folder() / L"Content\\Icons\\veldrake-logo-ai.ico").wstring(), L"Veldrake",
                                        argv[2], argv[3], tray_toast_ipc::toast_click_action::none, L"", {});
        return 0;
    }
    if (argc == 2 && std::wcscmp(argv[1], L"--file-dialog") == 0) {
        WNDCLASSW hook_class{};
        hook_class.lpfnWndProc = DefWindowProcW;
        hook_class.lpszClassName = L"VdrkCmrReplacementMessageWindow";
        RegisterClassW(&hook_class);
        CreateWindowExW(0, hook_class.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        wchar_t file[MAX_PATH] = {};
        OPENFILENAMEW open{};
        open.lStructSize = sizeof(open);
        open.lpstrFile = file;
        open.nMaxFile = MAX_PATH;
        open.Flags = OFN_EXPLORER;
        return GetOpenFileNameW(&open) ? 0 : 2;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
