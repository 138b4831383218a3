#include "common/test_registry_win32.h"
#include "doubles/search_manager/search_manager_double.h"
#include "e2e/tray_harness_win32.h"
#include "e2e/tray_presentation_desktop_win32.h"
#include "platform/scope_exit.h"
#include "platform/string_conversion.h"
#include "presentation/tray_badge.h"
#include "tray_messages.h"

#include <gtest/gtest.h>

using namespace e2e;

namespace {

const std::wstring search_manager_class = L"Software\\Classes\\CLSID\\{7D096C5F-AC08-4F1F-BEB7-5C22C517CE39}";
const std::wstring namespace_class = L"Software\\Classes\\CLSID\\{249AE234-08DF-4686-AAF3-5D80A15493BE}";

// The index watch of the short-timers tray: a sample every 2 s and a stall limit of one minute.
class index_watch_tray : public tray_test {
protected:
    void SetUp() override {
        tray_test::SetUp();
        test_registry::delete_tree(HKEY_CURRENT_USER, namespace_class);
        set_counts(0, 1000);
    }
    void TearDown() override {
        tray_test::TearDown();
        test_registry::delete_tree(HKEY_LOCAL_MACHINE, search_manager_class);
        test_registry::delete_tree(HKEY_CURRENT_USER, SEARCH_MANAGER_DOUBLE_KEY);
        test_registry::delete_tree(HKEY_CURRENT_USER, namespace_class);
    }
    static void set_counts(uint32_t items_to_index, uint32_t total_items) {
        test_registry::set_dword(HKEY_CURRENT_USER, SEARCH_MANAGER_DOUBLE_KEY, L"ItemsToIndex", items_to_index);
        test_registry::set_dword(HKEY_CURRENT_USER, SEARCH_MANAGER_DOUBLE_KEY, L"TotalItems", total_items);
    }
    // Wine does not merge the per-user classes into HKEY_CLASSES_ROOT: the machine's it is.
    static void register_search_manager() {
        const std::wstring server = search_manager_class + L"\\InprocServer32";
        test_registry::set_string(HKEY_LOCAL_MACHINE, server, nullptr,
                                  (this_program().parent_path() / L"search_manager_double.dll").wstring());
        test_registry::set_string(HKEY_LOCAL_MACHINE, server, L"ThreadingModel", L"Both");
    }
    // Whether the root node shows `tip` with the icon file `icon` from beside the tray.
    bool namespace_shows(const std::wstring& tip, const wchar_t* icon) const {
        const std::wstring path = (short_timers_tray_exe().parent_path() / L"Content\\Icons" / icon).wstring() + L",0";
        return poll_until([&] {
            return test_registry::get_string(HKEY_CURRENT_USER, namespace_class, L"InfoTip") == tip &&
                   test_registry::get_string(HKEY_CURRENT_USER, namespace_class + L"\\DefaultIcon", nullptr) == path;
        });
    }
    // A dialog of the tray once one shows, after `gone` has closed.
    HWND wait_for_dialog(std::chrono::milliseconds timeout, HWND gone = nullptr) const {
        EXPECT_TRUE(poll_until([&] { return !IsWindow(gone); }));
        std::vector<HWND> dialogs;
        poll_until([&] { return !(dialogs = windows_of(tray->process().id(), L"#32770")).empty(); }, timeout);
        return dialogs.empty() ? nullptr : dialogs.front();
    }
    std::optional<running_tray> tray;
};

}  // namespace

