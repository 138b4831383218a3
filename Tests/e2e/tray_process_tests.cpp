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

using tray_process = tray_test;

}  // namespace

// Second starts while one runs, and WM_CLOSE to every window: the fault suite. Appending to the day's
// log across starts: the Win32 tier.
TEST_F(tray_process, starts_hidden_registered_and_logging_and_ends_on_wm_close) {
    const std::wstring key = L"Software\\Classes\\AppUserModelId\\Kestrane.Veldrake";
    test_registry::delete_tree(HKEY_CURRENT_USER, key);  // written by this start, not an earlier one
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr) << "no window of class VeldrakeSystemTrayWnd";
    EXPECT_FALSE(IsWindowVisible(tray.window()));
    EXPECT_EQ(window_text(tray.window()), TRAY_WINDOW_TITLE);
    // Written while the window is being created, so the window can be found a moment before them.
    poll_until([&] { return !test_registry::get_string(HKEY_CURRENT_USER, key, L"IconUri").empty(); });
    EXPECT_EQ(test_registry::get_string(HKEY_CURRENT_USER, key, L"DisplayName"), L"Veldrake");
    EXPECT_EQ(test_registry::get_string(HKEY_CURRENT_USER, key, L"IconUri"),
              (tray_exe().parent_path() / L"Content\\Icons\\veldrake-logo-ai.ico").wstring());
    EXPECT_TRUE(unique_handle(OpenMutexW(SYNCHRONIZE, FALSE, L"Local\\Veldrake_SystemTray_SingleInstance")))
        << "the single-instance mutex, by its name, from another process";
    const auto lines = read_lines(tray_log_file());
    ASSERT_FALSE(lines.empty());
    EXPECT_TRUE(lines[0].ends_with(first_line_end(tray))) << "the very first line: " << lines[0];

    EXPECT_EQ(tray.close(), 0u) << "WM_CLOSE from another process ends it with code 0";
}

// A tray that the gate lets start has a directory where its log file would be: it runs and answers all
// the same.
TEST_F(tray_process, installer_gate_keeps_it_away_only_from_the_live_recorded_process) {
    const resident live(L"Veldrake.Maintenance.exe", "sleep");
    const resident gone(L"Veldrake.Ended.exe", "");
    const child_process &maintenance = live.process(), &ended = gone.process();
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
        if (!c.refused) std::filesystem::create_directories(tray_log_file());
        running_tray tray(!c.refused);
        if (c.refused) {
            EXPECT_EQ(tray.process().wait_exit(), 0u);
            EXPECT_FALSE(std::filesystem::exists(tray_data_root())) << "nothing is created when refused";
            continue;
        }
        EXPECT_NE(tray.window(), nullptr);
        DWORD_PTR answer = 0;
        EXPECT_TRUE(SendMessageTimeoutW(tray.window(), WM_POWERBROADCAST, 7, 0, SMTO_ABORTIFHUNG, 5000, &answer));
        EXPECT_EQ(answer, TRUE) << "resume from sleep is answered";
        EXPECT_TRUE(std::filesystem::is_directory(tray_log_file())) << "the tray never makes way for its log";
        EXPECT_EQ(tray.close(), 0u);
    }
}
