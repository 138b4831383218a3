#include "common/test_registry_win32.h"
#include "e2e/tray_harness_win32.h"
#include "platform/unique_resource_win32.h"
#include "tray_messages.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

using namespace e2e;

namespace {

const std::wstring gate_key = L"SOFTWARE\\Kestrane\\Veldrake\\InstallerMaintenance";

// How the line every start begins its log with ends: logged from the UI thread of that process.
std::string first_line_end(const running_tray& tray) {
    return fmt::format("] [P:{} T:{}] [INFO] Starting logging for System Tray", tray.process().id(),
                       GetWindowThreadProcessId(tray.window(), nullptr));
}

// The log's first lines of each start; the start-up tasks log after them.
std::vector<std::string> start_lines() {
    auto lines = read_lines(tray_log_file());
    std::erase_if(lines, [](const std::string& l) { return !l.ends_with("[INFO] Starting logging for System Tray"); });
    return lines;
}

using tray_process = tray_test;

}  // namespace

// A start after Exit appends to the day's log. (Second starts while one runs: the fault suite.)
TEST_F(tray_process, starts_hidden_and_registered_and_a_later_start_appends) {
    const std::wstring key = L"Software\\Classes\\AppUserModelId\\Kestrane.Veldrake";
    test_registry::delete_tree(HKEY_CURRENT_USER, key);  // written by this start, not an earlier one
    {
        running_tray first;
        ASSERT_NE(first.window(), nullptr) << "no window of class VeldrakeSystemTrayWnd";
        EXPECT_FALSE(IsWindowVisible(first.window()));
        EXPECT_EQ(window_text(first.window()), TRAY_WINDOW_TITLE);
        // Written while the window is being created, so the window can be found a moment before them.
        poll_until([&] { return !test_registry::get_string(HKEY_CURRENT_USER, key, L"IconUri").empty(); });
        EXPECT_EQ(test_registry::get_string(HKEY_CURRENT_USER, key, L"DisplayName"), L"Veldrake");
        EXPECT_EQ(test_registry::get_string(HKEY_CURRENT_USER, key, L"IconUri"),
                  (tray_exe().parent_path() / L"Content\\Icons\\veldrake-logo-ai.ico").wstring());
        EXPECT_TRUE(unique_handle(OpenMutexW(SYNCHRONIZE, FALSE, L"Local\\Veldrake_SystemTray_SingleInstance")))
            << "the single-instance mutex, by its name, from another process";
        const auto before = start_lines();
        ASSERT_EQ(before.size(), 1u);
        EXPECT_TRUE(before[0].ends_with(first_line_end(first))) << before[0];
        EXPECT_TRUE(read_lines(tray_log_file())[0].ends_with(first_line_end(first))) << "the very first line";

        PostMessageW(first.window(), WM_COMMAND, ID_TRAY_EXIT, 0);
        EXPECT_EQ(first.process().wait_exit(), 0u) << "Exit ends it with code 0";
    }
    EXPECT_FALSE(unique_handle(OpenMutexW(SYNCHRONIZE, FALSE, L"Local\\Veldrake_SystemTray_SingleInstance")));
    running_tray later;
    ASSERT_NE(later.window(), nullptr);
    const auto lines = start_lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(lines[1].ends_with(first_line_end(later))) << lines[1];
    EXPECT_EQ(later.close(), 0u) << "WM_CLOSE from another process ends it with code 0";
}

TEST_F(tray_process, installer_gate_keeps_it_away_only_from_the_live_recorded_process) {
    child_process maintenance = child_process::start(this_program(), L"--sleep 60000");
    const child_process ended = child_process::start(this_program(), L"--sleep 0");
    ASSERT_EQ(ended.wait_exit(), 0u);
    const struct { const char* name; uint32_t process; uint64_t created; bool refused; } cases[] = {
        {"live process with its true creation time", maintenance.id(), maintenance.creation_time(), true},
        {"recycled id: another creation time", maintenance.id(), maintenance.creation_time() + 1, false},
        {"the process has ended", ended.id(), ended.creation_time(), false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        reset_tray_state();
        test_registry::set_dword(HKEY_LOCAL_MACHINE, gate_key, L"Process", c.process);
        test_registry::set_value(HKEY_LOCAL_MACHINE, gate_key, L"Created", REG_QWORD, &c.created, sizeof(c.created));
        running_tray tray(!c.refused);
        if (c.refused) {
            EXPECT_EQ(tray.process().wait_exit(), 0u);
            EXPECT_FALSE(std::filesystem::exists(tray_data_root())) << "nothing is created when refused";
        } else {
            EXPECT_NE(tray.window(), nullptr);
        }
    }
    maintenance.terminate();
}

TEST_F(tray_process, unopenable_log_file_leaves_it_running_and_answering) {
    std::filesystem::create_directories(tray_log_file());  // a directory where the file would be
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    EXPECT_TRUE(std::filesystem::is_directory(tray_log_file()));
    DWORD_PTR answer = 0;
    EXPECT_TRUE(SendMessageTimeoutW(tray.window(), WM_POWERBROADCAST, 7, 0, SMTO_ABORTIFHUNG, 5000, &answer));
    EXPECT_EQ(answer, TRUE) << "resume from sleep is answered";
    EXPECT_EQ(tray.close(), 0u);
}
