#pragma once

#include <filesystem>

// The folder of the running executable; the suite's files and "Content" lie beside it.
std::filesystem::path module_folder();

// LocalAppData\Kestrane\Veldrake\a\b, created with its parents if missing. Throws
// std::filesystem::filesystem_error when the folder cannot be made.
std::filesystem::path app_data_folder(const std::wstring& a, const std::wstring& b);
