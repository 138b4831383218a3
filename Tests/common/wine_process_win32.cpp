#include "common/wine_process_win32.h"

#include "platform/paths_win32.h"

#include <winternl.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace test_support {

std::filesystem::path this_program() { return module_file_name(); }

std::filesystem::path fresh_folder(const std::wstring& name) {
    const auto folder = std::filesystem::temp_directory_path() /
                        (L"veldrake-" + name + L"-" + std::to_wstring(GetCurrentProcessId()));
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    return folder;
}

std::vector<std::string> read_lines(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

std::vector<std::string> log_mark::messages() const {
    const auto lines = read_lines(file);
    std::vector<std::string> messages;
    for (size_t i = first; i < lines.size(); ++i) {
        // "[date time] [P:.. T:..] [LEVEL] message": keep "[LEVEL] message".
        const auto level = lines[i].find("] [", lines[i].find("[P:"));
        messages.push_back(level == std::string::npos ? lines[i] : lines[i].substr(level + 2));
    }
    return messages;
}

size_t log_mark::count(const std::string& message) const {
    const auto lines = messages();
    return static_cast<size_t>(std::count(lines.begin(), lines.end(), message));
}

std::wstring window_text(HWND window) {
    wchar_t text[2048] = {};
    SendMessageW(window, WM_GETTEXT, 2048, reinterpret_cast<LPARAM>(text));
    return text;
}

std::wstring dialog_body(HWND dialog) {
    HWND body = FindWindowExW(dialog, nullptr, L"Edit", nullptr);
    if (!body) body = FindWindowExW(dialog, nullptr, L"Static", nullptr);
    return body ? window_text(body) : L"";
}

bool answers(HWND window, UINT timeout_ms) {
    DWORD_PTR ignored = 0;
    return SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, timeout_ms, &ignored) != 0;
}

std::vector<HWND> windows_of(DWORD process, const wchar_t* window_class, const wchar_t* title, bool hidden_too) {
    std::vector<HWND> found;
    for (HWND w = nullptr; (w = FindWindowExW(nullptr, w, window_class, title)) != nullptr;) {
        DWORD owner = 0;
        GetWindowThreadProcessId(w, &owner);
        if (owner == process && (hidden_too || IsWindowVisible(w))) found.push_back(w);
    }
    return found;
}

HWND wait_for_window(DWORD process, const wchar_t* window_class, const wchar_t* title) {
    std::vector<HWND> found;
    poll_until([&] { return !(found = windows_of(process, window_class, title)).empty(); });
    return found.empty() ? nullptr : found.front();
}

unsigned long child_process::handles_on_it() const {
    PUBLIC_OBJECT_BASIC_INFORMATION info{};
    return NtQueryObject(process_.get(), ObjectBasicInformation, &info, sizeof(info), nullptr) == 0 ? info.HandleCount : 0;
}

child_process child_process::start(const std::filesystem::path& program, const std::wstring& arguments) {
    std::wstring command_line = L"\"" + program.wstring() + L"\"";
    if (!arguments.empty()) command_line += L" " + arguments;
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION info{};
    if (!CreateProcessW(program.c_str(), command_line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        program.parent_path().c_str(), &startup, &info)) {
        throw std::runtime_error("CreateProcessW failed with " + std::to_string(GetLastError()));
    }
    CloseHandle(info.hThread);
    child_process child;
    child.process_.reset(info.hProcess);
    child.id_ = info.dwProcessId;
    return child;
}

uint64_t child_process::creation_time() const {
    FILETIME created{}, exited{}, kernel{}, user{};
    GetProcessTimes(process_.get(), &created, &exited, &kernel, &user);
    return (static_cast<uint64_t>(created.dwHighDateTime) << 32) | created.dwLowDateTime;
}

std::optional<DWORD> child_process::wait_exit(std::chrono::milliseconds timeout) const {
    if (WaitForSingleObject(process_.get(), static_cast<DWORD>(timeout.count())) != WAIT_OBJECT_0) return std::nullopt;
    DWORD code = 0;
    GetExitCodeProcess(process_.get(), &code);
    return code;
}

void child_process::terminate(DWORD exit_code) noexcept {
    if (process_ && running()) {
        TerminateProcess(process_.get(), exit_code);
        WaitForSingleObject(process_.get(), 5000);
    }
}

}  // namespace test_support
