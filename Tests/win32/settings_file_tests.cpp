#include "common/wine_process_win32.h"
#include "platform/scope_exit.h"
#include "platform/string_conversion.h"
#include "settings/high_level_settings.h"
#include "win32/test_log_win32.h"

#include <gtest/gtest.h>

#include <fstream>

namespace {

void set_stamp(const std::filesystem::path& file, uint64_t stamp) {
    HANDLE handle = CreateFileW(file.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(handle, INVALID_HANDLE_VALUE);
    const FILETIME time{static_cast<DWORD>(stamp), static_cast<DWORD>(stamp >> 32)};
    EXPECT_TRUE(SetFileTime(handle, nullptr, nullptr, &time));
    CloseHandle(handle);
}

}  // namespace

// The shipped default beside this program is copied on first use, when it is there; after that, the
// time stamp alone tells whether the file is read again.
TEST(settings_file, comes_from_the_shipped_default_and_is_read_again_when_its_stamp_moves) {
    auto& file_system = common::setting_utilities::platform_settings_file_system();
    const std::wstring app = L"Settings Test " + std::to_wstring(GetCurrentProcessId());
    const auto folder = file_system.local_app_data() / L"Kestrane" / L"Veldrake" / app;
    const scope_exit remove([&] { std::filesystem::remove_all(folder); });
    high_level_settings::settings_file s(app, L"High Level Settings");
    const auto font_size = [&] { return s.get_int("context-menu-replacement", "appearance.fontSizeDip", -1); };
    ASSERT_EQ(s.path(), folder / L"High Level Settings.json");

    const auto shipped = test_support::this_program().parent_path() / L"Content\\Configurations\\High Level Settings.json";
    const auto away = std::filesystem::path(shipped).concat(L".away");
    std::filesystem::rename(shipped, away);
    std::error_code ignored;
    const scope_exit put_back([&] { std::filesystem::rename(away, shipped, ignored); });
    const test_support::log_mark before_missing(test_log_path());
    EXPECT_FALSE(s.reload_if_changed(false)) << "no default to copy";
    EXPECT_EQ(font_size(), -1);
    const auto critical = before_missing.messages();
    ASSERT_EQ(critical.size(), 1u);
    EXPECT_EQ(critical[0].rfind("[CRITICAL] Unable to copy settings file. Details ", 0), 0u) << critical[0];

    std::filesystem::rename(away, shipped);
    const test_support::log_mark before_copy(test_log_path());
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(font_size(), 12);
    EXPECT_EQ(before_copy.messages(), std::vector<std::string>{"[INFO] Copied default settings from " + to_utf8(shipped.wstring()) +
                                                              " to " + to_utf8(s.path().wstring())});

    const uint64_t loaded_at = *file_system.last_write_time(s.path());
    std::ofstream(s.path(), std::ios::trunc)
        << R"({"apps":[{"app_id":"context-menu-replacement","settings":{"appearance":{"fontSizeDip":20}}}]})";
    set_stamp(s.path(), loaded_at);
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(font_size(), 12) << "new content under the loaded stamp is not seen";
    set_stamp(s.path(), loaded_at - 24ULL * 3600 * 10000000);
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(font_size(), 20) << "a stamp that moved back, with the content as it was, is read again";
}
