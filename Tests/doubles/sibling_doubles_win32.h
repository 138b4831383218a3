#pragma once

// Drives the sibling-program double from a test: where it records, how it exits, and what it saw.
#include <windows.h>

#include "common/wine_process_win32.h"
#include "platform/string_conversion.h"

#include <filesystem>
#include <fstream>
#include <sstream>
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

inline std::filesystem::path control_file(const std::filesystem::path& program) {
    return std::filesystem::path(program).concat(L".control");
}

// From now on, `program` appends to `record` and exits with `exit_code`.
inline void control(const std::filesystem::path& program, const std::filesystem::path& record, DWORD exit_code = 0) {
    std::ofstream(control_file(program), std::ios::binary | std::ios::trunc)
        << to_utf8(record.wstring()) << '\n' << exit_code << '\n';
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
    std::ifstream in(record, std::ios::binary);
    for (std::string line; std::getline(in, line);) {
        std::istringstream fields(line);
        run_record run;
        for (std::wstring* field : {&run.program, &run.show, &run.console, &run.folder}) {
            std::string text;
            if (std::getline(fields, text, '\t')) *field = to_wide(text);
        }
        std::string rest;  // the command line, tabs and all
        if (!std::getline(fields, rest)) continue;
        run.command_line = to_wide(rest);
        runs.push_back(std::move(run));
    }
    return runs;
}

}  // namespace sibling_doubles
