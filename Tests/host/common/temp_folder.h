#pragma once

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

// A fresh folder under the temporary one, removed with its content at the end. Windows keeps a file
// that is still open, which is harmless.
struct temp_folder {
    std::filesystem::path path = std::filesystem::temp_directory_path() /
                                 fmt::format("veldrake-{:08x}{:08x}", std::random_device{}(), std::random_device{}());
    temp_folder() { std::filesystem::create_directories(path); }
    ~temp_folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    temp_folder(const temp_folder&) = delete;
    temp_folder& operator=(const temp_folder&) = delete;

    std::string read(const std::filesystem::path& name) const {
        std::ostringstream bytes;
        bytes << std::ifstream(path / name, std::ios::binary).rdbuf();
        return bytes.str();
    }
};
