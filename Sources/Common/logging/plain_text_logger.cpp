#include "logging/plain_text_logger.h"

#include "platform/string_conversion.h"

#ifdef _WIN32
#include <share.h>
#endif

namespace {
// Created during static initialisation so that every later caller finds it.
plain_text_logger& the_logger = *new plain_text_logger;
}  // namespace

plain_text_logger& process_logger() { return the_logger; }

void plain_text_logger::open(const std::filesystem::path& path) {
    std::lock_guard guard(lock_);
    if (opened_) return;
    opened_ = true;
#ifdef _WIN32
    // Binary, so lines end in a bare line feed; shared, so other processes may write the same file.
    stream_.reset(_wfsopen(path.c_str(), L"ab", _SH_DENYNO));
#else
    stream_.reset(std::fopen(path.c_str(), "ab"));
#endif
}

bool plain_text_logger::is_open() const {
    std::lock_guard guard(lock_);
    return stream_ != nullptr;
}

void plain_text_logger::write(std::wstring_view line) { write(std::string_view(to_utf8(line))); }

void plain_text_logger::write(std::string_view line) {
    std::lock_guard guard(lock_);
    if (!stream_) return;
    // One fwrite per line: with the file shared between processes, appends of whole lines do not mix.
    thread_local std::string buffer;
    buffer.assign(line);
    buffer.push_back('\n');
    std::fwrite(buffer.data(), 1, buffer.size(), stream_.get());
    std::fflush(stream_.get());
}
