#pragma once

// Drives the sibling-program double from a test: where it records, how it exits, and what it saw.
#include <windows.h>

#include "common/wine_process_win32.h"
#include "platform/string_conversion.h"

#include <algorithm>
#include <fstream>

namespace sibling_doubles {

// One start of a double, as it saw it: STARTUPINFO's show command ("-" when none was set), "console"
// or "none", its working folder and its whole command line.
struct run_record {
    std::wstring show, console, folder, command_line;
};

inline std::filesystem::path control_file(const std::filesystem::path& program) {
    return std::filesystem::path(program).concat(L".control");
}

// From now on, `program` appends to `record`, lives as `mode` says (see sibling_double_win32.cpp) and
// exits with the next of `exit_codes` (blank-separated; the last repeats).
inline void control(const std::filesystem::path& program, const std::filesystem::path& record,
                    const std::string& exit_codes, const std::string& mode = "") {
    std::ofstream(control_file(program), std::ios::binary | std::ios::trunc)
        << to_utf8(record.wstring()) << '\n' << exit_codes << '\n' << mode << '\n';
}
inline void control(const std::filesystem::path& program, const std::filesystem::path& record, DWORD exit_code = 0) {
    control(program, record, std::to_string(exit_code));
}

inline void remove_control(const std::filesystem::path& program) {
    std::error_code ignored;
    std::filesystem::remove(control_file(program), ignored);
}

// Puts a copy of the built double at `target` (replacing what is there) and returns `target`.
inline std::filesystem::path install_copy(const std::filesystem::path& target) {
    std::filesystem::create_directories(target.parent_path());
    std::filesystem::copy_file(test_support::this_program().parent_path() / L"sibling_double.exe", target,
                               std::filesystem::copy_options::overwrite_existing);
    return target;
}

inline std::vector<run_record> read_records(const std::filesystem::path& record) {
    std::vector<run_record> runs;
    for (const std::string& line : test_support::read_lines(record)) {
        if (std::count(line.begin(), line.end(), '\t') < 3) continue;  // still being written
        run_record run;
        size_t start = 0;
        for (std::wstring* field : {&run.show, &run.console, &run.folder}) {
            const size_t tab = line.find('\t', start);
            *field = to_wide(line.substr(start, tab - start));
            start = tab + 1;
        }
        run.command_line = to_wide(line.substr(start));  // tabs and all
        runs.push_back(run);
    }
    return runs;
}

}  // namespace sibling_doubles
