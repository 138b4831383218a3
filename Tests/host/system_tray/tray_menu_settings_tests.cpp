#include "host/settings/settings_sandbox.h"
#include "tray_menu_settings.h"

#include <gtest/gtest.h>

namespace {

std::string menu_document(std::string_view appearance) {
    return fmt::format(R"({{"version":"1.0","apps":[{{"app_id":"context-menu-replacement","name":"Menu",)"
                       R"("status":"enabled","settings":{{"appearance":{}}}}}]}})",
                       appearance);
}

}  // namespace

TEST(tray_menu_settings, reads_the_context_menu_appearance_with_its_defaults) {
    const struct {
        const char* name;
        std::string appearance;
        int64_t size;
        std::wstring family;
        std::string weight;
    } cases[] = {
        {"all set", R"({"fontSizeDip": 14, "fontFamily": "Cascadia Code", "fontWeight": "Semibold"})", 14,
         L"Cascadia Code", "Semibold"},
        {"absent", R"({})", 12, L"", "Regular"},
        {"wrong types", R"({"fontSizeDip": "14", "fontFamily": 3, "fontWeight": ["Bold"]})", 12, L"", "Regular"},
        {"out of range is the layout's to clamp", R"({"fontSizeDip": 100})", 100, L"", "Regular"},
        {"non-ASCII family", R"({"fontFamily": "Gr\u00fcn Sans"})", 12, L"Gr\u00fcn Sans", "Regular"},
    };
    int hour = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        settings_sandbox sandbox;
        auto file = sandbox.open();
        settings_sandbox::write(sandbox.user_file(), menu_document(c.appearance), ++hour);
        ASSERT_TRUE(file->reload_if_changed(false));
        const tray_menu_layout::font_settings font = read_menu_font_settings(*file);
        EXPECT_EQ(font.size_dip, c.size);
        EXPECT_EQ(font.family, c.family);
        EXPECT_EQ(font.weight, c.weight);
    }
}

TEST(tray_menu_settings, a_missing_document_gives_the_defaults) {
    settings_sandbox sandbox;
    auto file = sandbox.open();
    file->reload_if_changed(false);
    const tray_menu_layout::font_settings font = read_menu_font_settings(*file);
    EXPECT_EQ(font.size_dip, 12);
    EXPECT_EQ(font.family, L"");
    EXPECT_EQ(font.weight, "Regular");
}
