#include "e2e/tray_harness_win32.h"
#include "platform/string_conversion.h"
#include "platform/unique_resource_win32.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include <fstream>
#include <set>

using namespace e2e;

using tray_watchdog = tray_test;

// The short-timers tray's hang threshold is 3 s. Names sort the other way round from times, so the
// pruning can only be right by time. A stall under the threshold and a modal menu (no hang) are left to
// the core's timelines, as are the figures the lines give, and which names count as dumps to its pruning
// table: each stall here costs real seconds.
TEST_F(tray_watchdog, a_hang_is_logged_dumped_in_place_of_the_oldest_dumps_and_its_end_reported) {
    const auto logs = tray_log_file().parent_path();
    std::filesystem::create_directories(logs);
    const std::wstring kept[] = {L"Tray hang 2026-01-01_00.00.01.dmp", L"Tray hang 2026-01-01_00.00.02.dmp"};
    const std::wstring names[] = {kept[0], kept[1], L"Tray hang 2026-01-01_00.00.03.dmp"};
    for (int age = 0; age < 3; ++age) {
        std::ofstream(logs / names[age]) << "old";
        std::filesystem::last_write_time(logs / names[age], std::filesystem::file_time_type::clock::now() -
                                                                std::chrono::hours(age + 1));
    }

    running_tray tray(true, short_timers_tray_exe());
    // Suspended in the midst of its start, the window thread can hold a lock that the watchdog's own
    // thread needs (the loader's, the heap's), and then nothing at all is logged: wait until it idles.
    const unique_handle process(OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION, FALSE, tray.process().id()));
    ASSERT_EQ(WaitForInputIdle(process.get(), 20000), 0u);
    const log_mark log(tray_log_file());
    // The watchdog's own lines: the start-up tasks may still log meanwhile.
    const auto watchdog_lines = [&] {
        auto lines = log.messages();
        std::erase_if(lines, [](const std::string& l) { return l.find("[watchdog]") == std::string::npos; });
        return lines;
    };
    const unique_handle ui(OpenThread(THREAD_SUSPEND_RESUME, FALSE, GetWindowThreadProcessId(tray.window(), nullptr)));
    const auto suspended = std::chrono::steady_clock::now();
    ASSERT_NE(SuspendThread(ui.get()), static_cast<DWORD>(-1));
    EXPECT_TRUE(poll_until([&] { return !watchdog_lines().empty(); }, std::chrono::seconds(30)));
    std::this_thread::sleep_until(suspended + std::chrono::seconds(5));  // the stall itself
    ResumeThread(ui.get());
    EXPECT_TRUE(poll_until([&] { return watchdog_lines().size() >= 3; }, std::chrono::seconds(180)));

    const auto messages = watchdog_lines();
    ASSERT_EQ(messages.size(), 3u) << fmt::format("{}", fmt::join(messages, "\n"));
    EXPECT_TRUE(messages[0].starts_with("[ERROR] [watchdog] UI thread has not handled a posted message for "));
    const std::string wrote = "[ERROR] [watchdog] Wrote ";
    ASSERT_TRUE(messages[1].starts_with(wrote)) << messages[1];
    const std::filesystem::path dump = to_wide(messages[1].substr(wrote.size()));
    // Under Wine the recovery is seen only after the dump (seconds, a minute on a busy machine); what its
    // figure holds is the core's timeline.
    EXPECT_TRUE(messages[2].starts_with("[WARNING] [watchdog] UI thread responsive again after ")) << messages[2];

    char magic[4] = {};
    std::ifstream(dump, std::ios::binary).read(magic, 4);
    EXPECT_EQ(std::string_view(magic, 4), "MDMP");
    std::set<std::wstring> found;
    for (const auto& e : std::filesystem::directory_iterator(logs)) found.insert(e.path().filename().wstring());
    EXPECT_EQ(found, std::set<std::wstring>(
                         {kept[0], kept[1], dump.filename().wstring(), tray_log_file().filename().wstring()}));

    EXPECT_EQ(tray.close(), 0u) << "WM_CLOSE from another process still ends it with code 0";
}
