#pragma once

#include <filesystem>
#include <string>

// Writes COUNT lines "TAG:N:<body>" through a logger of its own; the body's length depends on the tag.
int write_tagged_lines(const std::filesystem::path& file, const std::wstring& tag, unsigned long count);
std::string tagged_body(const std::string& tag);
