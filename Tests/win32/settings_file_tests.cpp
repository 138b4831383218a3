#include "platform/string_conversion.h"
#include "settings/high_level_settings.h"
#include "win32/process_scenario_runner_win32.h"

#include <fmt/xchar.h>
#include <gtest/gtest.h>

#include <fstream>

namespace {

std::filesystem::path product_folder() {
    return common::setting_utilities::platform_settings_file_system().local_app_data() / L"Kestrane" / L"Veldrake";
}

void set_stamp(const std::filesystem::path& file, uint64_t stamp) {
    HANDLE handle = CreateFileW(file.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(handle, INVALID_HANDLE_VALUE);
    const FILETIME time{static_cast<DWORD>(stamp), static_cast<DWORD>(stamp >> 32)};
    EXPECT_TRUE(SetFileTime(handle, nullptr, nullptr, &time));
    CloseHandle(handle);
}

}  // namespace

// The shipped default is copied on first use and after the file is deleted; between the two, the
// time stamp alone tells whether the file is read again.
TEST(settings_file, comes_from_the_shipped_default_and_is_read_again_when_its_stamp_moves) {
    const std::wstring app = fmt::format(L"Settings Test {}", GetCurrentProcessId());
    high_level_settings::settings_file s(app, L"High Level Settings");
    const auto font_size = [&] { return s.get_int("context-menu-replacement", "appearance.fontSizeDip", -1); };
    ASSERT_EQ(s.path(), product_folder() / app / L"High Level Settings.json");
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(font_size(), 12);

    const uint64_t loaded_at = *common::setting_utilities::platform_settings_file_system().last_write_time(s.path());
    std::ofstream(s.path(), std::ios::trunc)
        << R"({"apps":[{"app_id":"context-menu-replacement","settings":{"appearance":{"fontSizeDip":20}}}]})";
    set_stamp(s.path(), loaded_at);
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(font_size(), 12) << "new content under the loaded stamp is not seen";
    set_stamp(s.path(), loaded_at - 24ULL * 3600 * 10000000);
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(font_size(), 20) << "a stamp that moved back, with the content as it was, is read again";

    ASSERT_TRUE(std::filesystem::remove(s.path()));
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(font_size(), 12);
    EXPECT_TRUE(std::filesystem::exists(s.path()));
    std::filesystem::remove_all(product_folder() / app);
}

// A process of its own, so that the default folder is worked out beside a program of the test's choice.
TEST(settings_first_use, copies_the_default_with_an_info_line_or_logs_critical_and_keeps_defaults) {
    const struct { bool with_default; const char *read, *logged, *not_logged; } cases[] = {
        {true, "runner: loaded true enabled true font size 12", "[INFO] Copied default settings from ", "[CRITICAL]"},
        {false, "runner: loaded false enabled false font size -1", "[CRITICAL] Unable to copy settings file. Details ",
         "Copied default settings"},
    };
    const auto root = scenario_runner::fresh_folder(L"settings runner");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.read);
        const std::wstring app = fmt::format(L"Settings Runner {} {}", GetCurrentProcessId(), c.with_default);
        const auto folder = root / fmt::format(L"{}", c.with_default);
        const auto outcome = scenario_runner::run(folder, fmt::format(L"settings \"{}\"", app), c.with_default);
        EXPECT_EQ(outcome.exit_code, 0u);
        EXPECT_EQ(scenario_runner::lines_with(outcome.log, c.read).size(), 1u);
        const auto logged = scenario_runner::lines_with(outcome.log, c.logged);
        ASSERT_EQ(logged.size(), 1u);
        EXPECT_TRUE(scenario_runner::lines_with(outcome.log, c.not_logged).empty());
        if (c.with_default) {
            const auto source = to_utf8((folder / L"Content\\Configurations\\High Level Settings.json").wstring());
            EXPECT_NE(logged[0].find(source + " to "), std::string::npos) << logged[0];
        }
        std::filesystem::remove_all(product_folder() / app);
    }
    std::filesystem::remove_all(root);
}
