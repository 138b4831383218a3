#pragma once

#include "logging/log_format.h"

#include <cstdint>
#include <optional>
#include <string>

// The watchdog's decisions, apart from its thread: once a second it looks whether the window thread
// answered the last ping, reports a hang once, asks for a dump at most every ten minutes, and pings again.
namespace watchdog {

constexpr uint32_t TICK_MS = 1000;
constexpr uint64_t DUMP_DISTANCE_MS = 600000;

// All the thread keeps between ticks. Times are active_time_ms; a last_dump_time of 0 means none yet.
struct tick_state {
    bool ping_pending = false;
    bool hang_reported = false;
    uint64_t ping_time = 0;
    uint64_t last_dump_time = 0;
};

struct tick_line {
    log_severity level = log_severity::info;
    std::string text;
    friend bool operator==(const tick_line&, const tick_line&) = default;
};

// What one tick asks of the thread, in this order: log, dump, post a new ping.
struct tick_actions {
    std::optional<tick_line> line;
    bool dump = false;
    bool post = false;
};

// `answered`: the window thread's flag, taken (and cleared) for this tick. A ping unanswered for
// `hang_threshold_ms` is a hang.
tick_actions on_tick(tick_state& s, uint64_t now, bool answered, uint64_t hang_threshold_ms);
// The outcome of the post that on_tick asked for; a failed post is tried again at the next tick.
void on_post(tick_state& s, uint64_t now, bool posted);

// The thread's platform: the wait on the stop event, the clock, the flag, the message, the log, the dump.
struct watchdog_port {
    virtual ~watchdog_port() = default;
    virtual bool wait_tick() = 0;  // false once the thread is to stop
    virtual uint64_t now() = 0;
    virtual bool take_answered() = 0;
    virtual bool post_ping() = 0;  // clears the flag, then posts
    virtual void log(const tick_line& line) = 0;
    virtual void write_dump() = 0;
};

// The thread's body, until wait_tick says stop. The first ping goes out one tick after the start.
void run_watchdog(watchdog_port& port, uint64_t hang_threshold_ms);

}  // namespace watchdog
