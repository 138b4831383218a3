#pragma once

#include <string>
#include <vector>

// The log of the Win32 test program: opened at its start in a fresh temporary file, so tests can read
// what the code under test logged.
void open_test_log();
std::vector<std::string> test_log_lines();
// Lines logged from the given line number on, without their prefixes.
std::vector<std::string> test_log_messages_since(size_t first_line);
