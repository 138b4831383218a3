#include "installer_gate.h"

#include <gtest/gtest.h>

using namespace installer_gate;

TEST(installer_gate, inspects_a_process_only_when_both_values_were_read) {
    using std::nullopt;
    const struct { std::optional<uint32_t> pid; std::optional<uint64_t> created; std::optional<uint32_t> inspect; }
        cases[] = {
        {nullopt, 5, nullopt},  // Process absent
        {0, 5, nullopt},        // 0: no maintenance, whatever Created says
        {4120, 0, 4120},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "pid " << c.pid.value_or(-1) << " created " << c.created.has_value());
        EXPECT_EQ(process_to_inspect(c.pid, c.created), c.inspect);
    }
}

TEST(installer_gate, a_process_that_cannot_be_opened_counts_only_when_access_is_denied) {
    EXPECT_TRUE(running_when_open_failed(5));    // ERROR_ACCESS_DENIED
    EXPECT_FALSE(running_when_open_failed(87));  // ERROR_INVALID_PARAMETER: the id is gone
}

TEST(installer_gate, running_needs_the_recorded_creation_time_and_a_live_process) {
    constexpr uint64_t recorded = 133'000'000'000'000'123;
    const struct { std::optional<uint64_t> creation; bool alive, running; } cases[] = {
        {recorded, true, true},
        {recorded + 1, true, false},  // a recycled process id
        {std::nullopt, false, true},  // times unknown: fail closed
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "creation known " << c.creation.has_value() << " alive " << c.alive);
        EXPECT_EQ(running(c.creation, recorded, c.alive), c.running);
    }
}
