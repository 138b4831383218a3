#pragma once

#include <filesystem>
#include <string>
#include <vector>

// The process's log of the Win32 test program: opened at start in a fresh temporary file, so tests can
// read what the code under test logged.
std::filesystem::path test_log_path();
void open_test_log();
std::vector<std::string> test_log_lines();
// Lines logged from the given line number on, without their prefixes.
std::vector<std::string> test_log_messages_since(size_t first_line);
