#include "index_watch/add_to_index.h"

#include <gtest/gtest.h>

TEST(add_to_index, arguments_quote_each_path_without_trailing_backslashes) {
    const struct {
        const char* name;
        std::vector<std::wstring> paths;
        std::wstring subject;
        std::wstring arguments;
    } cases[] = {
        {"drive root and folder with a subject", {L"C:\\", L"D:\\Data\\"}, L"Photos",
         L"--add-index-scope \"--subject:Photos\" \"C:\" \"D:\\Data\""},
        {"no subject, no subject argument", {L"C:\\Users\\Ann Lee\\Pictures"}, L"",
         L"--add-index-scope \"C:\\Users\\Ann Lee\\Pictures\""},
        {"several backslashes and nothing else: an empty quoted argument", {L"\\\\"}, L"", L"--add-index-scope \"\""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(add_to_index_arguments(c.paths, c.subject), c.arguments);
    }
}
