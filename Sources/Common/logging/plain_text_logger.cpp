#include "logging/plain_text_logger.h"

#include "platform/string_conversion.h"

plain_text_logger& process_logger() {
    // Never destroyed: detached threads may still log while the process ends.
    static plain_text_logger* const instance = new plain_text_logger;
    return *instance;
}

namespace {
// Created during static initialisation, before any thread can race to make it.
[[maybe_unused]] plain_text_logger& created_at_start = process_logger();
}  // namespace

void plain_text_logger::open(const std::filesystem::path& path) {
    std::lock_guard guard(lock_);
    if (opened_) return;
    opened_ = true;
    file_.open(path);
}

bool plain_text_logger::is_open() const {
    std::lock_guard guard(lock_);
    return file_.is_open();
}

void plain_text_logger::write(std::wstring_view line) { write(std::string_view(to_utf8(line))); }

void plain_text_logger::write(std::string_view line) {
    // The line and its line feed go out in one write, straight to the system: nothing waits in a
    // buffer, and lines of other processes sharing the file stay whole.
    std::string buffer;
    buffer.reserve(line.size() + 1);
    buffer.assign(line);
    buffer.push_back('\n');
    std::lock_guard guard(lock_);
    file_.append(buffer);
}
