#include "explorer/navigation_display.h"
#include "explorer/shell_repair_run.h"
#include "host/settings/settings_sandbox.h"

#include <gtest/gtest.h>

using namespace explorer;

// What the two explorer readings make of the tessary record: the repair's choice and the pane's modes.
TEST(explorer_settings, the_tessary_record_decides_the_repair_and_the_pane) {
    using enum navigation_display_mode;
    const struct { const char* status; const char* settings; bool in_use, suppress; navigation_display_mode filters, pins; } cases[] = {
        {"enabled", "{}", true, true, expand_first, expand_first}, {nullptr, "no tessary record", true, true, expand_first, expand_first},
        {"disabled", "{}", false, false, off, off},
        {"enabled", R"({"general.showTagsAsIconOverlay":false,"general.roundedThumbnailCorners":false})", true, false, expand_first, expand_first},
        {"enabled", R"({"general.showTagsAsIconOverlay":false,"general.showRatingAsIconOverlay":false})", false, false, expand_first, expand_first},
        {"enabled", R"({"general.showInExplorerPanel":false,"general.quickPinsNavigationDisplay":"expand_second"})", true, true, off, expand_second},
        {"enabled", R"({"general.searchFiltersNavigationDisplay":"collapsed","general.showQuickPinsInExplorerPanel":false})", true, true, collapsed, off},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.settings);
        settings_sandbox sandbox;
        auto& file = sandbox.file();
        settings_sandbox::write(sandbox.user_file(), c.status ? document_with_settings(c.settings, c.status, "tessary") : R"({"apps":[]})", 1);
        const auto choice = read_repair_choice(file);
        ASSERT_TRUE(choice);
        settings_sandbox::write(sandbox.user_file(), document_with_settings("{}", "disabled", "tessary"), 1);
        EXPECT_EQ(read_repair_choice(file).value().handlers_in_use, c.in_use) << "an unchanged stamp: the file is not read again";
        EXPECT_EQ(std::pair(choice->handlers_in_use, choice->suppress), std::pair(c.in_use, c.suppress));
        navigation_display_mode filters = collapsed, pins = collapsed;
        read_navigation_display_settings(file, filters, pins);
        EXPECT_EQ(std::pair(filters, pins), std::pair(c.filters, c.pins));
    }
}
