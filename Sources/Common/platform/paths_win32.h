#pragma once

#include <windows.h>

#include <filesystem>

// The full path of a loaded module's file (null: the executable), however long it is.
std::filesystem::path module_file_name(HMODULE module = nullptr);

// The folder of the running executable; the suite's files and "Content" lie beside it.
std::filesystem::path module_folder();

// The user's LocalAppData. Throws std::filesystem::filesystem_error when the shell cannot say.
std::filesystem::path local_app_data_folder();

// LocalAppData\Kestrane\Veldrake\a\b, created with its parents if missing. Throws
// std::filesystem::filesystem_error when the folder cannot be made.
std::filesystem::path app_data_folder(const std::wstring& a, const std::wstring& b);
