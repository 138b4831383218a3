#include "host/settings/settings_sandbox.h"
#include "presentation/tray_menu_settings.h"

#include <gtest/gtest.h>

TEST(tray_menu_settings, reads_the_context_menu_appearance_with_its_defaults) {
    const struct { const char* appearance; int64_t size; std::wstring family; std::string weight; } cases[] = {
        // Out of range is the layout's to clamp.
        {R"({"fontSizeDip": 100, "fontFamily": "Gr\u00fcn Sans", "fontWeight": "Semibold"})", 100, L"Gr\u00fcn Sans", "Semibold"},
        {R"({})", 12, L"", "Regular"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.appearance);
        settings_sandbox sandbox;
        ASSERT_TRUE(sandbox.load(document_with_settings(fmt::format(R"({{"appearance":{}}})", c.appearance), "enabled", "context-menu-replacement")));
        const tray_menu_layout::font_settings font = read_menu_font_settings(sandbox.file());
        EXPECT_EQ(std::tuple(font.size_dip, font.family, font.weight), std::tuple(c.size, c.family, c.weight));
    }
}
