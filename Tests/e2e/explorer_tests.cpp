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

bool has_value(const std::wstring& key, const wchar_t* name, DWORD* dword = nullptr) {
    DWORD size = sizeof(DWORD);
    return RegGetValueW(HKEY_CURRENT_USER, key.c_str(), name, RRF_RT_ANY, nullptr, dword, dword ? &size : nullptr) == ERROR_SUCCESS;
}

using explorer_integration = tray_test;

}  // namespace

// Before the first start another program took the suite's claimed .txt over with a ProgId of its own,
// and an older build left its override: the start puts the handler back, remembering the original, and
// carries the override over into the flag, retiring it. (That a start which finds the flag leaves an
// override alone is the core's, through the same registry port.)
TEST_F(explorer_integration, at_start_a_hijacked_handler_is_put_back_and_the_legacy_override_retired) {
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
    running_tray tray;
    const std::string repaired = "[INFO] Repaired 1 hijacked shell handler registration(s)";
    ASSERT_TRUE(poll_until([&] { return log.count(repaired) == 1; }));
    EXPECT_EQ(test_registry::get_string(HKEY_CURRENT_USER, handler, nullptr), SUITE_CLASS);
    EXPECT_EQ(test_registry::get_string(HKEY_CURRENT_USER, handler, L"tessary_original_icon_handler"), L"{hijacker}");
    const std::string adopted = "[INFO] [navigation-start] Adopted the starting location flag: 1 (legacy override retired)";
    ASSERT_TRUE(poll_until([&] { return log.count(adopted) == 1; }));
    DWORD flag = 0;
    EXPECT_TRUE(has_value(SUITE_KEY, L"ExplorerStartMonitor", &flag) && flag == 1);
    EXPECT_FALSE(has_value(LEGACY_KEY, nullptr) || has_value(LEGACY_KEY, L"DelegateExecute"));
}

// A window of the class that Windows' Explorer makes, from a program named explorer.exe, is noticed by
// the hook; Wine's ShellWindows lists no window (get_Count is not implemented), so its steps never run,
// and the window is given up on once, with both display steps "not applied". (Which classes and programs
// are followed, Wine's own "ExplorerWClass" not among them, is the core's.)
TEST_F(explorer_integration, a_new_explorer_window_is_followed_until_given_up) {
    const scope_exit clean([] { test_registry::delete_tree(HKEY_CURRENT_USER, SUITE_KEY); });
    test_registry::set_dword(HKEY_CURRENT_USER, SUITE_KEY, L"ExplorerStartMonitor", 1);
    const std::string gave_up =
        "[INFO] [navigation-display] Gave up on a new Explorer window (Search filters not applied, Quick pins not applied)";
    const log_mark log(tray_log_file());
    running_tray tray(true, short_timers_tray_exe());
    const resident double_explorer(L"explorer.exe", "window CabinetWClass");
    ASSERT_TRUE(poll_until(
        [&] { return !windows_of(double_explorer.process().id(), L"CabinetWClass", nullptr, true).empty(); }));
    EXPECT_TRUE(poll_until([&] { return log.count(gave_up) == 1; }));
    // Six seconds more also keep the tray, a ShellWindows client until the give-up, from ending so soon
    // after its last pass that Wine's desktop goes with it.
    EXPECT_FALSE(poll_until([&] { return log.count(gave_up) > 1; }, 6s)) << "given up once";
}
