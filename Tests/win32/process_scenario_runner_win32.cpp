#include "win32/process_scenario_runner_win32.h"

#include "common/wine_process_win32.h"

#include <fmt/xchar.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace scenario_runner {

std::filesystem::path fresh_folder(const std::wstring& name) {
    const auto folder =
        std::filesystem::temp_directory_path() / fmt::format(L"veldrake {} {}", name, GetCurrentProcessId());
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    return folder;
}

outcome run(const std::filesystem::path& folder, const std::wstring& arguments, bool with_default_settings) {
    using std::filesystem::copy_options;
    constexpr auto replace = copy_options::overwrite_existing | copy_options::recursive;
    const auto bin = test_support::this_program().parent_path();
    const auto runner = folder / L"scenario_runner.exe", log = folder / L"runner.log";
    std::filesystem::create_directories(folder / L"Content");
    std::filesystem::copy(bin / L"scenario_runner.exe", runner, replace);
    if (with_default_settings) {
        std::filesystem::copy(bin / L"Content\\Configurations", folder / L"Content\\Configurations", replace);
    }
    std::filesystem::remove(log);

    auto child = test_support::child_process::start(runner, fmt::format(L"\"{}\" {}", log.wstring(), arguments));
    outcome result{child.wait_exit(std::chrono::seconds(30)), {}};
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
    std::copy_if(log.begin(), log.end(), std::back_inserter(found),
                 [&](const std::string& line) { return line.find(text) != std::string::npos; });
    return found;
}

}  // namespace scenario_runner
