// Stands in for every sibling program of the suite in tests (Veldrake.exe, the controller, the
// hotkey handler, the batch helper, powershell.exe): it records how it was started and exits with a
// code that the test chose. What to do it reads from "<its own file name>.control" beside it, UTF-8
// lines of key=value (sibling_doubles_win32.h writes it):
//   record=<file>       where to append (default: "<its own file name>.record" beside it)
//   exit_codes=3 3 0    the n-th recorded run of this file name exits with the n-th code, later
//                       runs with the last one (default 0)
//   stay_ms=<n>         keep running that long before exiting (default 0)
// Each run appends one line: file name, show command, console, working folder, command line,
// separated by tabs.
#include <windows.h>

#include "platform/string_conversion.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct control {
    std::filesystem::path record;
    std::vector<DWORD> exit_codes{0};
    DWORD stay_ms = 0;
};

std::filesystem::path own_path() {
    std::wstring buffer(32768, L'\0');
    buffer.resize(GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size())));
    return buffer;
}

control read_control(const std::filesystem::path& self) {
    control c;
    c.record = self;
    c.record += L".record";
    std::ifstream in(std::filesystem::path(self).concat(L".control"), std::ios::binary);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const auto equals = line.find('=');
        if (equals == std::string::npos) continue;
        const std::string key = line.substr(0, equals), value = line.substr(equals + 1);
        if (key == "record") {
            c.record = to_wide(value);
        } else if (key == "exit_codes") {
            c.exit_codes.clear();
            std::istringstream codes(value);
            for (std::string code; codes >> code;) c.exit_codes.push_back(static_cast<DWORD>(std::stoll(code, nullptr, 0)));
            if (c.exit_codes.empty()) c.exit_codes.push_back(0);
        } else if (key == "stay_ms") {
            c.stay_ms = static_cast<DWORD>(std::stoul(value));
        }
    }
    return c;
}

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

size_t earlier_runs(const std::filesystem::path& record, const std::string& name) {
    std::ifstream in(record, std::ios::binary);
    size_t runs = 0;
    for (std::string line; std::getline(in, line);) {
        if (line.compare(0, name.size() + 1, name + "\t") == 0) ++runs;
    }
    return runs;
}

}  // namespace

int wmain() {
    const auto self = own_path();
    const control c = read_control(self);
    const std::string name = to_utf8(self.filename().wstring());

    std::wstring folder(32768, L'\0');
    folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
    const std::string line = name + "\t" + show_command() + "\t" + console_state() + "\t" + to_utf8(folder) + "\t" +
                             to_utf8(GetCommandLineW()) + "\n";

    // Doubles started together must count their runs one after the other.
    HANDLE lock = CreateMutexW(nullptr, FALSE, L"Local\\veldrake_sibling_double_record");
    if (lock) WaitForSingleObject(lock, 10000);
    const size_t run = earlier_runs(c.record, name);
    {
        std::ofstream out(c.record, std::ios::binary | std::ios::app);
        out << line;
    }
    if (lock) {
        ReleaseMutex(lock);
        CloseHandle(lock);
    }
    if (c.stay_ms) Sleep(c.stay_ms);
    return static_cast<int>(c.exit_codes[std::min(run, c.exit_codes.size() - 1)]);
}
