#include "common/wine_process_win32.h"
#include "platform/string_conversion.h"
#include "settings/high_level_settings.h"
#include "win32/process_scenario_runner_win32.h"

#include <fmt/format.h>
#include <fmt/xchar.h>
#include <gtest/gtest.h>

#include <fstream>

namespace {

// A settings folder of the test's own beside the tray's, removed at the end.
class settings_folder_test : public testing::Test {
protected:
    void TearDown() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder(), ignored);
    }

    std::wstring app_name() const { return fmt::format(L"Settings Test {}", GetCurrentProcessId()); }
    std::filesystem::path folder() const;
    std::filesystem::path user_file() const { return folder() / L"High Level Settings.json"; }

    static void write(const std::filesystem::path& file, int font_size) {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out << fmt::format(R"({{"apps":[{{"app_id":"context-menu-replacement","status":"enabled",)"
                           R"("settings":{{"appearance":{{"fontSizeDip":{}}}}}}}]}})",
                           font_size);
    }
    static FILETIME stamp(const std::filesystem::path& file) {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        EXPECT_TRUE(GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data));
        return data.ftLastWriteTime;
    }
    static void set_stamp(const std::filesystem::path& file, FILETIME time) {
        HANDLE handle = CreateFileW(file.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
        ASSERT_NE(handle, INVALID_HANDLE_VALUE);
        EXPECT_TRUE(SetFileTime(handle, nullptr, nullptr, &time));
        CloseHandle(handle);
    }
    static FILETIME moved(FILETIME time, int64_t by) {
        ULARGE_INTEGER value{{time.dwLowDateTime, time.dwHighDateTime}};
        value.QuadPart += by;
        return {value.LowPart, value.HighPart};
    }
};

std::filesystem::path product_folder() {
    return common::setting_utilities::platform_settings_file_system().local_app_data() / L"Kestrane" / L"Veldrake";
}

std::filesystem::path settings_folder_test::folder() const { return product_folder() / app_name(); }

int font_size(const high_level_settings::settings_file& s) {
    return s.get_int("context-menu-replacement", "appearance.fontSizeDip", -1);
}

constexpr int64_t one_day = 24LL * 3600 * 10000000;

}  // namespace

TEST_F(settings_folder_test, the_shipped_default_is_copied_on_first_use_and_after_the_file_is_deleted) {
    high_level_settings::settings_file s(app_name(), L"High Level Settings");
    ASSERT_EQ(s.path(), user_file()) << "LocalAppData\\Kestrane\\Veldrake\\<app>\\<stem>.json";
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(font_size(s), 12);
    EXPECT_EQ(s.get_string_list("context-menu-replacement", "dialogs.allowedProcessNames", {}),
              std::vector<std::wstring>{L"notepad.exe"});

    write(user_file(), 20);
    set_stamp(user_file(), moved(stamp(user_file()), one_day));
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(font_size(s), 20);

    ASSERT_TRUE(std::filesystem::remove(user_file()));
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(font_size(s), 12);
    EXPECT_TRUE(std::filesystem::exists(user_file()));
}

TEST_F(settings_folder_test, the_time_stamp_alone_tells_whether_the_file_is_read_again) {
    high_level_settings::settings_file s(app_name(), L"High Level Settings");
    std::filesystem::create_directories(folder());
    write(user_file(), 20);
    const FILETIME loaded_at = stamp(user_file());
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(font_size(s), 20);

    // New content under the loaded stamp is not seen...
    write(user_file(), 21);
    set_stamp(user_file(), loaded_at);
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(font_size(s), 20);

    // ...until the stamp moves, here backwards, while the content stays as it is.
    set_stamp(user_file(), moved(loaded_at, -one_day));
    ASSERT_TRUE(s.reload_if_changed(false));
    EXPECT_EQ(font_size(s), 21);
}

// A process of its own, so that the default folder is worked out beside a program of the test's choice.
TEST(settings_first_use, copies_the_default_with_an_info_line_or_logs_critical_and_keeps_defaults) {
    const struct {
        const char* name;
        bool with_default;
        const char* read;
        const char* logged;
        const char* not_logged;
    } cases[] = {
        {"default present", true, "runner: loaded true enabled true font size 12", "[INFO] Copied default settings from ",
         "[CRITICAL]"},
        {"default missing", false, "runner: loaded false enabled false font size -1",
         "[CRITICAL] Unable to copy settings file. Details ", "Copied default settings"},
    };
    const auto root = scenario_runner::fresh_folder(L"settings runner");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::wstring app = fmt::format(L"Settings Runner {} {}", GetCurrentProcessId(), c.with_default);
        const auto program_folder = root / to_wide(c.name);
        const auto outcome = scenario_runner::run(program_folder, fmt::format(L"settings \"{}\"", app), c.with_default);
        EXPECT_EQ(outcome.exit_code, 0u);
        EXPECT_EQ(scenario_runner::lines_with(outcome.log, c.read).size(), 1u);
        const auto logged = scenario_runner::lines_with(outcome.log, c.logged);
        ASSERT_EQ(logged.size(), 1u);
        EXPECT_TRUE(scenario_runner::lines_with(outcome.log, c.not_logged).empty());
        if (c.with_default) {
            const std::string source = to_utf8((program_folder / L"Content\\Configurations\\High Level Settings.json").wstring());
            EXPECT_NE(logged[0].find(source + " to "), std::string::npos) << logged[0];
        }
        std::filesystem::remove_all(product_folder() / app);
    }
    std::filesystem::remove_all(root);
}
