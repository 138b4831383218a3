#include <windows.h>

#include <gtest/gtest.h>

#include <cwchar>

// Besides running the tests, this program stands in for a long-lived foreign process
// ("--sleep MS"), such as the installer's maintenance process.
int wmain(int argc, wchar_t** argv) {
    if (argc == 3 && std::wcscmp(argv[1], L"--sleep") == 0) {
        Sleep(static_cast<DWORD>(std::wcstoul(argv[2], nullptr, 10)));
        return 0;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
