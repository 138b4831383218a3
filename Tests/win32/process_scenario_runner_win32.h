#pragma once

#include <windows.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// Runs Tests/doubles/scenario_runner_win32.cpp from a folder of the test's choice, with a log file of
// its own, and gives back what it logged.
namespace scenario_runner {

struct outcome {
    std::optional<DWORD> exit_code;  // nothing if it did not end in time
    std::vector<std::string> log;    // its log's lines, without their prefixes
};

// A fresh folder under the temporary folder, with a blank in its name.
std::filesystem::path fresh_folder(const std::wstring& name);

// Copies the runner into `folder`, with the shipped "Content\Configurations" beside it when
// `with_default_settings`, and runs it with `arguments` after its log's path.
outcome run(const std::filesystem::path& folder, const std::wstring& arguments, bool with_default_settings);

// The lines of `log` that contain `text`.
std::vector<std::string> lines_with(const std::vector<std::string>& log, const std::string& text);

}  // namespace scenario_runner
