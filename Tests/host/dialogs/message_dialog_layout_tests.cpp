#include "dialogs/message_dialog_layout.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

using namespace message_dialog_layout;
using ui_metrics::rect;

namespace {

measured lines_of_text(int32_t lines, uint32_t dpi = 96) {
    measured m;
    m.dpi = dpi;
    m.line_height = 19;
    m.text_height = 19 * lines;
    m.edge_height = 2;
    m.check_text_width = 150;
    m.ok_text_width = 20;
    m.cancel_text_width = 44;
    m.no_text_width = 18;
    return m;
}

}  // namespace

TEST(message_dialog_layout, seven_lines_stay_static_and_eight_scroll_in_seven_lines) {
    const struct {
        int32_t lines;
        bool scrolling;
        int32_t control_height;
    } cases[] = {
        {1, false, 19},
        {7, false, 7 * 19},
        {8, true, 7 * 19 + 2 * 2},
        {40, true, 7 * 19 + 2 * 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("{} lines", c.lines));
        const size s = size_for(lines_of_text(c.lines));
        EXPECT_EQ(s.line_count, c.lines);
        EXPECT_EQ(s.scrolling, c.scrolling);
        EXPECT_EQ(s.text_height, c.control_height);
    }
    // A partial last line still counts as a line.
    measured partial = lines_of_text(7);
    partial.text_height += 1;
    EXPECT_TRUE(size_for(partial).scrolling);
    // A font without a line height never scrolls.
    measured no_lines = lines_of_text(12);
    no_lines.line_height = 0;
    EXPECT_FALSE(size_for(no_lines).scrolling);
}

TEST(message_dialog_layout, sizes_at_96_120_and_144_dpi) {
    const struct {
        uint32_t dpi;
        int32_t margin, text_width, client_width, client_height;
    } cases[] = {
        // Width: the wrap width 480 wins over the buttons and the hidden check box (170).
        {96, 35, 480, 550, 19 + 2 * (15 + 35) + 30},
        {120, 44, 600, 688, 19 + 2 * (19 + 44) + 38},
        {144, 53, 719, 825, 19 + 2 * (23 + 53) + 45},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("dpi={}", c.dpi));
        EXPECT_EQ(ui_metrics::scale(margin, c.dpi), c.margin);
        EXPECT_EQ(text_width(c.dpi), c.text_width);
        const size s = size_for(lines_of_text(1, c.dpi));
        EXPECT_EQ(s.client_width, c.client_width);
        EXPECT_EQ(s.client_height, c.client_height);
    }
}

TEST(message_dialog_layout, wide_buttons_or_check_box_widen_the_dialog) {
    measured m = lines_of_text(1);
    m.show_cancel = m.show_no = true;
    m.ok_text_width = m.cancel_text_width = m.no_text_width = 200;  // each 232 wide
    EXPECT_EQ(size_for(m).client_width, 3 * 232 + 2 * 15 + 2 * 35);

    measured check = lines_of_text(1);
    check.check_text_width = 600;  // hidden, and counted all the same
    EXPECT_EQ(size_for(check).client_width, 620 + 2 * 35);
    check.show_check = true;
    EXPECT_EQ(size_for(check).client_height, 19 + 2 * (15 + 35) + 30 + 40);
}

TEST(message_dialog_layout, buttons_read_ok_no_cancel_from_the_left_and_copy_sits_left) {
    measured m = lines_of_text(2);
    m.show_cancel = m.show_no = true;
    const size s = size_for(m);
    const children c = place(m, s, 600, 200);
    // Bottom row: 200 - 35 - 30 = 135 to 165. Right edge 565.
    EXPECT_EQ(c.cancel, (rect{445, 135, 565, 165}));
    EXPECT_EQ(c.no, (rect{310, 135, 430, 165}));
    EXPECT_EQ(c.ok, (rect{175, 135, 295, 165}));
    EXPECT_EQ(c.copy, (rect{35, 135, 65, 165}));
    EXPECT_EQ(c.text, (rect{35, 35, 565, 35 + 38}));
    EXPECT_EQ(c.check, rect{}) << "hidden unless shown";

    measured ok_only = lines_of_text(2);
    ok_only.show_copy = false;
    const children alone = place(ok_only, size_for(ok_only), 550, 190);
    EXPECT_EQ(alone.ok, (rect{395, 125, 515, 155}));
    EXPECT_EQ(alone.copy, rect{});

    measured with_check = lines_of_text(2);
    with_check.show_check = true;
    const children checked = place(with_check, size_for(with_check), 550, 230);
    EXPECT_EQ(checked.check, (rect{35, 35 + 38 + 15, 35 + 170, 35 + 38 + 40 + 15}));
}

TEST(message_dialog_layout, line_ends_become_crlf) {
    const struct {
        std::wstring in, out;
    } cases[] = {
        {L"a\nb", L"a\r\nb"},     {L"a\rb", L"a\r\nb"},           {L"a\r\nb", L"a\r\nb"},
        {L"\n\n", L"\r\n\r\n"},   {L"a\r\r\nb\n\r", L"a\r\n\r\nb\r\n\r\n"},
        {L"", L""},               {L"plain", L"plain"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.in));
        EXPECT_EQ(to_crlf(c.in), c.out);
    }
}
