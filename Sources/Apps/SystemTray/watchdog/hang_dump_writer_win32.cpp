#include <windows.h>

#include "watchdog/hang_dump_writer_win32.h"

#include "logging/log.h"
#include "platform/unique_resource_win32.h"
#include "watchdog/hang_dumps.h"

#include <chrono>
#include <system_error>

namespace {

// dbghelp's MiniDumpWriteDump; the last three arguments are unused pointers.
using mini_dump_write_dump = BOOL(WINAPI*)(HANDLE, DWORD, HANDLE, DWORD, const void*, const void*, const void*);

}  // namespace

void prune_hang_dumps(const std::filesystem::path& folder) {
    // A listing that fails part way prunes what it saw: a dump too many is better than no watchdog.
    std::vector<watchdog::folder_entry> entries;
    std::error_code error;
    for (auto it = std::filesystem::directory_iterator(folder, error); !error && it != std::filesystem::directory_iterator();
         it.increment(error)) {
        watchdog::folder_entry entry{it->path(), std::nullopt};
        std::error_code time_error;
        const auto written = it->last_write_time(time_error);
        if (!time_error) entry.written = written;
        entries.push_back(std::move(entry));
    }
    for (const auto& path : watchdog::hang_dumps_to_delete(std::move(entries))) {
        std::error_code ignored;  // a dump that stays only costs disk
        std::filesystem::remove(path, ignored);
    }
}

void write_hang_dump(const std::filesystem::path& folder) {
    // Loaded at run time from system32 only, and left loaded: a hang is no moment to unload a library.
    HMODULE dbghelp = LoadLibraryExW(L"dbghelp.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (!dbghelp) {
        logging::log(log_severity::warning, "[watchdog] dbghelp.dll did not load ({}); no dump written", GetLastError());
        return;
    }
    const auto write =
        reinterpret_cast<mini_dump_write_dump>(reinterpret_cast<void*>(GetProcAddress(dbghelp, "MiniDumpWriteDump")));
    if (!write) {
        logging::log(log_severity::warning, "[watchdog] MiniDumpWriteDump not found; no dump written");
        return;
    }
    prune_hang_dumps(folder);
    const std::wstring path =
        (folder / watchdog::hang_dump_name(to_local_time(std::chrono::system_clock::now()))).wstring();
    unique_file file(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        logging::log(log_severity::warning, L"[watchdog] Could not create {} ({}); no dump written", path,
                     GetLastError());
        return;
    }
    const BOOL written = write(GetCurrentProcess(), GetCurrentProcessId(), file.get(), watchdog::HANG_DUMP_TYPE,
                               nullptr, nullptr, nullptr);
    const DWORD error = GetLastError();
    file.reset();
    if (written) {
        logging::log(log_severity::error, L"[watchdog] Wrote {}", path);
        return;
    }
    DeleteFileW(path.c_str());
    logging::log(log_severity::warning, "[watchdog] MiniDumpWriteDump failed ({}); no dump written", error);
}
