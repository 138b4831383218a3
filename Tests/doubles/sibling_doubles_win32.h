#pragma once

// Drives the sibling-program double from a test: where it records, how it exits, and what it saw.
#include <windows.h>

#include "platform/string_conversion.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace sibling_doubles {

// One start of a double, as it saw it.
struct run_record {
    std::wstring program;       // its file name
    std::wstring show;          // STARTUPINFO's show command, or "-" when none was set
    std::wstring console;       // "console" or "none"
    std::wstring folder;        // its working folder
    std::wstring command_line;  // GetCommandLineW, whole
};

inline std::filesystem::path test_bin() {
    std::wstring buffer(32768, L'\0');
    buffer.resize(GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size())));
    return std::filesystem::path(buffer).parent_path();
}

// The double as built; the suite's names beside it are copies of it.
inline std::filesystem::path built_double() { return test_bin() / L"sibling_double.exe"; }

inline std::filesystem::path control_file(const std::filesystem::path& program) {
    return std::filesystem::path(program).concat(L".control");
}

// From now on, `program` appends to `record` and its n-th run exits with exit_codes[n] (the last
// code for every later run).
inline void control(const std::filesystem::path& program, const std::filesystem::path& record,
                    const std::vector<long long>& exit_codes = {0}, unsigned stay_ms = 0) {
    std::ofstream out(control_file(program), std::ios::binary | std::ios::trunc);
    out << "record=" << to_utf8(record.wstring()) << "\nexit_codes=";
    for (const auto code : exit_codes) out << code << ' ';
    out << "\nstay_ms=" << stay_ms << "\n";
}

inline void remove_control(const std::filesystem::path& program) {
    std::error_code ignored;
    std::filesystem::remove(control_file(program), ignored);
}

// Puts a copy of the double at `target` (replacing what is there) and returns `target`.
inline std::filesystem::path install_copy(const std::filesystem::path& target) {
    std::filesystem::create_directories(target.parent_path());
    std::filesystem::copy_file(built_double(), target, std::filesystem::copy_options::overwrite_existing);
    return target;
}

// The stand-in powershell.exe in the prefix's system folder. Wine keeps a builtin of that name, so
// the override makes the copy the one that runs.
inline std::filesystem::path install_powershell() {
    wchar_t system[MAX_PATH] = {};
    GetSystemDirectoryW(system, MAX_PATH);
    const auto target = install_copy(std::filesystem::path(system) / L"powershell.exe");
    HKEY overrides = nullptr;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Wine\\DllOverrides", 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                        &overrides, nullptr) == ERROR_SUCCESS) {
        const wchar_t native[] = L"native";
        RegSetValueExW(overrides, L"powershell.exe", 0, REG_SZ, reinterpret_cast<const BYTE*>(native), sizeof(native));
        RegCloseKey(overrides);
    }
    return target;
}

inline std::vector<run_record> read_records(const std::filesystem::path& record) {
    std::vector<run_record> runs;
    std::ifstream in(record, std::ios::binary);
    for (std::string line; std::getline(in, line);) {
        std::vector<std::wstring> fields;
        size_t start = 0;
        for (int i = 0; i < 4; ++i) {
            const size_t tab = line.find('\t', start);
            if (tab == std::string::npos) break;
            fields.push_back(to_wide(line.substr(start, tab - start)));
            start = tab + 1;
        }
        if (fields.size() != 4) continue;
        runs.push_back({fields[0], fields[1], fields[2], fields[3], to_wide(line.substr(start))});
    }
    return runs;
}

}  // namespace sibling_doubles
