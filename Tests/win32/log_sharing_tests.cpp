#include "common/wine_process_win32.h"
#include "win32/log_writer_win32.h"

#include <fmt/format.h>
#include <fmt/xchar.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <thread>

namespace {

std::filesystem::path fresh_log(const wchar_t* name) {
    auto folder = std::filesystem::temp_directory_path() / fmt::format(L"veldrake-{}-{}", name, GetCurrentProcessId());
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    return folder / L"System Tray 2026-11-13.log";
}

// Every line must be one writer's whole line, and each writer's numbers must run in order.
void expect_whole_lines(const std::filesystem::path& file, const std::map<std::string, unsigned long>& expected) {
    std::ifstream in(file, std::ios::binary);
    std::map<std::string, unsigned long> next;
    for (std::string line; std::getline(in, line);) {
        ASSERT_FALSE(!line.empty() && line.back() == '\r') << "no carriage return";
        const auto first = line.find(':'), second = line.find(':', first + 1);
        ASSERT_NE(second, std::string::npos) << line;
        const std::string tag = line.substr(0, first);
        ASSERT_TRUE(expected.count(tag)) << line;
        EXPECT_EQ(std::stoul(line.substr(first + 1, second - first - 1)), next[tag]++) << line;
        EXPECT_EQ(line.substr(second + 1), tagged_body(tag)) << "a line was broken into";
    }
    EXPECT_EQ(next, expected);
}

}  // namespace

TEST(log_sharing, two_threads_and_two_processes_append_whole_lines_to_one_file) {
    const auto file = fresh_log(L"sharing");
    constexpr unsigned long lines = 400;
    std::thread first([&] { write_tagged_lines(file, L"alpha", lines); });
    std::thread second([&] { write_tagged_lines(file, L"beta", lines); });
    auto other = test_support::child_process::start(test_support::this_program(),
                                                     fmt::format(L"--log-writer \"{}\" gamma {}", file.wstring(), lines));
    auto another = test_support::child_process::start(test_support::this_program(),
                                                       fmt::format(L"--log-writer \"{}\" delta {}", file.wstring(), lines));
    first.join();
    second.join();
    EXPECT_EQ(other.wait_exit(), 0u);
    EXPECT_EQ(another.wait_exit(), 0u);
    expect_whole_lines(file, {{"alpha", lines}, {"beta", lines}, {"gamma", lines}, {"delta", lines}});
}

TEST(log_sharing, a_reader_may_open_the_file_while_it_is_written_and_runs_append) {
    const auto file = fresh_log(L"append");
    ASSERT_EQ(write_tagged_lines(file, L"one", 3), 0);
    // Another process reads and writes the open file, as an editor or a second tray would.
    HANDLE reader = CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    ASSERT_EQ(write_tagged_lines(file, L"two", 2), 0);
    CloseHandle(reader);
    expect_whole_lines(file, {{"one", 3}, {"two", 2}});
}
