#include "win32/test_log_win32.h"

#include "common/wine_process_win32.h"
#include "logging/plain_text_logger.h"

namespace {

const std::filesystem::path& test_log_path() {
    static const auto path = std::filesystem::temp_directory_path() /
                             (L"veldrake-win32-tests-" + std::to_wstring(GetCurrentProcessId()) + L".log");
    return path;
}

}  // namespace

void open_test_log() {
    std::error_code ignored;
    std::filesystem::remove(test_log_path(), ignored);
    process_logger().open(test_log_path());
}

std::vector<std::string> test_log_lines() { return test_support::read_lines(test_log_path()); }

std::vector<std::string> test_log_messages_since(size_t first_line) {
    const auto lines = test_log_lines();
    std::vector<std::string> messages;
    for (size_t i = first_line; i < lines.size(); ++i) {
        // "[date time] [P:.. T:..] [LEVEL] message": keep "[LEVEL] message".
        const auto level = lines[i].find("] [", lines[i].find("[P:"));
        messages.push_back(level == std::string::npos ? lines[i] : lines[i].substr(level + 2));
    }
    return messages;
}
