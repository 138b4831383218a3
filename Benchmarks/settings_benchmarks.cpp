// The settings file's costs: the check that every reading site makes before it reads (every 3 s for
// the tray's settings poll), and full reloads of the shipped default and of a 1 MB document. Memory
// is counted through the global allocator of this program: bytes allocated per call, the peak
// above the starting point during a reload, and what a loaded document keeps.
#include "host/settings/settings_sandbox.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <new>
#include <sstream>

namespace {

std::atomic<int64_t> allocated_total{0};
std::atomic<int64_t> live{0};
std::atomic<int64_t> live_peak{0};

void note_allocation(void* p) {
    const auto size = static_cast<int64_t>(malloc_usable_size(p));
    allocated_total += size;
    const int64_t now = live += size;
    for (int64_t peak = live_peak; now > peak && !live_peak.compare_exchange_weak(peak, now);) {
    }
}

}  // namespace

void* operator new(std::size_t size) {
    void* p = std::malloc(size ? size : 1);
    if (!p) throw std::bad_alloc();
    note_allocation(p);
    return p;
}
void operator delete(void* p) noexcept {
    if (!p) return;
    live -= static_cast<int64_t>(malloc_usable_size(p));
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept { operator delete(p); }

namespace {

std::string shipped_default_text() {
    std::ifstream in(std::filesystem::path(__FILE__).parent_path().parent_path() / "Content" / "Configurations" /
                         "High Level Settings.json",
                     std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// Records of the shape the Settings app writes, until the text reaches `bytes`.
std::string document_of_size(size_t bytes) {
    std::string text = R"({"version":"1.0.10.0","apps":[)";
    for (int n = 0; text.size() < bytes; ++n) {
        text += fmt::format(R"({{"app_id":"app-{0}","name":"App {0}","version":"1.0.10.0","status":"enabled",)"
                            R"("settings":{{"general":{{"showInExplorerPanel":true,"fontSizeDip":12,)"
                            R"("mode":"all-except","names":["chrome.exe","msedge.exe","firefox.exe"]}}}}}},)",
                            n);
    }
    text += R"({"app_id":"last","settings":{}}]})";
    return text;
}

struct memory_counters {
    int64_t allocated_at_start = allocated_total;
    int64_t live_at_start = live;
    void report(benchmark::State& state) const {
        state.counters["alloc_bytes_per_call"] = benchmark::Counter(
            static_cast<double>(allocated_total - allocated_at_start), benchmark::Counter::kAvgIterations);
        state.counters["peak_bytes_above_start"] = static_cast<double>(live_peak - live_at_start);
    }
};

void reload_benchmark(benchmark::State& state, const std::string& text) {
    settings_sandbox sandbox;
    auto file = sandbox.open();
    settings_sandbox::write(sandbox.user_file(), text, 1);
    const int64_t before_first_load = live;
    file->reload_if_changed(false);
    state.counters["retained_bytes"] = static_cast<double>(live - before_first_load);
    live_peak = live.load();
    const memory_counters memory;
    for (auto _ : state) benchmark::DoNotOptimize(file->reload_if_changed(true));
    memory.report(state);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}

}  // namespace

// Baseline of the unchanged check: the bare attribute read of the same file.
static void settings_baseline_stamp_read(benchmark::State& state) {
    settings_sandbox sandbox;
    auto file = sandbox.open();
    settings_sandbox::write(sandbox.user_file(), shipped_default_text(), 1);
    auto& platform = common::setting_utilities::platform_settings_file_system();
    const auto path = sandbox.user_file();
    for (auto _ : state) benchmark::DoNotOptimize(platform.last_write_time(path));
}
BENCHMARK(settings_baseline_stamp_read);

// What polling costs while nothing changes: one attribute read, nothing parsed, nothing kept.
static void settings_unchanged_check(benchmark::State& state) {
    settings_sandbox sandbox;
    auto file = sandbox.open();
    settings_sandbox::write(sandbox.user_file(), shipped_default_text(), 1);
    file->reload_if_changed(false);
    sandbox.stamp_reads = 0;
    live_peak = live.load();
    const memory_counters memory;
    for (auto _ : state) benchmark::DoNotOptimize(file->reload_if_changed(false));
    memory.report(state);
    state.counters["stamp_reads_per_call"] =
        benchmark::Counter(static_cast<double>(sandbox.stamp_reads), benchmark::Counter::kAvgIterations);
}
BENCHMARK(settings_unchanged_check);

static void settings_reload_shipped_default(benchmark::State& state) { reload_benchmark(state, shipped_default_text()); }
BENCHMARK(settings_reload_shipped_default);

static void settings_reload_one_megabyte(benchmark::State& state) { reload_benchmark(state, document_of_size(1 << 20)); }
BENCHMARK(settings_reload_one_megabyte)->Unit(benchmark::kMillisecond);

// Baselines of the 1 MB reload: the bytes alone, then the bytes decoded to text.
static void settings_baseline_read_bytes_one_megabyte(benchmark::State& state) {
    settings_sandbox sandbox;
    auto file = sandbox.open();
    const std::string text = document_of_size(1 << 20);
    settings_sandbox::write(sandbox.user_file(), text, 1);
    for (auto _ : state) {
        std::ifstream in(sandbox.user_file(), std::ios::binary);
        std::stringstream bytes;
        bytes << in.rdbuf();
        benchmark::DoNotOptimize(bytes.str());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}
BENCHMARK(settings_baseline_read_bytes_one_megabyte)->Unit(benchmark::kMillisecond);

static void settings_read_text_one_megabyte(benchmark::State& state) {
    settings_sandbox sandbox;
    auto file = sandbox.open();
    const std::string text = document_of_size(1 << 20);
    settings_sandbox::write(sandbox.user_file(), text, 1);
    for (auto _ : state) benchmark::DoNotOptimize(high_level_settings::read_settings_text(sandbox.user_file()));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}
BENCHMARK(settings_read_text_one_megabyte)->Unit(benchmark::kMillisecond);
