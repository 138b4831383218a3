#include "common/wine_process_win32.h"
#include "process/background_task.h"
#include "win32/test_log_win32.h"

#include <gtest/gtest.h>

#include <stdexcept>

// A task that throws leaves one ERROR line with its name, and this process, which an escaping
// exception would end, goes on. (That what is no std::exception is caught too, the host tests show.)
TEST(process_background_task, a_throwing_task_leaves_one_error_line_and_the_process_running) {
    const test_support::log_mark mark(test_log_path());
    run_background_task(L"standard_failure", [] { throw std::runtime_error("the disk is gone"); });
    std::vector<std::string> logged;
    test_support::poll_until([&] { return !(logged = mark.messages()).empty(); });
    EXPECT_EQ(logged, std::vector<std::string>{"[ERROR] standard_failure failed: the disk is gone"});
}
