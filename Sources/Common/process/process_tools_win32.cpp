#include <windows.h>

#include <tlhelp32.h>

#include "process/process_tools_win32.h"

#include "platform/unique_resource_win32.h"
#include "process/wildcard.h"

#include <algorithm>
#include <cwctype>
#include <functional>

namespace {

bool same_name(const wchar_t* a, const wchar_t* b) noexcept { return CompareStringOrdinal(a, -1, b, -1, TRUE) == CSTR_EQUAL; }

// Walks the module names of the process until `visit` returns true; false when they cannot be read.
// The snapshot asks to be taken again when it fails with ERROR_BAD_LENGTH.
bool walk_modules(uint32_t process_id, const std::function<bool(const wchar_t*)>& visit) {
    unique_file snapshot;
    for (int attempt = 0; attempt < 3 && !snapshot; ++attempt) {
        snapshot.reset(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, process_id));
        if (!snapshot && GetLastError() != ERROR_BAD_LENGTH) return false;
    }
    if (!snapshot) return false;
    MODULEENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Module32FirstW(snapshot.get(), &entry); more; more = Module32NextW(snapshot.get(), &entry)) {
        if (visit(entry.szModule)) break;
    }
    return true;
}

BOOL CALLBACK close_window_of(HWND window, LPARAM ids) {
    DWORD process_id = 0;
    GetWindowThreadProcessId(window, &process_id);
    const auto& wanted = *reinterpret_cast<const std::vector<uint32_t>*>(ids);
    if (std::find(wanted.begin(), wanted.end(), process_id) == wanted.end() || window == GetShellWindow()) return TRUE;
    wchar_t class_name[64] = {};
    const bool named = GetClassNameW(window, class_name, 64) > 0;
    const bool desktop_part = named && (!wcscmp(class_name, L"Progman") || !wcscmp(class_name, L"WorkerW") ||
                                        !wcscmp(class_name, L"Shell_TrayWnd") || !wcscmp(class_name, L"Shell_SecondaryTrayWnd"));
    // Posted, never sent: a hung program cannot hold up the enumeration.
    if (!desktop_part) PostMessageW(window, WM_CLOSE, 0, 0);
    return TRUE;
}

}  // namespace

std::vector<uint32_t> find_processes_by_name(std::span<const wchar_t* const> names) {
    std::vector<uint32_t> ids;
    const unique_file snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!snapshot) return ids;
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32FirstW(snapshot.get(), &entry); more; more = Process32NextW(snapshot.get(), &entry)) {
        const bool named = std::any_of(names.begin(), names.end(), [&](const wchar_t* n) { return same_name(n, entry.szExeFile); });
        if (named && std::find(ids.begin(), ids.end(), entry.th32ProcessID) == ids.end()) ids.push_back(entry.th32ProcessID);
    }
    return ids;
}

bool process_has_module(uint32_t process_id, std::span<const wchar_t* const> patterns) {
    bool found = false;
    walk_modules(process_id, [&](const wchar_t* module) {
        found = std::any_of(patterns.begin(), patterns.end(), [&](const wchar_t* p) { return wildcard_match(p, module); });
        return found;
    });
    return found;
}

std::vector<std::wstring> list_process_modules(uint32_t process_id) {
    std::vector<std::wstring> modules;
    if (!walk_modules(process_id, [&](const wchar_t* module) { return modules.emplace_back(module), false; })) return {};
    return modules;
}

std::vector<uint32_t> find_processes_with_modules(std::span<const wchar_t* const> names,
                                                  std::span<const wchar_t* const> patterns) {
    std::vector<uint32_t> ids = find_processes_by_name(names);
    std::erase_if(ids, [&](uint32_t id) { return id == GetCurrentProcessId() || !process_has_module(id, patterns); });
    return ids;
}

void end_processes(const std::vector<uint32_t>& process_ids, uint32_t timeout_ms) {
    if (process_ids.empty()) return;
    EnumWindows(close_window_of, reinterpret_cast<LPARAM>(&process_ids));
    std::vector<unique_handle> processes;
    for (const uint32_t id : process_ids) {
        if (HANDLE process = OpenProcess(SYNCHRONIZE | PROCESS_TERMINATE, FALSE, id)) processes.emplace_back(process);
    }
    // One deadline for the whole list: the grace is shared, not given to each.
    const uint64_t deadline = GetTickCount64() + timeout_ms;
    for (const auto& process : processes) {
        const uint64_t now = GetTickCount64();
        const DWORD wait = now < deadline ? static_cast<DWORD>(deadline - now) : 0;
        if (WaitForSingleObject(process.get(), wait) != WAIT_OBJECT_0 && TerminateProcess(process.get(), 1)) {
            WaitForSingleObject(process.get(), 5000);
        }
    }
}

std::wstring process_image_name(uint32_t process_id) {
    const unique_handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, process_id));
    if (!process) return L"";
    wchar_t path[260] = {};
    DWORD size = 260;
    if (!QueryFullProcessImageNameW(process.get(), 0, path, &size)) return L"";
    std::wstring name(path, size);
    name.erase(0, name.find_last_of(L'\\') + 1);
    for (wchar_t& c : name) c = static_cast<wchar_t>(std::towlower(c));
    return name;
}
