#include "dialogs/message_dialog_layout.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

using namespace message_dialog_layout;

namespace {

measured text_of(int32_t height, uint32_t dpi = 96, int32_t line_height = 19) {
    return {.dpi = dpi, .text_height = height, .line_height = line_height, .check_text_width = 150,
            .ok_text_width = 20, .cancel_text_width = 44, .no_text_width = 18};
}

}  // namespace

TEST(message_dialog_layout, seven_lines_stay_static_and_more_scroll_in_seven_lines) {
    const struct { int32_t text_height, line_height; bool scrolling; int32_t control_height; } cases[] = {
        {7 * 19, 19, false, 7 * 19},
        {7 * 19 + 1, 19, true, 7 * 19 + 2 * 2},  // a partial last line counts
        {12 * 19, 0, false, 12 * 19},  // a font without a line height never scrolls
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("text {} line {}", c.text_height, c.line_height));
        const size s = size_for(text_of(c.text_height, 96, c.line_height));
        EXPECT_EQ(s.scrolling, c.scrolling);
        EXPECT_EQ(s.text_height, c.control_height);
    }
}

TEST(message_dialog_layout, sizes_at_96_120_and_144_dpi_widened_by_buttons_or_a_hidden_check_box) {
    const struct { uint32_t dpi; int32_t client_width, client_height; } cases[] = {
        // The wrap width (480 at 96 dpi) and two margins; the text, two gaps, two margins, the buttons.
        {96, 480 + 2 * 35, 19 + 2 * (15 + 35) + 30},
        {144, 719 + 2 * 53, 19 + 2 * (23 + 53) + 45},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("dpi={}", c.dpi));
        const size s = size_for(text_of(19, c.dpi));
        EXPECT_EQ(s.client_width, c.client_width);
        EXPECT_EQ(s.client_height, c.client_height);
    }
    measured wide = text_of(19);
    wide.show_cancel = wide.show_no = true;
    wide.ok_text_width = wide.cancel_text_width = wide.no_text_width = 200;  // each 232 wide
    EXPECT_EQ(size_for(wide).client_width, 3 * 232 + 2 * 15 + 2 * 35);
    measured check = text_of(19);
    check.check_text_width = 600;  // hidden, and counted all the same
    EXPECT_EQ(size_for(check).client_width, 620 + 2 * 35);
    check.show_check = true;
    EXPECT_EQ(size_for(check).client_height, 19 + 2 * (15 + 35) + 30 + 40);
}

// Buttons sit on the bottom margin from the right, reading OK, No, Cancel; the client area is what the
// window really got.
TEST(message_dialog_layout, places_the_controls_that_are_shown) {
    const struct { const char* name; bool all; children expected; } cases[] = {
        {"all", true,
         {{35, 35, 565, 54}, {35, 69, 205, 109}, {35, 135, 65, 165}, {175, 135, 295, 165}, {310, 135, 430, 165},
          {445, 135, 565, 165}}},
        {"OK only", false, {{35, 35, 565, 54}, {}, {}, {445, 135, 565, 165}, {}, {}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        measured m = text_of(19);
        m.show_cancel = m.show_no = m.show_copy = m.show_check = c.all;
        const children placed = place(m, size_for(m), 600, 200);
        for (const auto part : {&children::text, &children::check, &children::copy, &children::ok, &children::no,
                                &children::cancel}) {
            EXPECT_EQ(placed.*part, c.expected.*part);
        }
    }
}

TEST(message_dialog_layout, line_ends_become_crlf) {
    EXPECT_EQ(to_crlf(L"a\nb\rc\r\nd"), L"a\r\nb\r\nc\r\nd");
    EXPECT_EQ(to_crlf(L"a\r\r\nb\n\r"), L"a\r\n\r\nb\r\n\r\n");
}
