#include "installer_gate.h"

#include <gtest/gtest.h>

using namespace installer_gate;

TEST(installer_gate, inspects_a_process_only_when_both_values_were_read) {
    using std::nullopt;
    // Process absent; 0, no maintenance, whatever Created says; Created unread; both read.
    const struct { std::optional<uint32_t> pid; std::optional<uint64_t> created; std::optional<uint32_t> inspect; } cases[] = {
        {nullopt, 5, nullopt}, {0, 5, nullopt}, {4120, nullopt, nullopt}, {4120, 0, 4120}};
    for (const auto& c : cases) EXPECT_EQ(process_to_inspect(c.pid, c.created), c.inspect) << c.pid.value_or(-1) << " " << c.created.has_value();
}

TEST(installer_gate, a_process_that_cannot_be_opened_counts_only_when_access_is_denied) {
    EXPECT_TRUE(running_when_open_failed(5));    // ERROR_ACCESS_DENIED
    EXPECT_FALSE(running_when_open_failed(87));  // ERROR_INVALID_PARAMETER: the id is gone
}

TEST(installer_gate, running_needs_the_recorded_creation_time_and_a_live_process) {
    constexpr uint64_t recorded = 133'000'000'000'000'123;
    // Alive; ended; a recycled process id; times unknown: fail closed.
    const struct { std::optional<uint64_t> creation; bool alive, running; } cases[] = {
        {recorded, true, true}, {recorded, false, false}, {recorded + 1, true, false}, {std::nullopt, false, true}};
    for (const auto& c : cases) EXPECT_EQ(running(c.creation, recorded, c.alive), c.running) << c.creation.has_value() << c.alive;
}