// The test build says what it is right after its first line. Without Windows Search each sample logs
// the failure and wants the problem icon; while that file is missing, each sample logs it and writes
// nothing. With the manager double its counts decide: the namespace root, the menu's dot and the badge
// follow them. Five items that do not move for the limit give the prompt, whose "Restart" runs the
// elevated command, and its exit code 1 shows the failure. (Which status gives which colour and icon,
// the tip of a disabled app, that "Not now" allows no second prompt for the same stall, and that exit
// code 0 ends quietly, are the core's.)
TEST_F(index_watch_tray, follows_the_search_manager_and_prompts_after_a_stall_then_restarts_elevated) {
    // Where Wine puts it, on the search path.
    const system_program_double powershell(known_folder(FOLDERID_System) / L"WindowsPowerShell\\v1.0\\powershell.exe");
    const auto problem = short_timers_tray_exe().parent_path() / L"Content\\Icons\\tessary_indexing-problem.ico";
    const auto away = std::filesystem::path(problem).concat(L".away");
    std::filesystem::rename(problem, away);
    const scope_exit restore([&] {
        std::error_code ignored;
        std::filesystem::rename(away, problem, ignored);
    });
    const log_mark log(tray_log_file());
    tray.emplace(true, short_timers_tray_exe());
    const std::string missing = "[ERROR] Namespace root status icon does not exist: " + to_utf8(problem.wstring());
    EXPECT_TRUE(poll_until([&] { return log.count(missing) >= 2; })) << "logged again at the next sample";
    EXPECT_EQ(log.messages().at(1), "[WARNING] Short timers: this build is for tests") << "right after the first line";
    EXPECT_EQ(test_registry::get_string(HKEY_CURRENT_USER, namespace_class, L"InfoTip"), L"");
    const std::string sampled = "[ERROR] get_items_to_index_count: Failed to create ISearchManager. HRESULT=-2147221164";
    EXPECT_GE(log.count(sampled), 2u) << "logged at each sample";

    std::filesystem::rename(away, problem);
    register_search_manager();
    EXPECT_TRUE(namespace_shows(L"Windows Search indexing is complete.", L"tessary_indexing-complete.ico"));
    const int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    const RECT taskbar{width / 2, height - 24, width, height};
    const auto icon = desktop::find_tray_icon();
    ASSERT_TRUE(icon.has_value());
    ASSERT_TRUE(desktop::click(desktop::centre(*icon), 3));
    // The third item: the indexing status.
    const RECT item = desktop::menu_item(wait_for_window(tray->process().id(), L"#32768"), 3);
    EXPECT_TRUE(poll_until([&] { return desktop::find_colour(item, tray_badge::green & 0xFFFFFF, 40).has_value(); }))
        << "the indexing item's green dot";
    desktop::click_empty_desktop();
    set_counts(5, 1000);
    EXPECT_TRUE(poll_until([&] { return desktop::find_colour(taskbar, tray_badge::gold & 0xFFFFFF, 40).has_value(); }))
        << "the gold badge";
    const HWND prompt = wait_for_dialog(std::chrono::seconds(90));
    ASSERT_NE(prompt, nullptr) << "no prompt after a minute without progress";
    EXPECT_NE(dialog_body(prompt).find(L": 5 item(s) are waiting to be indexed and no progress has been made in the "
                                       L"last 1 minute of active use."),
              std::wstring::npos)
        << to_utf8(dialog_body(prompt));
    EXPECT_EQ(window_text(GetDlgItem(prompt, IDOK)), L"Restart");
    EXPECT_EQ(window_text(GetDlgItem(prompt, IDCANCEL)), L"Not now");
    powershell.runs.exit_with("1");
    PostMessageW(GetDlgItem(prompt, IDOK), BM_CLICK, 0, 0);
    const HWND failure = wait_for_dialog(std::chrono::seconds(20), prompt);
    ASSERT_NE(failure, nullptr) << "no failure dialog after exit code 1";
    EXPECT_EQ(dialog_body(failure),
              L"The Windows Search service could not be restarted. You can restart it manually from the Services app "
              L"(services.msc) or by restarting your computer.");
    const auto runs = powershell.runs.records();
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_NE(runs[0].command_line.find(L"-NoProfile -WindowStyle Hidden -Command \"Restart-Service -Name WSearch -Force\""),
              std::wstring::npos) << to_utf8(runs[0].command_line);
    PostMessageW(GetDlgItem(failure, IDOK), BM_CLICK, 0, 0);
}
