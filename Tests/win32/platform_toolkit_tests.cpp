#include "platform/unique_resource_win32.h"

#include <gtest/gtest.h>

TEST(unique_resource, reset_keeps_last_error_and_put_releases_first) {
    unique_handle event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    ASSERT_TRUE(event);
    SetLastError(ERROR_FILE_NOT_FOUND);
    event.reset();
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));

    // A named event vanishes with its last handle: put() must have closed the first one.
    unique_handle named;
    *named.put() = CreateEventW(nullptr, TRUE, FALSE, L"Local\\veldrake_test_put_first");
    *named.put() = CreateEventW(nullptr, TRUE, FALSE, L"Local\\veldrake_test_put_second");
    EXPECT_EQ(OpenEventW(SYNCHRONIZE, FALSE, L"Local\\veldrake_test_put_first"), nullptr);
    EXPECT_TRUE(named);
}
