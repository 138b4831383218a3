#include <windows.h>

#include <gtest/gtest.h>

#include "e2e/toast_sender_win32.h"

#include <cwchar>

// Besides running the tests, this program stands in for a long-lived foreign process
// ("--sleep MS"), such as the installer's maintenance process, and for a sibling that sends toasts.
int wmain(int argc, wchar_t** argv) {
    if (argc == 3 && std::wcscmp(argv[1], L"--sleep") == 0) {
        Sleep(static_cast<DWORD>(std::wcstoul(argv[2], nullptr, 10)));
        return 0;
    }
    if (const int sent = run_toast_sender(argc, argv); sent >= 0) return sent;
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
