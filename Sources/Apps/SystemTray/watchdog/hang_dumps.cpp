#include "watchdog/hang_dumps.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <algorithm>
#include <tuple>

namespace watchdog {

std::wstring hang_dump_name(const local_timestamp& when) {
    return fmt::format(L"Tray hang {:04}-{:02}-{:02}_{:02}.{:02}.{:02}.dmp", when.year, when.month, when.day,
                       when.hour, when.minute, when.second);
}

std::vector<std::filesystem::path> hang_dumps_to_delete(std::vector<folder_entry> entries) {
    std::erase_if(entries, [](const folder_entry& e) {
        return !e.path.filename().wstring().starts_with(L"Tray hang ") || e.path.extension().wstring() != L".dmp";
    });
    // An unset optional orders before every time: unreadable files go first.
    std::sort(entries.begin(), entries.end(), [](const folder_entry& a, const folder_entry& b) {
        return std::tie(a.written, a.path) < std::tie(b.written, b.path);
    });
    std::vector<std::filesystem::path> doomed;
    for (size_t i = 0; i + HANG_DUMPS_KEPT < entries.size(); ++i) doomed.push_back(entries[i].path);
    return doomed;
}

}  // namespace watchdog
