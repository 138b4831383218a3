#include "index_watch/namespace_icon.h"

#include <gtest/gtest.h>

using namespace index_watch;

TEST(namespace_icon, shows_the_status_unless_hidden_and_is_applied_only_when_it_changes) {
    const struct { bool display_on; uint32_t status; std::wstring icon, tip; uint32_t value; } steps[] = {
        {true, 4, L"tessary_indexing-complete.ico", L"Windows Search indexing is complete.", 4},
        {true, 4, L"", L"", 4},  // unchanged: nothing to apply
        {true, 2, L"tessary_indexing-in-progress.ico", L"Windows Search indexing is in progress.", 2},
        {true, 8, L"tessary_indexing-problem.ico", L"Windows Search indexing appears to be stuck.", 8},
        {true, 1, L"tessary_indexing-problem.ico", L"Windows Search indexing status is unavailable.", 1},  // a new tip
        {false, 1, L"tessary_indexing-complete.ico", L"Windows Search indexing status is hidden in Tessary settings.", 0xFFFFFFFF},
    };
    uint32_t applied = 0;
    for (const auto& x : steps) {
        const icon_selection none{L"", L"", x.value}, got = next_namespace_icon(applied, x.display_on, x.status).value_or(none);
        EXPECT_EQ(std::tie(got.icon_file, got.tip, got.value, applied), std::tie(x.icon, x.tip, x.value, x.value)) << x.status;
    }
}
