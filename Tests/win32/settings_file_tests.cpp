#include "common/wine_process_win32.h"
#include "platform/scope_exit.h"
#include "settings/high_level_settings.h"
#include "win32/test_log_win32.h"

#include <gtest/gtest.h>

// The shipped default beside this program is copied into the user's LocalAppData on first use, when it
// is there. When the copy is read again is shown by the host tests, which read this platform's stamps
// when they run under Wine.
TEST(settings_file, comes_from_the_shipped_default_into_local_app_data) {
    auto& file_system = common::setting_utilities::platform_settings_file_system();
    const std::wstring app = L"Settings Test " + std::to_wstring(GetCurrentProcessId());
    const auto folder = file_system.local_app_data() / L"Kestrane" / L"Veldrake" / app;
    const scope_exit remove([&] { std::filesystem::remove_all(folder); });
    high_level_settings::settings_file s(app, L"High Level Settings");
    ASSERT_EQ(s.path(), folder / L"High Level Settings.json");

    const auto shipped = test_support::this_program().parent_path() / L"Content\\Configurations\\High Level Settings.json";
    const auto away = std::filesystem::path(shipped).concat(L".away");
    std::filesystem::rename(shipped, away);
    std::error_code ignored;
    const scope_exit put_back([&] { std::filesystem::rename(away, shipped, ignored); });
    const test_support::log_mark before_missing(test_log_path());
    EXPECT_FALSE(s.reload_if_changed(false)) << "no default to copy";
    const auto critical = before_missing.messages();
    ASSERT_EQ(critical.size(), 1u);
    EXPECT_EQ(critical[0].rfind("[CRITICAL] Unable to copy settings file. Details ", 0), 0u) << critical[0];

    std::filesystem::rename(away, shipped);
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(s.get_int("context-menu-replacement", "appearance.fontSizeDip", -1), 12);
}
