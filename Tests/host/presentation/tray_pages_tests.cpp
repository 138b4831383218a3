#include "platform/string_conversion.h"
#include "presentation/tray_pages.h"

#include <gtest/gtest.h>

TEST(tray_pages, pages_follow_the_web_host_after_one_slash) {
    EXPECT_EQ(tray_pages::feedback_page(), to_wide(VELDRAKE_WEB_HOST "/products/veldrake/feedback?ref=client_system_tray"));
    EXPECT_EQ(tray_pages::support_page(), to_wide(VELDRAKE_WEB_HOST "/products/veldrake/support"));
}

TEST(tray_pages, a_host_setting_with_trailing_slashes_gives_one) {
    EXPECT_EQ(tray_pages::page_on("https://example.test//", "/support"), L"https://example.test/support");
    EXPECT_EQ(tray_pages::page_on("https://example.test", "/support"), L"https://example.test/support");
    EXPECT_EQ(tray_pages::page_on("/", "/support"), L"/support");
}
