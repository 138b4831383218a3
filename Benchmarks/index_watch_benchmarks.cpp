// One index sample on the window thread: the detector step, then the namespace icon's choice. A sample
// with the status unchanged must cost no registry work: every selection handed out is two registry
// writes (the tip and the icon) in a background task, so the counter "registry_writes" must read 0.
#include "index_watch/index_status.h"
#include "index_watch/namespace_icon.h"

#include <benchmark/benchmark.h>

namespace {

void index_sample_with_the_status_unchanged(benchmark::State& state) {
    index_watch::tray_state s;
    constexpr uint64_t stall_ms = 3ull * 60 * 60 * 1000;
    uint64_t now_ms = 0;
    int32_t total = 1000;  // rising, so that the index stays in progress and never stalls
    index_watch::on_index_counts(s, 5, total, now_ms, stall_ms);
    index_watch::next_namespace_icon(s.namespace_icon_applied, true, s.indexing_status);  // the first applies
    int64_t writes = 0;
    for (auto _ : state) {
        now_ms += 15000;
        const uint32_t status = index_watch::on_index_counts(s, 5, ++total, now_ms, stall_ms);
        if (index_watch::next_namespace_icon(s.namespace_icon_applied, true, status)) writes += 2;
        benchmark::DoNotOptimize(status);
    }
    state.counters["registry_writes"] = static_cast<double>(writes);
}
BENCHMARK(index_sample_with_the_status_unchanged);

}  // namespace
