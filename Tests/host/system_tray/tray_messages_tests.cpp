#include "tray_messages.h"

#include <gtest/gtest.h>

#include <set>

// Each table is one switch of the tray window: two equal numbers would send one event to the other's
// handler.
TEST(tray_messages, every_message_timer_icon_and_command_has_a_number_of_its_own) {
    const std::vector<std::vector<uint32_t>> tables = {
        {WM_TRAY_NOTIFY, WM_MIC_ENDPOINT_CHANGED, WM_START_DOWNLOAD, WM_INDEX_COUNTS, WM_VERSION_CHECK_RESULT,
         WM_WATCHDOG_PING, WM_SHUTDOWN_DONE, WM_MIC_STATE, WM_NAMESPACE_ICON_RETRY},
        {TIMER_INDEX_POLL, TIMER_VERSION_CHECK, TIMER_UPDATE_NOTICE, TIMER_SETTINGS_POLL, TIMER_SINGLE_CLICK,
         TIMER_RECONCILE_DELAY},
        {TRAY_ICON_MAIN, TRAY_ICON_MICROPHONE},
        {ID_TRAY_SETTINGS, ID_TRAY_INDEXING_STATUS, ID_TRAY_EXIT, ID_TRAY_UPDATE, ID_TRAY_FEEDBACK, ID_TRAY_SUPPORT},
    };
    for (const auto& numbers : tables) {
        EXPECT_EQ(std::set<uint32_t>(numbers.begin(), numbers.end()).size(), numbers.size()) << numbers.front();
    }
}

// The shell keeps the user's choice to show an icon by the program and the icon's number.
TEST(tray_messages, the_icons_keep_their_numbers) {
    EXPECT_EQ(std::pair(TRAY_ICON_MAIN, TRAY_ICON_MICROPHONE), std::pair(1001u, 1002u));
}
