#include "index_watch/add_to_index.h"

#include <gtest/gtest.h>

// A drive root and a folder with a subject.
TEST(add_to_index, arguments_quote_each_path_without_trailing_backslashes) {
    EXPECT_EQ(add_to_index_arguments({L"C:\\", L"D:\\Data\\"}, L"Photos"),
              L"--add-index-scope \"--subject:Photos\" \"C:\" \"D:\\Data\"");
}
