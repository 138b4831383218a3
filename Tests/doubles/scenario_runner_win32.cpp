// Runs one scenario of the shared library in a fresh process with a log file of its own, for the
// Win32 tests that read what a process logs or that need a process of their own (the default
// settings folder is worked out once per process, beside the program):
//   scenario_runner LOG settings APP_NAME   read the settings of APP_NAME once and log what was read
//   scenario_runner LOG failing_tasks       run two tasks that throw, then log that the process lives on
#include <windows.h>

#include "logging/log.h"
#include "process/background_task.h"
#include "settings/high_level_settings.h"

#include <fstream>
#include <stdexcept>
#include <string>

int wmain(int argc, wchar_t** argv) {
    if (argc < 3) return 2;
    const std::filesystem::path log = argv[1];
    const std::wstring scenario = argv[2];
    process_logger().open(log);
    if (scenario == L"settings" && argc == 4) {
        high_level_settings::settings_file settings(argv[3], L"High Level Settings");
        const bool loaded = settings.reload_if_changed(false);
        logging::log(log_severity::info, "runner: loaded {} enabled {} font size {}", loaded,
                     settings.is_app_enabled("context-menu-replacement", false),
                     settings.get_int("context-menu-replacement", "appearance.fontSizeDip", -1));
        return 0;
    }
    if (scenario == L"failing_tasks") {
        run_background_task(L"runner_standard_failure", [] { throw std::runtime_error("the disk is gone"); });
        run_background_task(L"runner_unknown_failure", [] { throw 42; });
        const auto errors = [&] {
            std::ifstream in(log, std::ios::binary);
            int count = 0;
            for (std::string line; std::getline(in, line);) count += line.find("[ERROR]") != std::string::npos;
            return count;
        };
        for (int i = 0; i < 1000 && errors() < 2; ++i) Sleep(20);
        logging::log(log_severity::info, "runner: still running");
        return 0;
    }
    return 2;
}
