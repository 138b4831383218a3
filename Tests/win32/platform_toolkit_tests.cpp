#include "common/test_registry_win32.h"
#include "platform/paths_win32.h"
#include "platform/theme_win32.h"
#include "platform/unique_resource_win32.h"
#include "platform/window_impl_win32.h"

#include <gtest/gtest.h>

#include <vector>

TEST(unique_resource, reset_keeps_last_error_and_put_releases_first) {
    unique_handle event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    ASSERT_TRUE(event);
    SetLastError(ERROR_FILE_NOT_FOUND);
    event.reset();
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));

    // A named event vanishes with its last handle: put() must have closed the first one.
    unique_handle named;
    *named.put() = CreateEventW(nullptr, TRUE, FALSE, L"Local\\veldrake_test_put_first");
    *named.put() = CreateEventW(nullptr, TRUE, FALSE, L"Local\\veldrake_test_put_second");
    EXPECT_EQ(OpenEventW(SYNCHRONIZE, FALSE, L"Local\\veldrake_test_put_first"), nullptr);
    EXPECT_TRUE(named);
}

TEST(unique_resource, owned_mutex_is_released_for_the_next_owner) {
    const wchar_t name[] = L"Local\\veldrake_test_owned_mutex";
    {
        unique_owned_mutex held(CreateMutexW(nullptr, TRUE, name));
        ASSERT_TRUE(held);
    }
    unique_owned_mutex again(CreateMutexW(nullptr, TRUE, name));
    EXPECT_NE(GetLastError(), static_cast<DWORD>(ERROR_ALREADY_EXISTS)) << "closing the last handle removed it";
}

TEST(theme, dark_mode_only_for_a_dword_of_zero) {
    const std::wstring key = L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";
    const struct {
        const char* name;
        int dword;  // -1: absent, -2: a string "0"
        bool dark;
    } cases[] = {{"absent", -1, false}, {"light", 1, false}, {"dark", 0, true}, {"other", 2, false}, {"string", -2, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        test_registry::delete_value(HKEY_CURRENT_USER, key, L"AppsUseLightTheme");
        if (c.dword >= 0) test_registry::set_dword(HKEY_CURRENT_USER, key, L"AppsUseLightTheme", c.dword);
        if (c.dword == -2) test_registry::set_string(HKEY_CURRENT_USER, key, L"AppsUseLightTheme", L"0");
        EXPECT_EQ(is_dark_mode(), c.dark);
    }
    test_registry::delete_value(HKEY_CURRENT_USER, key, L"AppsUseLightTheme");
}

TEST(paths, module_folder_and_app_data_chain) {
    wchar_t exe[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, exe, MAX_PATH);
    EXPECT_EQ(module_folder(), std::filesystem::path(exe).parent_path());

    const auto folder = app_data_folder(L"Test Chain", L"Inner");
    EXPECT_TRUE(std::filesystem::is_directory(folder));
    EXPECT_EQ(folder.filename(), L"Inner");
    EXPECT_EQ(folder.parent_path().parent_path().filename(), L"Veldrake");
    EXPECT_EQ(folder.parent_path().parent_path().parent_path().filename(), L"Kestrane");
    std::filesystem::remove_all(folder.parent_path());
}

namespace {

class recording_window : public window_impl<recording_window> {
public:
    static window_class_info class_info() noexcept { return {L"VeldrakeTestRecordingWnd", 0, nullptr, 0}; }
    LRESULT process_message(UINT message, WPARAM w, LPARAM, bool& handled) {
        seen.push_back(message);
        if (message == WM_APP + 7) return static_cast<LRESULT>(w * 2);
        handled = false;
        return 0;
    }
    std::vector<UINT> seen;
};

}  // namespace

TEST(window_impl, forwards_messages_to_its_object_and_the_rest_to_the_default) {
    recording_window window;
    ASSERT_NE(window.create(L"recorder", WS_OVERLAPPEDWINDOW), nullptr);
    const HWND hwnd = window.hwnd();
    EXPECT_EQ(SendMessageW(hwnd, WM_APP + 7, 21, 0), 42);
    wchar_t title[32] = {};
    GetWindowTextW(hwnd, title, 32);  // WM_GETTEXT unhandled: the default procedure answers
    EXPECT_STREQ(title, L"recorder");
    EXPECT_EQ(window.seen.front(), static_cast<UINT>(WM_NCCREATE));
    DestroyWindow(hwnd);
    EXPECT_EQ(window.hwnd(), nullptr) << "forgotten after WM_NCDESTROY";
    EXPECT_EQ(window.seen.back(), static_cast<UINT>(WM_NCDESTROY));
}
