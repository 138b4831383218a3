#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

// Finding the suite's processes by image name or by the modules they hold, and ending them.

// The ids of the processes whose image name is one of `names`, compared without regard to case.
std::vector<uint32_t> find_processes_by_name(std::span<const wchar_t* const> names);
// Whether a module of the process matches one of the wildcard `patterns`; false when it cannot be read.
bool process_has_module(uint32_t process_id, std::span<const wchar_t* const> patterns);
// The names of the process's modules; empty when they cannot be read.
std::vector<std::wstring> list_process_modules(uint32_t process_id);
// The processes of `names`, other than this one, that hold a module of `patterns`.
std::vector<uint32_t> find_processes_with_modules(std::span<const wchar_t* const> names,
                                                  std::span<const wchar_t* const> patterns);
// Asks every top-level window of the processes to close, then gives them `timeout_ms` in all to end;
// those still running are terminated with exit code 1.
void end_processes(const std::vector<uint32_t>& process_ids, uint32_t timeout_ms);
// The lower-case file name of the process's image, or "" when it cannot be read.
std::wstring process_image_name(uint32_t process_id);
