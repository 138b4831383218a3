#include "common/test_registry_win32.h"
#include "doubles/sibling_doubles_win32.h"
#include "e2e/tray_harness_win32.h"
#include "e2e/tray_presentation_desktop_win32.h"
#include "platform/scope_exit.h"
#include "platform/suite_identity.h"
#include "platform/unique_resource_win32.h"
#include "toasts/notification_window_win32.h"
#include "toasts/tray_toast_ipc_win32.h"

#include <psapi.h>
#include <shellapi.h>

#include <gtest/gtest.h>

#include <algorithm>

using namespace e2e;
using test_support::child_process;
using test_support::poll_until;
using tray_toast_ipc::toast_click_action;

namespace {

std::filesystem::path bin() { return tray_exe().parent_path(); }

// The visible window of that class (and title) that the process owns, once it shows.
HWND wait_for_window(DWORD process_id, const wchar_t* window_class, const wchar_t* title = nullptr) {
    HWND found = nullptr;
    poll_until([&] {
        while ((found = FindWindowExW(nullptr, found, window_class, title)) != nullptr) {
            DWORD owner = 0;
            GetWindowThreadProcessId(found, &owner);
            if (owner == process_id && IsWindowVisible(found)) return true;
        }
        return false;
    });
    return found;
}

HWND wait_for_notification(DWORD tray) { return wait_for_window(tray, toast_utilities::NOTIFICATION_WINDOW_CLASS); }

// Keeps a picture of the window and clicks its middle with the real pointer, as a person would.
void picture_and_click(HWND window, const wchar_t* name, bool click = true) {
    RECT r{};
    GetWindowRect(window, &r);
    const auto folder = desktop::artifacts_folder();
    if (desktop::screenshot(folder / (std::wstring(name) + L"-desktop.png"))) {
        desktop::crop(folder / (std::wstring(name) + L"-desktop.png"), folder / (std::wstring(name) + L".png"), r);
    }
    if (click) EXPECT_TRUE(desktop::click({(r.left + r.right) / 2, (r.top + r.bottom) / 2}, 1));
}

LRESULT send_copy_data(HWND tray, ULONG_PTR id, const std::wstring* payload, DWORD bytes) {
    COPYDATASTRUCT copy{id, bytes, payload ? const_cast<wchar_t*>(payload->c_str()) : nullptr};
    DWORD_PTR reply = 99;
    SendMessageTimeoutW(tray, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy), SMTO_BLOCK | SMTO_ABORTIFHUNG, 5000, &reply);
    return static_cast<LRESULT>(reply);
}

bool sent(toast_click_action action, const std::wstring& arg, const std::wstring& title) {
    return tray_toast_ipc::send_toast_request(
        {(bin() / L"Content\\Icons\\veldrake-logo-ai.ico").wstring(), L"Veldrake", title, L"Click to continue", action, arg});
}

// The arguments (after the program) of the first run of a double, once it has run.
std::vector<std::wstring> first_run_arguments(const std::filesystem::path& record) {
    std::vector<sibling_doubles::run_record> runs;
    poll_until([&] { return !(runs = sibling_doubles::read_records(record)).empty(); });
    if (runs.empty()) return {};
    int count = 0;
    wchar_t** argv = CommandLineToArgvW(runs[0].command_line.c_str(), &count);
    std::vector<std::wstring> arguments(argv + 1, argv + count);
    LocalFree(argv);
    return arguments;
}

// Makes `program` record its runs into a fresh file beside the artifacts.
std::filesystem::path record_runs_of(const wchar_t* program) {
    const auto record = desktop::artifacts_folder().parent_path() / (std::wstring(program) + L".record.txt");
    std::filesystem::remove(record);
    sibling_doubles::control(bin() / program, record);
    return record;
}

// A tray started by someone else (the sender) ends through its window.
void close_any_tray() {
    if (HWND tray = FindWindowW(TRAY_WINDOW_CLASS, nullptr)) PostMessageW(tray, WM_CLOSE, 0, 0);
    poll_until([] { return FindWindowW(TRAY_WINDOW_CLASS, nullptr) == nullptr; });
}

const std::wstring personalize = L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";

class toast_requests : public testing::Test {
protected:
    void SetUp() override {
        close_any_tray();
        reset_tray_state();
    }
    void TearDown() override {
        desktop::click_empty_desktop();
        for (const wchar_t* name : {L"Veldrake.exe", L"Tessary.Common.BatchProcessor.exe"}) {
            sibling_doubles::remove_control(bin() / name);
        }
        test_registry::delete_value(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme");
        close_any_tray();
        reset_tray_state();
    }
};

}  // namespace

