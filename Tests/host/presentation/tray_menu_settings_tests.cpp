#include "host/settings/settings_sandbox.h"
#include "presentation/tray_menu_settings.h"

#include <gtest/gtest.h>

TEST(tray_menu_settings, reads_the_context_menu_appearance_with_its_defaults) {
    const struct { const char* appearance; int64_t size; std::wstring family; std::string weight; } cases[] = {
        // Out of range is the layout's to clamp.
        {R"({"fontSizeDip": 100, "fontFamily": "Gr\u00fcn Sans", "fontWeight": "Semibold"})", 100, L"Gr\u00fcn Sans",
         "Semibold"},
        {R"({})", 12, L"", "Regular"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.appearance);
        settings_sandbox sandbox;
        auto file = sandbox.open();
        settings_sandbox::write(sandbox.user_file(),
                                fmt::format(R"({{"apps":[{{"app_id":"context-menu-replacement",)"
                                            R"("settings":{{"appearance":{}}}}}]}})", c.appearance), 1);
        ASSERT_TRUE(file->reload_if_changed(false));
        const tray_menu_layout::font_settings font = read_menu_font_settings(*file);
        EXPECT_EQ(font.size_dip, c.size);
        EXPECT_EQ(font.family, c.family);
        EXPECT_EQ(font.weight, c.weight);
    }
}
