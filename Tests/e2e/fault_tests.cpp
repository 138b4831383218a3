#include "common/test_registry_win32.h"
#include "e2e/tray_harness_win32.h"
#include "process/process_tools_win32.h"
#include "toasts/notification_window_win32.h"
#include "toasts/tray_toast_ipc.h"
#include "tray_messages.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fstream>
#include <functional>

using namespace e2e;

namespace {

// Runs the tray's timer `id` now, on its own thread, as the timer would: a poll that needs no waiting.
void run_timer(HWND tray, UINT_PTR id) {
    DWORD_PTR ignored = 0;
    SendMessageTimeoutW(tray, WM_TIMER, id, 0, SMTO_ABORTIFHUNG, 5000, &ignored);
}

using faults = tray_test;

}  // namespace

// The installer's maintenance process, recorded with its true creation time, keeps the tray away, and
// it creates nothing; the same id with another creation time is a recycled one, and the tray starts
// hidden, registered and logging from its window thread. Then what the world may do to it, one row each:
// after each it still runs, answers within a second and keeps what it should; at the end a polite
// shutdown of the whole process ends it. (Appending to the day's log across starts: the Win32 tier; a
// recorded process that has ended: the core's decision.)
TEST_F(faults, the_tray_outlives_each_and_keeps_what_it_should) {
    const std::wstring aumid = L"Software\\Classes\\AppUserModelId\\Kestrane.Veldrake";
    test_registry::delete_tree(HKEY_CURRENT_USER, aumid);  // written by this start, not an earlier one
    const resident maintenance(L"Veldrake.Maintenance.exe", "sleep");
    const std::wstring gate = L"SOFTWARE\\Kestrane\\Veldrake\\InstallerMaintenance";
    test_registry::set_dword(HKEY_LOCAL_MACHINE, gate, L"Process", maintenance.process().id());
    uint64_t created = maintenance.process().creation_time();
    test_registry::set_value(HKEY_LOCAL_MACHINE, gate, L"Created", REG_QWORD, &created, sizeof(created));
    EXPECT_EQ(running_tray(false).process().wait_exit(), 0u) << "kept away by the installer's maintenance";
    EXPECT_FALSE(std::filesystem::exists(tray_data_root())) << "nothing is created when refused";
    ++created;  // the same id, recycled
    test_registry::set_value(HKEY_LOCAL_MACHINE, gate, L"Created", REG_QWORD, &created, sizeof(created));
    running_tray tray;
    const HWND window = tray.window();
    const DWORD pid = tray.process().id();
    EXPECT_FALSE(IsWindowVisible(window));
    // Written while the window is being created, so the window can be found a moment before them.
    poll_until([&] { return !test_registry::get_string(HKEY_CURRENT_USER, aumid, L"IconUri").empty(); });
    EXPECT_EQ(test_registry::get_string(HKEY_CURRENT_USER, aumid, L"DisplayName"), L"Veldrake");
    const auto first = read_lines(tray_log_file());
    ASSERT_FALSE(first.empty());
    EXPECT_TRUE(first[0].ends_with(fmt::format("] [P:{} T:{}] [INFO] Starting logging for System Tray", pid,
                                               GetWindowThreadProcessId(window, nullptr))))
        << "the very first line: " << first[0];
    EXPECT_TRUE(unique_handle(OpenMutexW(SYNCHRONIZE, FALSE, L"Local\\Veldrake_SystemTray_SingleInstance")))
        << "the single-instance mutex, by its name, from another process";
    const auto logs = tray_log_file().parent_path();
    const std::wstring controller = L"Veldrake.ContextMenuReplacement.Controller.exe";

    const struct {
        const char* name;
        std::function<void()> fault;
    } rows[] = {
        {"a second instance started 50 times",
         [&] {
             const log_mark mark(tray_log_file());
             std::vector<child_process> seconds;
             for (int i = 0; i < 50; ++i) seconds.push_back(child_process::start(tray_exe()));
             for (const auto& second : seconds) EXPECT_EQ(second.wait_exit(), 0u);
             EXPECT_EQ(mark.count("[INFO] Starting logging for System Tray"), 0u) << "none of them logs";
         }},
        {"a sibling that hangs",
         [&] {
             const recorded_runs hanging(controller.c_str());
             hanging.exit_with("0", "sleep");
             run_timer(window, TIMER_RECONCILE_DELAY);
             ASSERT_FALSE(hanging.wait().empty());
             EXPECT_TRUE(answers(window)) << "the reconcile waits on a thread of its own";
             // Let it go: the retry that follows exits at once.
             hanging.exit_with("0");
             // Only the tray starts the controller here.
             const wchar_t* const hung[] = {controller.c_str()};
             end_processes(find_processes_by_name(hung), 0);
             EXPECT_EQ(hanging.wait(2).size(), 2u);
         }},
        {"an Explorer restart staged 20 times",
         [&] {
             for (int i = 0; i < 20; ++i) {
                 SCOPED_TRACE(i);
                 ASSERT_TRUE(restart_explorer(window, TRAY_ICON_MAIN)) << "the old taskbar takes its icons along";
                 ASSERT_TRUE(poll_until([&] { return icon_shown(window, TRAY_ICON_MAIN); })) << "the icon is back";
             }
         }},
        {"the settings file deleted",
         [&] {
             ASSERT_TRUE(std::filesystem::remove(settings_file()));
             run_timer(window, TIMER_SETTINGS_POLL);
             EXPECT_TRUE(std::filesystem::exists(settings_file())) << "the default is copied back";
         }},
        {"the settings file corrupted",
         [&] {
             const std::string corrupt = "{\"apps\": [{\"name\": \"Veld";
             std::ofstream(settings_file(), std::ios::binary | std::ios::trunc) << corrupt;
             run_timer(window, TIMER_SETTINGS_POLL);
             EXPECT_EQ(read_lines(settings_file()), std::vector<std::string>{corrupt})
                 << "the tray only reads the user's file";
             std::filesystem::remove(settings_file());
         }},
        {"the log folder made unwritable",
         [&] {
             // A file where the folder was: nothing can be created there, and the open log moves along.
             const auto moved = logs.parent_path() / L"Logs moved";
             std::filesystem::rename(logs, moved);
             std::ofstream(logs, std::ios::binary) << "not a folder";
             // A request refused for its id or its size is not logged; a malformed one is, once.
             const std::wstring malformed = L"1\u0001\u0001\u0001title\u0001text\u00010";
             const auto bytes = static_cast<DWORD>(2 * (malformed.size() + 1));
             EXPECT_EQ(send_copy_data(window, 0x4B445655, malformed.c_str(), bytes), 0) << "another dwData";
             EXPECT_EQ(send_copy_data(window, tray_toast_ipc::TOAST_COPYDATA_ID, malformed.c_str(), 1), 0);
             EXPECT_EQ(send_copy_data(window, tray_toast_ipc::TOAST_COPYDATA_ID, malformed.c_str(), bytes), 0);
             EXPECT_TRUE(answers(window));
             const auto kept = read_lines(moved / tray_log_file().filename());
             ASSERT_GE(kept.size(), 2u);
             EXPECT_TRUE(kept.back().ends_with("[WARNING] toast_dispatcher: ignoring a malformed toast request"))
                 << "the line reaches the file the tray holds: " << kept.back();
             EXPECT_EQ(kept[kept.size() - 2].find("toast"), std::string::npos) << kept[kept.size() - 2];
             std::filesystem::remove(logs);
             std::filesystem::rename(moved, logs);
         }},
        {"a flood while a toast shows",
         [&] {
             ASSERT_TRUE(request_toast(L"Showing"));
             HWND shown = wait_for_window(pid, toast_utilities::NOTIFICATION_WINDOW_CLASS);
             ASSERT_NE(shown, nullptr);
             for (int i = 0; i < 2000; ++i) ASSERT_TRUE(request_toast(L"Flood " + std::to_wstring(i)));
             // At most three wait, and the newest win, in their order.
             std::wstring previous = L"Showing";
             for (const wchar_t* next : {L"Flood 1997", L"Flood 1998", L"Flood 1999"}) {
                 PostMessageW(shown, WM_CLOSE, 0, 0);
                 ASSERT_TRUE(poll_until([&] {
                     const auto now = windows_of(pid, toast_utilities::NOTIFICATION_WINDOW_CLASS);
                     if (now.empty()) return false;
                     const std::wstring text = window_text(shown = now.front());  // empty once it is gone
                     return !text.empty() && text != previous;
                 }));
                 EXPECT_EQ(window_text(shown), next);
                 previous = next;
             }
             PostMessageW(shown, WM_CLOSE, 0, 0);
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        row.fault();
        EXPECT_TRUE(tray.process().running());
        EXPECT_TRUE(answers(window));
    }

    for (const HWND w : windows_of(pid, nullptr, nullptr, true)) {
        if (w != window) PostMessageW(w, WM_CLOSE, 0, 0);
    }
    EXPECT_EQ(tray.close(), 0u) << "WM_CLOSE to every window of the process ends it cleanly";
}
