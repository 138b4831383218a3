#include "win32/process_scenario_runner_win32.h"

#include "common/wine_process_win32.h"

#include <fmt/xchar.h>

#include <fstream>

namespace scenario_runner {

std::filesystem::path fresh_folder(const std::wstring& name) {
    const auto folder =
        std::filesystem::temp_directory_path() / fmt::format(L"veldrake {} {}", name, GetCurrentProcessId());
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    return folder;
}

outcome run(const std::filesystem::path& folder, const std::wstring& arguments, bool with_default_settings) {
    const auto bin = test_support::this_program().parent_path();
    std::filesystem::create_directories(folder);
    const auto runner = folder / L"scenario_runner.exe";
    std::filesystem::copy_file(bin / L"scenario_runner.exe", runner, std::filesystem::copy_options::overwrite_existing);
    if (with_default_settings) {
        std::filesystem::create_directories(folder / L"Content");
        std::filesystem::copy(bin / L"Content" / L"Configurations", folder / L"Content" / L"Configurations",
                              std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
    }
    const auto log = folder / L"runner.log";
    std::filesystem::remove(log);

    outcome result;
    auto child = test_support::child_process::start(runner, fmt::format(L"\"{}\" {}", log.wstring(), arguments));
    result.exit_code = child.wait_exit(std::chrono::seconds(30));
    child.terminate();
    std::ifstream in(log, std::ios::binary);
    for (std::string line; std::getline(in, line);) {
        // "[time] [P:.. T:..] [LEVEL] message": keep the level and the message.
        const auto level = line.find("] [", line.find("] [") + 1);
        result.log.push_back(level == std::string::npos ? line : line.substr(level + 2));
    }
    return result;
}

std::vector<std::string> lines_with(const std::vector<std::string>& log, const std::string& text) {
    std::vector<std::string> found;
    for (const auto& line : log) {
        if (line.find(text) != std::string::npos) found.push_back(line);
    }
    return found;
}

}  // namespace scenario_runner
