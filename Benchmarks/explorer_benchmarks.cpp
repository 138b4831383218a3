// One shell handler repair pass over the whole type table against the in-memory registry. Every type is
// claimed by the suite, has a ProgId from the user's choice, and is in place, so the pass repairs
// nothing: the counter "registry_calls" is what such a pass costs the registry at each start, the
// figure to keep small. Beside it, the same table with no type claimed, where a pass reads only claims.
#include "explorer/file_type_tables.h"
#include "explorer/shell_handler_repair.h"
#include "host/explorer/fake_registry.h"
#include "platform/string_conversion.h"

#include <benchmark/benchmark.h>

namespace {

using namespace explorer;

std::vector<std::wstring> table() {
    std::vector<std::wstring> extensions;
    for (const auto& extension : repair_extension_list) extensions.push_back(to_wide(extension));
    return extensions;
}

void plant(fake_registry& r, const std::wstring& key, const std::wstring& name, const std::wstring& text) {
    r.plant(hive::current_user, key, name, {REG_SZ_TYPE, string_bytes(text)});
}

void repair_pass(benchmark::State& state, bool claimed) {
    const auto extensions = table();
    fake_registry r;
    if (claimed) {
        for (const auto& ext : extensions) {
            const std::wstring prog_id = L"Other" + ext;
            const std::wstring shell_ex = L"Software\\Classes\\SystemFileAssociations\\" + ext + L"\\ShellEx\\";
            plant(r, shell_ex + L"IconHandler", L"", SUITE_HANDLER_CLASS);
            plant(r, shell_ex + THUMBNAIL_PROVIDER_INTERFACE, L"", SUITE_HANDLER_CLASS);
            plant(r, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\" + ext + L"\\UserChoice",
                  L"ProgId", prog_id);
            plant(r, L"Software\\Classes\\" + ext + L"\\ShellEx\\" + THUMBNAIL_PROVIDER_INTERFACE, L"", SUITE_HANDLER_CLASS);
            plant(r, L"Software\\Classes\\" + prog_id + L"\\ShellEx\\IconHandler", L"", SUITE_HANDLER_CLASS);
            plant(r, L"Software\\Classes\\" + prog_id + L"\\ShellEx\\" + THUMBNAIL_PROVIDER_INTERFACE, L"", SUITE_HANDLER_CLASS);
        }
    }
    const log_line quiet = [](log_severity, const std::wstring&) {};
    int32_t repaired = 0;
    int calls = 0;
    for (auto _ : state) {
        r.calls = 0;
        repaired += repair_hijacked_handlers(r, extensions, SUITE_HANDLER_CLASS, THUMBNAIL_PROVIDER_INTERFACE,
                                             REMEMBERED_ICON_HANDLER, quiet);
        calls = r.calls;
    }
    state.counters["registry_calls"] = calls;
    state.counters["repaired"] = repaired;
}

void repair_pass_all_in_place(benchmark::State& state) { repair_pass(state, true); }
void repair_pass_nothing_claimed(benchmark::State& state) { repair_pass(state, false); }
BENCHMARK(repair_pass_all_in_place);
BENCHMARK(repair_pass_nothing_claimed);

}  // namespace