TEST_F(toast_requests, refused_messages_answer_0_and_only_a_malformed_request_is_logged) {
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    const size_t before = read_lines(tray_log_file()).size();
    const std::wstring good = tray_toast_ipc::encode_toast_request({L"", L"", L"t", L"x", toast_click_action::none, L""});
    const std::wstring six_fields = L"1\u0001\u0001\u0001title\u0001text\u00010";
    const auto id = tray_toast_ipc::TOAST_COPYDATA_ID;
    EXPECT_EQ(send_copy_data(tray.window(), 0x4B445655, &good, 2 * (good.size() + 1)), 0) << "another dwData";
    EXPECT_EQ(send_copy_data(tray.window(), id, nullptr, 0), 0) << "no data";
    EXPECT_EQ(send_copy_data(tray.window(), id, &good, 0), 0) << "cbData 0";
    EXPECT_EQ(send_copy_data(tray.window(), id, &good, 1), 0) << "cbData 1";
    EXPECT_EQ(read_lines(tray_log_file()).size(), before) << "refused silently";

    EXPECT_EQ(send_copy_data(tray.window(), id, &six_fields, 2 * (six_fields.size() + 1)), 0);
    const auto lines = read_lines(tray_log_file());
    ASSERT_EQ(lines.size(), before + 1);
    EXPECT_NE(lines.back().find("[WARNING] toast_dispatcher: ignoring a malformed toast request"), std::string::npos);
}

TEST_F(toast_requests, a_sender_starts_the_tray_and_a_click_on_its_toast_opens_the_settings_tab) {
    const auto record = record_runs_of(L"Veldrake.exe");
    const child_process sender = child_process::start(
        test_support::this_program(), L"--send-toast \"Context menu\" \"Click to open its settings\" 1 context-menu-replacement");
    EXPECT_EQ(sender.wait_exit(), 0u);
    HWND tray = nullptr;
    ASSERT_TRUE(poll_until([&] { return (tray = FindWindowW(TRAY_WINDOW_CLASS, nullptr)) != nullptr; })) << "no tray started";
    DWORD tray_process = 0;
    GetWindowThreadProcessId(tray, &tray_process);
    const HWND notification = wait_for_notification(tray_process);
    ASSERT_NE(notification, nullptr) << "no notification from the tray";
    picture_and_click(notification, L"toast-light");
    EXPECT_EQ(first_run_arguments(record), std::vector<std::wstring>{L"--open-tab=context-menu-replacement"});
    EXPECT_TRUE(poll_until([&] { return !IsWindow(notification); })) << "the clicked notification stays";
}

TEST_F(toast_requests, an_add_to_index_toast_starts_the_batch_helper_with_its_folders) {
    const auto record = record_runs_of(L"Tessary.Common.BatchProcessor.exe");
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    ASSERT_TRUE(sent(toast_click_action::add_to_index, L"--subject:Photos\u0002C:\\\u0002\u0002D:\\Data\\", L"Add to index"));
    const HWND notification = wait_for_notification(tray.process().id());
    ASSERT_NE(notification, nullptr);
    picture_and_click(notification, L"toast-add-to-index");
    // The interpreter's "start" may re-quote the line; what counts is what the helper receives.
    EXPECT_EQ(first_run_arguments(record),
              (std::vector<std::wstring>{L"--add-index-scope", L"--subject:Photos", L"C:", L"D:\\Data"}));
}

// Another program ending the tray politely posts WM_CLOSE to each of its windows, the notification too.
TEST_F(toast_requests, a_notification_closed_from_outside_is_dismissed_and_the_tray_goes_on) {
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    ASSERT_TRUE(sent(toast_click_action::none, L"", L"First"));
    const HWND first = wait_for_notification(tray.process().id());
    ASSERT_NE(first, nullptr);
    PostMessageW(first, WM_CLOSE, 0, 0);
    EXPECT_TRUE(poll_until([&] { return !IsWindow(first); }));
    ASSERT_TRUE(sent(toast_click_action::none, L"", L"Second"));
    EXPECT_NE(wait_for_notification(tray.process().id()), nullptr) << "the dispatcher shows the next one";
    EXPECT_EQ(tray.close(), 0u) << "and stops at its next poll";
}

