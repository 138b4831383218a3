#include "win32/process_scenario_runner_win32.h"

#include <gtest/gtest.h>

// The runner's two tasks throw, one a standard error and one something else; the process logs one
// line for each and goes on.
TEST(process_background_task, a_throwing_task_leaves_one_error_line_and_the_process_running) {
    const auto folder = scenario_runner::fresh_folder(L"failing tasks");
    const auto outcome = scenario_runner::run(folder, L"failing_tasks", false);
    EXPECT_EQ(outcome.exit_code, 0u);
    const auto errors = scenario_runner::lines_with(outcome.log, "[ERROR]");
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_EQ(scenario_runner::lines_with(errors, "[ERROR] runner_standard_failure failed: the disk is gone").size(), 1u);
    EXPECT_EQ(scenario_runner::lines_with(errors, "[ERROR] runner_unknown_failure failed with unknown exception").size(), 1u);
    ASSERT_FALSE(outcome.log.empty());
    EXPECT_EQ(outcome.log.back(), "[INFO] runner: still running");
    std::filesystem::remove_all(folder);
}
