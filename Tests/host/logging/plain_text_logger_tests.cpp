#include "logging/log.h"
#include "logging/plain_text_logger.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <regex>
#include <sstream>
#include <thread>

namespace {

std::filesystem::path fresh_folder(const char* name) {
    std::random_device seed;
    auto folder = std::filesystem::temp_directory_path() / fmt::format("veldrake-{}-{:08x}", name, seed());
    std::filesystem::create_directories(folder);
    return folder;
}

// The process's logger keeps its file open, and Windows will not delete an open file: leave it.
void remove_quietly(const std::filesystem::path& folder) {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

std::string read_all(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

}  // namespace

TEST(plain_text_logger, lines_before_open_go_nowhere_and_reopening_keeps_the_first_file) {
    const auto folder = fresh_folder("open");
    {
        plain_text_logger logger;
        logger.write(std::string_view("lost"));
        logger.open(folder / "first.log");
        logger.open(folder / "second.log");
        logger.write(std::string_view("kept"));
    }
    EXPECT_EQ(read_all(folder / "first.log"), "kept\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "second.log"));
    remove_quietly(folder);
}

TEST(plain_text_logger, appends_utf8_without_bom_and_with_bare_line_feeds) {
    const auto folder = fresh_folder("append");
    const auto path = folder / "tray.log";
    {
        plain_text_logger first;
        first.open(path);
        first.write(std::wstring_view(L"Gr\u00FC\u00DFe \u7D22\u5F15"));
        first.write(std::wstring_view(L""));
    }
    {
        plain_text_logger second;  // a second start on the same day
        second.open(path);
        second.write(std::string_view("second run"));
    }
    EXPECT_EQ(read_all(path), "Gr\xC3\xBC\xC3\x9F" "e \xE7\xB4\xA2\xE5\xBC\x95\n\nsecond run\n");
    remove_quietly(folder);
}

TEST(plain_text_logger, unopenable_file_makes_writes_quiet) {
    const auto folder = fresh_folder("unopenable");
    plain_text_logger logger;
    logger.open(folder);  // a directory cannot be opened for appending
    EXPECT_FALSE(logger.is_open());
    logger.write(std::string_view("nothing"));
    logger.write(std::wstring_view(L"nothing"));
    EXPECT_TRUE(std::filesystem::is_directory(folder));
    remove_quietly(folder);
}

TEST(plain_text_logger, threads_never_interleave_inside_a_line) {
    const auto folder = fresh_folder("threads");
    const auto path = folder / "tray.log";
    constexpr int writers = 4, lines = 500;
    {
        plain_text_logger logger;
        logger.open(path);
        std::vector<std::thread> threads;
        for (int t = 0; t < writers; ++t) {
            threads.emplace_back([&logger, t] {
                const std::string body(40 + t * 13, static_cast<char>('a' + t));
                for (int i = 0; i < lines; ++i) logger.write(std::string_view(fmt::format("{}:{}:{}", t, i, body)));
            });
        }
        for (auto& thread : threads) thread.join();
    }

    std::istringstream in(read_all(path));
    std::string line;
    std::vector<int> next(writers, 0);
    int count = 0;
    while (std::getline(in, line)) {
        int t = -1, i = -1;
        ASSERT_EQ(std::sscanf(line.c_str(), "%d:%d:", &t, &i), 2) << line;
        ASSERT_TRUE(t >= 0 && t < writers) << line;
        EXPECT_EQ(i, next[t]++) << "lines of one thread stay in order";
        EXPECT_EQ(line.substr(line.rfind(':') + 1), std::string(40 + t * 13, static_cast<char>('a' + t)));
        ++count;
    }
    EXPECT_EQ(count, writers * lines);
    remove_quietly(folder);
}

// The process's logger can be opened once per process; this is the one test that does.
TEST(plain_text_logger, narrow_and_wide_log_calls_write_identical_lines) {
    const auto folder = fresh_folder("log");
    const auto path = folder / "tray.log";
    process_logger().open(path);
    logging::log(log_severity::info, "Starting logging for {} ({})", "System Tray", 42);
    logging::log(log_severity::info, L"Starting logging for {} ({})", L"System Tray", 42);
    logging::log(static_cast<log_severity>(9), "odd level");

    std::istringstream in(read_all(path));
    std::string narrow, wide, odd;
    std::getline(in, narrow);
    std::getline(in, wide);
    std::getline(in, odd);
    const std::regex prefix(R"(^\[\d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2}\.\d{7}\] \[P:\d+ T:\d+\] \[(\w+)\] (.*)$)");
    std::smatch a, b, c;
    ASSERT_TRUE(std::regex_match(narrow, a, prefix)) << narrow;
    ASSERT_TRUE(std::regex_match(wide, b, prefix)) << wide;
    ASSERT_TRUE(std::regex_match(odd, c, prefix)) << odd;
    EXPECT_EQ(a[1], "INFO");
    EXPECT_EQ(a[2], "Starting logging for System Tray (42)");
    EXPECT_EQ(a[2], b[2]);
    EXPECT_EQ(c[1], "UNKNOWN");
    remove_quietly(folder);
}
