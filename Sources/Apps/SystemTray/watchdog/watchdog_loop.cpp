#include "watchdog/watchdog_loop.h"

#include <fmt/format.h>

namespace watchdog {

tick_actions on_tick(tick_state& s, uint64_t now, bool answered, uint64_t hang_threshold_ms) {
    tick_actions act;
    if (s.ping_pending) {
        const uint64_t waited = now - s.ping_time;
        if (!answered) {
            // One line and at most one dump per hang, however long it lasts.
            if (s.hang_reported || waited < hang_threshold_ms) return act;
            s.hang_reported = true;
            act.line = tick_line{log_severity::error,
                                 fmt::format("[watchdog] UI thread has not handled a posted message for {} ms", waited)};
            // A failed dump counts as an attempt too.
            if (s.last_dump_time == 0 || now - s.last_dump_time >= DUMP_DISTANCE_MS) {
                s.last_dump_time = now;
                act.dump = true;
            }
            return act;
        }
        s.ping_pending = false;
        if (s.hang_reported) {
            act.line = tick_line{log_severity::warning,
                                 fmt::format("[watchdog] UI thread responsive again after {} ms", waited)};
            s.hang_reported = false;
        }
    }
    act.post = true;
    return act;
}

void on_post(tick_state& s, uint64_t now, bool posted) {
    if (!posted) return;
    s.ping_time = now;
    s.ping_pending = true;
}

void run_watchdog(watchdog_port& port, uint64_t hang_threshold_ms) {
    tick_state s;
    while (port.wait_tick()) {
        const uint64_t now = port.now();
        const tick_actions act = on_tick(s, now, port.take_answered(), hang_threshold_ms);
        if (act.line) port.log(*act.line);
        if (act.dump) port.write_dump();
        if (act.post) on_post(s, now, port.post_ping());
    }
}

}  // namespace watchdog
