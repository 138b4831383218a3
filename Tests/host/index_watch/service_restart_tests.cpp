#include "index_watch/service_restart.h"

#include <gtest/gtest.h>

using namespace index_watch;

namespace {

struct script {
    bool opens = true;
    uint32_t stop = 0, stop_state = 0, start = 0;
    std::vector<std::optional<uint32_t>> states{1};  // query answers in turn; the last one repeats
    search_service_port::elevated_start launch{.launched = true, .has_process = true};
    search_service_port::elevated_end end{.ended = true};
};

// Answers as scripted and writes down each call as one word.
struct scripted_port final : search_service_port, script {
    explicit scripted_port(const script& s) : script(s) {}
    template <class T> T note(const std::string& call, T answer) { return calls += call + " ", answer; }
    bool open_service() override { return note("open", opens); }
    uint32_t stop_service(uint32_t& state) override { return state = stop_state, note("stop", stop); }
    std::optional<uint32_t> query_state() override { return note("query", states[std::min(queries++, states.size() - 1)]); }
    uint32_t start_service() override { return note("start", start); }
    void close_service() override { note("close", 0); }
    void sleep_ms(uint32_t ms) override { note("sleep" + std::to_string(ms), 0); }
    elevated_start start_elevated() override { return note("elevated", launch); }
    elevated_end wait_elevated(uint32_t ms) override { return note("wait" + std::to_string(ms), end); }
    void close_manager() override { note("close-manager", 0); }
    void show_failure(const std::wstring&) override { note("dialog", 0); }
    std::string calls; size_t queries = 0;
};

}  // namespace

TEST(service_restart, tries_the_service_manager_then_the_elevated_command_and_tells_only_of_both_failing) {
    const auto polls = [](int n) { std::string all; while (n-- > 0) all += "sleep500 query "; return all; };
    const std::string started = "start close close-manager ", elevated = "elevated wait60000 close-manager ";
    const struct { const char* name; script s; std::string seen; } cases[] = {
        {"a stopped service: one pause, one query", {.stop = 1062}, "ok: open stop " + polls(1) + started},
        {"it never stops; already running counts", {.start = 1056, .states = {3}}, "ok: open stop " + polls(60) + started},
        {"a refused stop", {.stop = 5}, "ok: open stop close " + elevated},
        {"a refused start", {.start = 1058}, "ok: open stop " + polls(1) + "start close " + elevated},
        {"refused consent", {.opens = false, .launch = {.error = 1223}}, "failed: open elevated close-manager dialog "},
        {"exit code 1", {.opens = false, .end = {.ended = true, .exit_code = 1}}, "failed: open " + elevated + "dialog "},
        {"no process to wait for", {.opens = false, .launch = {.launched = true}}, "ok: open elevated close-manager "},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        scripted_port port(c.s);
        EXPECT_EQ((restart_search_service(port) ? "ok: " : "failed: ") + port.calls, c.seen);
    }
}
