#pragma once

#include "logging/append_file.h"

#include <filesystem>
#include <mutex>
#include <string_view>

// The process's one log file. Every line is flushed before write returns, so a hang or a crash
// loses nothing. Lines written before open go nowhere; a file that cannot be opened makes every
// write a quiet no-op.
class plain_text_logger {
public:
    // Opens `path` for appending, shared with other writers and readers. Only the first call counts.
    void open(const std::filesystem::path& path);
    bool is_open() const;

    void write(std::wstring_view line);  // converted to UTF-8
    void write(std::string_view line);   // bytes as they stand

private:
    mutable std::mutex lock_;
    bool opened_ = false;  // open was called
    append_file file_;
};

// The process-wide logger. It is never destroyed, so detached threads may log until the very end.
plain_text_logger& process_logger();
