#pragma once

#include <filesystem>
#include <string>

// LocalAppData\Kestrane\Veldrake\<subject>\<subject>\Logs, created with its parents. Throws when
// the folder cannot be made.
std::filesystem::path log_folder(const std::wstring& subject);

// Opens "<subject> <start date>.log" in the log folder for the rest of the process's life and writes
// the run's first line.
void start_process_log(const std::wstring& subject);
