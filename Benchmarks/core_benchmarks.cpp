// The hot paths of the core that run on every request or every line: a log line written and flushed
// against a bare append of the same bytes, the toast request codec, the version parser, and the
// wildcard matcher that every module of Explorer's process goes through.
#include "host/common/temp_folder.h"
#include "logging/append_file.h"
#include "logging/plain_text_logger.h"
#include "process/wildcard.h"
#include "toasts/tray_toast_ipc.h"
#include "updates/version_check.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

const std::string LINE = "2026-11-24 15:59:01.123 [P:4120 T:4188] [INFO] Version check: v1.0.10.0 is the newest\r\n";

void log_line_through_the_logger(benchmark::State& state) {
    const temp_folder folder;
    plain_text_logger logger;
    logger.open(folder.path / "logger.log");
    for (auto _ : state) logger.write(std::string_view(LINE));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * LINE.size()));
}
BENCHMARK(log_line_through_the_logger);

void log_line_bare_append(benchmark::State& state) {
    const temp_folder folder;
    append_file file;
    file.open(folder.path / "bare.log");
    for (auto _ : state) file.append(LINE);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * LINE.size()));
}
BENCHMARK(log_line_bare_append);

void toast_request_encode_and_decode(benchmark::State& state) {
    const tray_toast_ipc::toast_request request{L"C:\\Program Files\\Veldrake\\Content\\Icons\\veldrake-logo-ai.ico",
                                                L"Veldrake", L"Context menu", L"Click to open the settings",
                                                tray_toast_ipc::toast_click_action::open_settings_tab,
                                                L"context-menu-replacement"};
    for (auto _ : state) {
        const std::wstring payload = tray_toast_ipc::encode_toast_request(request);
        tray_toast_ipc::toast_request decoded;
        benchmark::DoNotOptimize(tray_toast_ipc::decode_toast_request(payload.c_str(), payload.size(), decoded));
    }
}
BENCHMARK(toast_request_encode_and_decode);

void version_text_parsed(benchmark::State& state) {
    updates::version_numbers numbers{};
    for (auto _ : state) benchmark::DoNotOptimize(updates::parse_version("\xEF\xBB\xBFv1.2.30.4\r\n", numbers));
}
BENCHMARK(version_text_parsed);

// The hook check's two patterns over the module paths of one Explorer process: most fail at once.
void wildcard_hook_check_over_explorer_modules(benchmark::State& state) {
    std::vector<std::wstring> modules;
    for (int n = 0; n < 200; ++n) modules.push_back(L"C:\\Windows\\System32\\module" + std::to_wstring(n) + L".dll");
    modules.push_back(L"Veldrake.ContextMenuReplacement.Hook.1.0.9.0.dll");
    for (auto _ : state) {
        int found = 0;
        for (const auto& module : modules) {
            found += wildcard_match(L"Veldrake.ContextMenuReplacement.Hook*.dll", module) &&
                     !wildcard_match(L"Veldrake.ContextMenuReplacement.Hook.1.0.10.0.dll", module);
        }
        benchmark::DoNotOptimize(found);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * modules.size()));
}
BENCHMARK(wildcard_hook_check_over_explorer_modules);

// The worst a pattern can ask: many stars and a text that almost matches, where backtracking would blow up.
void wildcard_many_stars_near_miss(benchmark::State& state) {
    const std::wstring pattern = L"*a*a*a*a*a*a*a*a*b";
    const std::wstring text(static_cast<size_t>(state.range(0)), L'a');
    for (auto _ : state) benchmark::DoNotOptimize(wildcard_match(pattern, text));
}
BENCHMARK(wildcard_many_stars_near_miss)->Arg(64)->Arg(1024);

}  // namespace
