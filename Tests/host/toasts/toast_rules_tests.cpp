#include "toasts/toast_rules.h"

#include <gtest/gtest.h>

using namespace toast_rules;

TEST(toast_rules, icon_flags_follow_the_path_length) {
    const struct { std::wstring_view path; uint32_t flags; } cases[] = {
        {L"", 0x94}, {L"x", 0x94}, {L"C:", 0xB4}, {L"C:\\missing.ico", 0xB4}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "path of " << c.path.size() << " characters");
        EXPECT_EQ(balloon_flags(c.path), c.flags);
    }
}

TEST(toast_rules, a_toast_stays_until_its_deadline_or_until_the_caller_lets_go) {
    int calls = 0;
    const std::function<bool()> yes = [&] { return ++calls, true; }, no = [&] { return ++calls, false; };
    const struct { const char* name; uint64_t deadline, now; const std::function<bool()>* should_continue; bool keep;
                   int calls; } cases[] = {
        {"at the deadline, and only 0 is no deadline", 1, 1, &yes, false, 0},
        {"no deadline", 0, 1'000'000, &yes, true, 1},
        {"the caller lets go", 20000, 100, &no, false, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        calls = 0;
        EXPECT_EQ(keep_showing(c.deadline, c.now, *c.should_continue), c.keep);
        EXPECT_EQ(calls, c.calls) << "the callable is asked only before the deadline";
    }
}
