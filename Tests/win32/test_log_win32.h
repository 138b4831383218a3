#pragma once

#include <filesystem>

// The log of the Win32 test program, opened by its main in a fresh temporary file, so that tests can
// read what the code under test logged (through test_support::log_mark).
std::filesystem::path test_log_path();
