#include "common/wine_process_win32.h"
#include "logging/plain_text_logger.h"
#include "platform/string_conversion.h"

#include <fmt/format.h>
#include <fmt/xchar.h>
#include <gtest/gtest.h>

#include <map>

namespace {

std::string tagged_body(const std::string& tag) { return std::string(60 + 37 * (tag.size() % 5), tag[0]); }

}  // namespace

// Writes `count` lines "TAG:N:<body>" through a logger of its own. main_win32.cpp runs it as the
// second process.
int write_tagged_lines(const std::filesystem::path& file, const std::wstring& tag, unsigned long count) {
    plain_text_logger logger;
    logger.open(file);
    if (!logger.is_open()) return 2;
    const std::string narrow_tag = to_utf8(tag);
    for (unsigned long i = 0; i < count; ++i) {
        logger.write(std::string_view(fmt::format("{}:{}:{}", narrow_tag, i, tagged_body(narrow_tag))));
    }
    return 0;
}

// Another program holds the file open for reading and writing, as an editor or a second tray would,
// while four processes write through loggers of their own: each line is one writer's whole line, after
// the old ones.
TEST(log_sharing, four_processes_append_whole_lines_beside_an_open_reader) {
    const auto file = test_support::fresh_folder(L"log-sharing") / L"System Tray 2026-11-13.log";
    ASSERT_EQ(write_tagged_lines(file, L"one", 3), 0);
    const HANDLE reader = CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    constexpr unsigned long lines = 400;
    std::vector<test_support::child_process> writers;
    for (const wchar_t* tag : {L"alpha", L"beta", L"gamma", L"delta"}) {
        writers.push_back(test_support::child_process::start(test_support::this_program(),
                                                             fmt::format(L"--log-writer \"{}\" {} {}", file.wstring(), tag, lines)));
    }
    for (const auto& writer : writers) EXPECT_EQ(writer.wait_exit(), 0u);
    CloseHandle(reader);

    std::map<std::string, unsigned long> next;
    for (const std::string& line : test_support::read_lines(file)) {
        const auto colon = line.find(':'), second_colon = line.find(':', colon + 1);
        ASSERT_NE(second_colon, std::string::npos) << line;
        const std::string tag = line.substr(0, colon);
        EXPECT_EQ(std::stoul(line.substr(colon + 1, second_colon - colon - 1)), next[tag]++) << line;
        EXPECT_EQ(line.substr(second_colon + 1), tagged_body(tag)) << "a line was broken into";
    }
    EXPECT_EQ(next, (std::map<std::string, unsigned long>{{"one", 3}, {"alpha", lines}, {"beta", lines},
                                                          {"gamma", lines}, {"delta", lines}}));
}
