#include "platform/string_conversion.h"

std::wstring to_wide(std::string_view utf8) { return portable_utf::to_wide(utf8); }
std::string to_utf8(std::wstring_view wide) { return portable_utf::to_utf8(wide); }
