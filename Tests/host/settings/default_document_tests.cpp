#include "host/settings/settings_sandbox.h"

#include <gtest/gtest.h>

#include <vector>

using high_level_settings::setting_value;

namespace {

// The shipped default: beside the test program in the Windows layouts, in the source tree otherwise.
std::filesystem::path shipped_default() {
    auto& platform = common::setting_utilities::platform_settings_file_system();
    const auto beside = platform.default_folder(platform.main_module()) / "High Level Settings.json";
    if (std::filesystem::exists(beside)) return beside;
    return std::filesystem::path(__FILE__).parent_path().parent_path().parent_path().parent_path() / "Content" /
           "Configurations" / "High Level Settings.json";
}

}  // namespace

// Every key the tray reads is in the default with its type, at the value the tray uses without it.
TEST(default_settings_document, holds_every_key_the_tray_reads_at_its_default) {
    const auto parsed = high_level_settings::parse_settings_document(high_level_settings::read_settings_text(shipped_default()));
    ASSERT_TRUE(parsed && parsed->apps);
    const auto& apps = *parsed->apps;

    const std::vector<std::string> excluded{"chrome.exe",  "msedge.exe",          "firefox.exe",
                                            "brave.exe",   "opera.exe",           "vivaldi.exe",
                                            "steam.exe",   "steamwebhelper.exe",  "epicgameslauncher.exe",
                                            "battle.net.exe", "eadesktop.exe",    "riotclientservices.exe",
                                            "easyanticheat.exe", "beservice.exe"};
    const struct {
        const char* app;
        const char* key;
        setting_value value;
    } keys[] = {
        {"tessary", "general.showInExplorerPanel", true},
        {"tessary", "general.searchFiltersNavigationDisplay", std::string("expand_first")},
        {"tessary", "general.showQuickPinsInExplorerPanel", true},
        {"tessary", "general.quickPinsNavigationDisplay", std::string("expand_first")},
        {"tessary", "general.showIndexingStatusOnNamespaceIcon", true},
        {"tessary", "general.showTagsAsIconOverlay", true},
        {"tessary", "general.showRatingAsIconOverlay", true},
        {"tessary", "general.roundedThumbnailCorners", true},
        {"media-keys", "general.showMicrophoneMuteTrayIcon", true},
        {"media-keys", "general.showMicrophoneOnTrayIcon", true},
        {"context-menu-replacement", "appearance.fontSizeDip", int32_t{12}},
        {"context-menu-replacement", "appearance.fontFamily", std::string()},
        {"context-menu-replacement", "appearance.fontWeight", std::string("Regular")},
        {"context-menu-replacement", "dialogs.mode", std::string("all-except")},
        {"context-menu-replacement", "dialogs.allowedProcessNames", std::vector<std::string>{"notepad.exe"}},
        {"context-menu-replacement", "dialogs.excludedProcessNames", excluded},
    };
    for (const auto& k : keys) {
        SCOPED_TRACE(k.key);
        ASSERT_TRUE(apps.count(k.app));
        const auto& record = apps.at(k.app);
        EXPECT_NE(record.status, "disabled");
        ASSERT_TRUE(record.settings.count(k.key));
        EXPECT_EQ(record.settings.at(k.key), k.value);
    }
}
