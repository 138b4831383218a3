#include "common/test_registry_win32.h"
#include "e2e/tray_harness_win32.h"

#include <gtest/gtest.h>

using namespace e2e;

namespace {

const std::wstring gate_key = L"SOFTWARE\\Kestrane\\Veldrake\\InstallerMaintenance";

using tray_process = tray_test;

}  // namespace

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
