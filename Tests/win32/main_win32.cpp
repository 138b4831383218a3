#include <windows.h>

#include <gtest/gtest.h>

#include "logging/plain_text_logger.h"
#include "win32/test_log_win32.h"

#include <cwchar>

int write_tagged_lines(const std::filesystem::path& file, const std::wstring& tag, unsigned long count);

std::filesystem::path test_log_path() {
    static const auto path = std::filesystem::temp_directory_path() /
                             (L"veldrake-win32-tests-" + std::to_wstring(GetCurrentProcessId()) + L".log");
    return path;
}

// Besides running the tests, this program is the second writer of the log-sharing test:
// "--log-writer PATH TAG COUNT".
int wmain(int argc, wchar_t** argv) {
    if (argc == 5 && std::wcscmp(argv[1], L"--log-writer") == 0) {
        return write_tagged_lines(argv[2], argv[3], std::wcstoul(argv[4], nullptr, 10));
    }
    std::filesystem::remove(test_log_path());
    process_logger().open(test_log_path());
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
