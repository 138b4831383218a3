#pragma once

#include "logging/log_format.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// Names of the hang dumps in the log folder, and which old ones go before a new one is written.
namespace watchdog {

// The MINIDUMP_TYPE: handle data, unloaded modules, indirectly referenced memory, thread info.
constexpr uint32_t HANG_DUMP_TYPE = 0x1064;
// Old dumps kept before a new one is written, so at most three lie on disk.
constexpr size_t HANG_DUMPS_KEPT = 2;

// "Tray hang 2026-11-13_18.53.19.dmp"; the ticks of the second are dropped.
std::wstring hang_dump_name(const local_timestamp& when);

struct folder_entry {
    std::filesystem::path path;
    std::optional<std::filesystem::file_time_type> written;  // nothing when it could not be read
};

// The dumps among `entries` to delete, in order: all but the two newest. Only names that start with
// "Tray hang " and end in ".dmp", both exactly as written, are dumps; a time that could not be read
// counts as oldest, and equal times go by path.
std::vector<std::filesystem::path> hang_dumps_to_delete(std::vector<folder_entry> entries);

}  // namespace watchdog
