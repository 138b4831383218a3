// Stands in for every sibling program of the suite in tests (Veldrake.exe, the controller, the
// hotkey handler, the batch helper): it records how it was started and exits with a code that the
// test chose. What to do it reads from "<its own file name>.control" beside it, which
// sibling_doubles_win32.h writes: a first line with the file to append to (default:
// "<its own file name>.record" beside it), a second with the exit codes (default 0; the n-th run
// takes the n-th, the last one repeats), and a third with how it lives after recording, for the
// suite's residents: at once gone (empty), "sleep" (no window, until ended), "window CLASS" (a
// top-level window of CLASS, gone on WM_CLOSE), or "hang CLASS" (a window whose WM_CLOSE never returns).
// Each run appends one line: show command, console, working folder, command line, separated by tabs.
#include <windows.h>

#include "platform/paths_win32.h"
#include "platform/string_conversion.h"

#include <filesystem>
#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
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

bool hang_on_close = false;

LRESULT CALLBACK resident_window(HWND window, UINT message, WPARAM w, LPARAM l) {
    if (message == WM_CLOSE && hang_on_close) Sleep(INFINITE);
    if (message == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcW(window, message, w, l);
}

// Lives as the control's third line says; returns when it is to exit.
void live(const std::string& mode) {
    if (mode.empty()) return;
    if (mode == "sleep") Sleep(INFINITE);
    const std::wstring class_name = to_wide(mode.substr(mode.find(' ') + 1));
    hang_on_close = mode.starts_with("hang ");
    WNDCLASSW window_class{};
    window_class.lpfnWndProc = resident_window;
    window_class.lpszClassName = class_name.c_str();
    RegisterClassW(&window_class);
    CreateWindowExW(0, class_name.c_str(), L"resident", WS_OVERLAPPEDWINDOW, 0, 0, 200, 100, nullptr, nullptr,
                    nullptr, nullptr);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
}

}  // namespace

int wmain() {
    const std::wstring self = module_file_name().wstring();
    const std::wstring folder = std::filesystem::current_path().wstring();

    std::ifstream control(std::filesystem::path(self + L".control"), std::ios::binary);
    std::string record, codes, mode;
    std::getline(control, record);
    std::getline(control, codes);
    std::getline(control, mode);
    const std::filesystem::path record_file =
        record.empty() ? std::filesystem::path(self + L".record") : std::filesystem::path(to_wide(record));

    std::ifstream earlier(record_file, std::ios::binary);
    const auto runs_before = std::count(std::istreambuf_iterator<char>(earlier), {}, '\n');
    std::istringstream code_list(codes);
    long long exit_code = 0;
    for (long long i = 0, next = 0; i <= runs_before && code_list >> next; ++i) exit_code = next;
    std::ofstream(record_file, std::ios::binary | std::ios::app)
        << show_command() << '\t' << console_state() << '\t' << to_utf8(folder) << '\t' << to_utf8(GetCommandLineW())
        << '\n';
    live(mode);
    return static_cast<int>(static_cast<DWORD>(exit_code));
}
