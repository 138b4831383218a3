#include "common/test_registry_win32.h"
#include "platform/theme_win32.h"
#include "platform/unique_resource_win32.h"

#include <gtest/gtest.h>

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
