#include "win32/log_writer_win32.h"

#include "logging/plain_text_logger.h"
#include "platform/string_conversion.h"

#include <fmt/format.h>

std::string tagged_body(const std::string& tag) { return std::string(60 + 37 * (tag.size() % 5), tag.empty() ? '?' : tag[0]); }

int write_tagged_lines(const std::filesystem::path& file, const std::wstring& tag, unsigned long count) {
    plain_text_logger logger;
    logger.open(file);
    if (!logger.is_open()) return 2;
    const std::string narrow_tag = to_utf8(tag);
    const std::string body = tagged_body(narrow_tag);
    for (unsigned long i = 0; i < count; ++i) logger.write(std::string_view(fmt::format("{}:{}:{}", narrow_tag, i, body)));
    return 0;
}
