// Stands in for every sibling program of the suite in tests (Veldrake.exe, the controller, the
// hotkey handler, the batch helper): it records how it was started and exits with a code that the
// test chose. What to do it reads from "<its own file name>.control" beside it, which
// sibling_doubles_win32.h writes: a first line with the file to append to (default:
// "<its own file name>.record" beside it) and a second with the exit code (default 0).
// Each run appends one line: show command, console, working folder, command line, separated by tabs.
#include <windows.h>

#include "platform/string_conversion.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace {

std::string show_command() {
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    GetStartupInfoW(&startup);
    return startup.dwFlags & STARTF_USESHOWWINDOW ? std::to_string(startup.wShowWindow) : "-";
}

// A process detached from every console cannot open the console's output.
std::string console_state() {
    HANDLE output = CreateFileW(L"CONOUT$", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                0, nullptr);
    if (output == INVALID_HANDLE_VALUE) return "none";
    CloseHandle(output);
    return "console";
}

}  // namespace

int wmain() {
    std::wstring self(32768, L'\0');
    self.resize(GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size())));
    std::wstring folder(32768, L'\0');
    folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));

    std::ifstream control(std::filesystem::path(self + L".control"), std::ios::binary);
    std::string record;
    long long exit_code = 0;
    std::getline(control, record);
    control >> exit_code;

    std::ofstream(record.empty() ? std::filesystem::path(self + L".record") : std::filesystem::path(to_wide(record)),
                  std::ios::binary | std::ios::app)
        << show_command() << '\t' << console_state() << '\t' << to_utf8(folder) << '\t' << to_utf8(GetCommandLineW())
        << '\n';
    return static_cast<int>(static_cast<DWORD>(exit_code));
}
