#pragma once

#include <filesystem>
#include <string_view>

// A file opened for appending only, shared with every other reader and writer. Each append is one
// write at the end of the file, so whole lines of several processes never mix.
class append_file {
public:
    append_file() = default;
    append_file(const append_file&) = delete;
    append_file& operator=(const append_file&) = delete;
    ~append_file();

    // Creates the file if needed; false when it cannot be opened (a directory, no access).
    bool open(const std::filesystem::path& path);
    bool is_open() const noexcept;
    // Errors of a failing disk are not reported.
    void append(std::string_view bytes) noexcept;

private:
    void* handle_ = nullptr;  // the platform's handle or descriptor, owned
};
