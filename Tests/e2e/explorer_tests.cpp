#include "common/test_registry_win32.h"
#include "e2e/tray_harness_win32.h"
#include "platform/scope_exit.h"

#include <gtest/gtest.h>

using namespace e2e;
using namespace std::chrono_literals;

namespace {

const std::wstring CLASSES = L"Software\\Classes\\";
const std::wstring SUITE_CLASS = L"{931CC9DD-9E0F-4FA1-AA06-229D0372956A}";
const std::wstring SUITE_KEY = L"Software\\Kestrane\\Veldrake\\Pathlume";
const std::wstring LEGACY_KEY = CLASSES + L"CLSID\\{52205fd8-5dfb-447d-801a-d0b52f2e83e1}\\shell\\OpenNewWindow\\command";
const std::wstring LEGACY_COMMAND = L"explorer.exe \"shell:::{249AE234-08DF-4686-AAF3-5D80A15493BE}\"";

using explorer_integration = tray_test;

}  // namespace

// Before the first start another program took the suite's claimed .txt over with a ProgId of its own,
// and an older build left its override: the start puts the handler back and carries the override over
// into the flag, retiring it, as its log says. (What each writes, and that a start which finds the flag
// leaves an override alone, is the registry contract's, through the same registry port.) With the flag
// on, a window of the class that Windows' Explorer makes, from a program named explorer.exe, is noticed
// by the hook; Wine's ShellWindows lists no window (get_Count is not implemented), so its steps never
// run, and the window is given up on once. (Which classes and programs are followed is the core's.)
TEST_F(explorer_integration, at_start_a_hijacked_handler_is_put_back_the_override_retired_and_a_new_window_followed) {
    const std::wstring hijacker = CLASSES + L"Veldrake.Hijacker";
    const std::wstring handler = hijacker + L"\\ShellEx\\IconHandler";
    const scope_exit clean([&] {
        test_registry::delete_tree(HKEY_CURRENT_USER, CLASSES + L"SystemFileAssociations\\.txt");
        test_registry::delete_tree(HKEY_CURRENT_USER, CLASSES + L".txt");
        test_registry::delete_tree(HKEY_CURRENT_USER, hijacker);
        test_registry::delete_tree(HKEY_CURRENT_USER, CLASSES + L"txtfile\\ShellEx");  // Wine's own ProgId of .txt
        test_registry::delete_tree(HKEY_CURRENT_USER, SUITE_KEY);
        test_registry::delete_tree(HKEY_CURRENT_USER, CLASSES + L"CLSID\\{52205fd8-5dfb-447d-801a-d0b52f2e83e1}");
    });
    test_registry::set_string(HKEY_CURRENT_USER, CLASSES + L"SystemFileAssociations\\.txt\\ShellEx\\IconHandler", nullptr, SUITE_CLASS);
    test_registry::set_string(HKEY_CURRENT_USER, CLASSES + L".txt", nullptr, L"Veldrake.Hijacker");
    test_registry::set_string(HKEY_CURRENT_USER, handler, nullptr, L"{hijacker}");
    test_registry::delete_tree(HKEY_CURRENT_USER, SUITE_KEY);
    test_registry::set_string(HKEY_CURRENT_USER, LEGACY_KEY, nullptr, LEGACY_COMMAND);
    test_registry::set_string(HKEY_CURRENT_USER, LEGACY_KEY, L"DelegateExecute", L"");
    const log_mark log(tray_log_file());
    running_tray tray(true, short_timers_tray_exe());
    const std::string repaired = "[INFO] Repaired 1 hijacked shell handler registration(s)";
    EXPECT_TRUE(poll_until([&] { return log.count(repaired) == 1; }));
    const std::string adopted = "[INFO] [navigation-start] Adopted the starting location flag: 1 (legacy override retired)";
    EXPECT_TRUE(poll_until([&] { return log.count(adopted) == 1; }));

    const resident double_explorer(L"explorer.exe", "window CabinetWClass");
    const std::string gave_up =
        "[INFO] [navigation-display] Gave up on a new Explorer window (Search filters not applied, Quick pins not applied)";
    EXPECT_TRUE(poll_until([&] { return log.count(gave_up) == 1; }));
    // Six seconds more also keep the tray, a ShellWindows client until the give-up, from ending so soon
    // after its last pass that Wine's desktop goes with it.
    EXPECT_FALSE(poll_until([&] { return log.count(gave_up) > 1; }, 6s)) << "given up once";
}
