#include "host/common/temp_folder.h"
#include "logging/plain_text_logger.h"

#include <gtest/gtest.h>

#include <thread>

TEST(plain_text_logger, appends_utf8_lines_with_bare_line_feeds_to_the_first_file_opened) {
    const temp_folder folder;
    {
        plain_text_logger first;
        first.write(std::string_view("before open: lost"));
        first.open(folder.path / "tray.log");
        first.open(folder.path / "second.log");  // only the first open counts
        first.write(std::wstring_view(L"Gr\u00FC\u00DFe \u7D22\u5F15"));
        first.write(std::wstring_view(L""));
    }
    plain_text_logger again;  // a second start on the same day appends
    again.open(folder.path / "tray.log");
    again.write(std::string_view("second run"));
    EXPECT_EQ(folder.read("tray.log"), "Gr\xC3\xBC\xC3\x9F" "e \xE7\xB4\xA2\xE5\xBC\x95\n\nsecond run\n");
    EXPECT_FALSE(std::filesystem::exists(folder.path / "second.log"));
}

// The one open is spent on the directory; another logger still opens a good path and writes alone.
TEST(plain_text_logger, unopenable_file_makes_writes_quiet) {
    const temp_folder folder;
    plain_text_logger failed;
    failed.open(folder.path);  // a directory cannot be opened for appending
    failed.write(std::string_view("lost"));
    failed.open(folder.path / "tray.log");
    failed.write(std::string_view("lost too"));
    EXPECT_TRUE(!failed.is_open() && std::filesystem::is_empty(folder.path)) << "nothing was created";

    plain_text_logger good;
    good.open(folder.path / "tray.log");
    good.write(std::string_view("kept"));
    failed.write(std::string_view("lost at last"));
    EXPECT_EQ(folder.read("tray.log"), "kept\n");
}

TEST(plain_text_logger, threads_never_interleave_inside_a_line) {
    const temp_folder folder;
    constexpr int writers = 4, lines = 500;
    const auto body = [](int t) { return std::string(40 + t * 13, static_cast<char>('a' + t)); };
    {
        plain_text_logger logger;
        logger.open(folder.path / "tray.log");
        std::vector<std::thread> threads;
        for (int t = 0; t < writers; ++t) {
            threads.emplace_back([&, t] {
                for (int i = 0; i < lines; ++i) logger.write(std::string_view(fmt::format("{}:{}:{}", t, i, body(t))));
            });
        }
        for (auto& thread : threads) thread.join();
    }
    std::istringstream in(folder.read("tray.log"));
    std::vector<int> next(writers, 0);
    for (std::string line; std::getline(in, line);) {
        int t = -1, i = -1;
        ASSERT_TRUE(std::sscanf(line.c_str(), "%d:%d:", &t, &i) == 2 && t >= 0 && t < writers) << line;
        EXPECT_EQ(i, next[t]++) << "lines of one thread stay in order";
        EXPECT_EQ(line.substr(line.rfind(':') + 1), body(t));
    }
    EXPECT_EQ(next, std::vector<int>(writers, lines));
}
