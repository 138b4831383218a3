#include "dialogs/download_progress.h"

#include <gtest/gtest.h>

#include <vector>

TEST(download_progress, posts_each_new_percent_once_and_nothing_for_an_unknown_length) {
    int32_t last = -1;
    std::vector<int32_t> shown;
    const struct { uint64_t progress, maximum; } reports[] = {
        {500, 0}, {0, 1000}, {9, 1000}, {10, 1000}, {999, 1000}, {1000, 1000}, {1000, 1000},
        {3'000'000'000, 6'000'000'000}};
    for (const auto& r : reports) {
        if (const auto p = download_progress::next_percent(last, r.progress, r.maximum)) shown.push_back(*p);
    }
    EXPECT_EQ(shown, (std::vector<int32_t>{0, 1, 99, 100, 50}));
    EXPECT_EQ(last, 50);
}
