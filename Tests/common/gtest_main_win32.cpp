#include <gtest/gtest.h>

// The Windows test programs link with -municode, so their entry is wmain.
int wmain(int argc, wchar_t** argv) {
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