TEST_F(toast_requests, a_flood_from_four_senders_leaves_the_tray_responsive_and_its_memory_flat) {
    test_registry::set_dword(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme", 0);
    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    // A first toast shows, in the dark theme, so the flood meets a busy dispatcher.
    ASSERT_TRUE(sent(toast_click_action::none, L"", L"Dark theme"));
    const HWND notification = wait_for_notification(tray.process().id());
    ASSERT_NE(notification, nullptr);
    picture_and_click(notification, L"toast-dark", false);
    RECT r{};
    GetWindowRect(notification, &r);
    const uint32_t rgb = desktop::capture({r.right - 8, r.bottom - 8, r.right - 4, r.bottom - 4}).at(r.right - 6, r.bottom - 6);
    EXPECT_LT(((rgb >> 16) & 0xFF) + ((rgb >> 8) & 0xFF) + (rgb & 0xFF), 3u * 96) << "a dark background";

    const unique_handle process(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, tray.process().id()));
    const auto private_bytes = [&] {
        PROCESS_MEMORY_COUNTERS_EX counters{};
        GetProcessMemoryInfo(process.get(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters), sizeof(counters));
        return counters.PrivateUsage;
    };
    const SIZE_T before = private_bytes();
    std::vector<child_process> senders;
    for (const wchar_t* tag : {L"a", L"b", L"c", L"d"}) {
        senders.push_back(child_process::start(test_support::this_program(), std::wstring(L"--flood 2500 ") + tag));
    }
    DWORD_PTR ignored = 0;
    while (std::any_of(senders.begin(), senders.end(), [](const child_process& s) { return s.running(); })) {
        EXPECT_NE(SendMessageTimeoutW(tray.window(), WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 5000, &ignored), 0) << "responsive";
        Sleep(20);
    }
    for (const auto& sender : senders) EXPECT_EQ(sender.wait_exit(), 0u) << "every request was taken";
    EXPECT_LT(private_bytes(), before + 8 * 1024 * 1024) << "at most three requests wait: memory stays flat";
}

// A system whose shell cannot start programs and whose Settings app is missing: the direct start
// fails too, and the user is told why.
TEST_F(toast_requests, a_settings_app_that_cannot_start_gives_the_failure_dialog) {
    // The shell's automation classes point at a class that does not exist, so both shell roads fail.
    const std::wstring treat_as[] = {L"Software\\Classes\\CLSID\\{13709620-C279-11CE-A49E-444553540000}\\TreatAs",
                                     L"Software\\Classes\\CLSID\\{9BA05972-F6A8-11CF-A442-00A0C90A8F39}\\TreatAs"};
    for (const auto& key : treat_as) {
        test_registry::set_string(HKEY_LOCAL_MACHINE, key, nullptr, L"{6F1E2D3C-0000-4A5B-9C8D-000000000001}");
    }
    const auto settings = bin() / L"Veldrake.exe", away = bin() / L"Veldrake.exe.away";
    std::filesystem::rename(settings, away);
    const scope_exit restore([&] {
        std::error_code ignored;
        std::filesystem::rename(away, settings, ignored);
        for (const auto& key : treat_as) test_registry::delete_tree(HKEY_LOCAL_MACHINE, key);
    });

    running_tray tray;
    ASSERT_NE(tray.window(), nullptr);
    ASSERT_TRUE(sent(toast_click_action::open_settings_tab, L"settings", L"Open settings"));
    const HWND notification = wait_for_notification(tray.process().id());
    ASSERT_NE(notification, nullptr);
    picture_and_click(notification, L"toast-settings");

    const HWND dialog = wait_for_window(tray.process().id(), L"#32770", L"Veldrake");
    ASSERT_NE(dialog, nullptr) << "no failure dialog";
    picture_and_click(dialog, L"settings-failure-dialog", false);
    std::wstring text;
    EnumChildWindows(
        dialog,
        [](HWND child, LPARAM out) -> BOOL {
            wchar_t buffer[2048] = {};
            GetWindowTextW(child, buffer, 2048);
            if (std::wcsstr(buffer, L"Settings app")) *reinterpret_cast<std::wstring*>(out) = buffer;
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&text));
    EXPECT_EQ(text.rfind(L"The Veldrake Settings app could not be started.", 0), 0u) << text;
    EXPECT_NE(text.find(settings.wstring()), std::wstring::npos) << text;
    EXPECT_NE(text.find(L"(error 2)"), std::wstring::npos) << text;
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    EXPECT_TRUE(poll_until([&] { return !IsWindow(dialog); }));

    const auto lines = read_lines(tray_log_file());
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
        return line.find("[ERROR] Failed to launch the Settings app ") != std::string::npos && line.ends_with(": error 2");
    }));
}
