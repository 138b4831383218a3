#include "toasts/tray_toast_ipc.h"

#include <stdexcept>

namespace tray_toast_ipc {

namespace {

void append_field(std::wstring& payload, std::wstring_view field) {
    payload.push_back(FIELD_SEPARATOR);
    for (const wchar_t c : field) payload.push_back(c == FIELD_SEPARATOR ? L' ' : c);
}

std::vector<std::wstring_view> split(std::wstring_view text, wchar_t separator) {
    std::vector<std::wstring_view> parts;
    size_t start = 0;
    for (size_t i = 0; i <= text.size(); ++i) {
        if (i == text.size() || text[i] == separator) {
            parts.push_back(text.substr(start, i - start));
            start = i + 1;
        }
    }
    return parts;
}

// std::stoi's rules: leading blanks and trailing junk are accepted; no digits or overflow throw.
std::optional<int> to_int(std::wstring_view field) {
    try {
        return std::stoi(std::wstring(field));
    } catch (const std::logic_error&) {
        return std::nullopt;
    }
}

}  // namespace

std::wstring encode_toast_request(const toast_request& request) {
    std::wstring payload = L"1";
    append_field(payload, request.icon_path);
    append_field(payload, request.tooltip);
    append_field(payload, request.title);
    append_field(payload, request.text);
    append_field(payload, std::to_wstring(static_cast<int32_t>(request.click_action)));
    append_field(payload, request.click_arg);
    return payload;
}

bool decode_toast_request(const wchar_t* chars, size_t length, toast_request& out) {
    if (!chars || length == 0) return false;
    std::wstring_view text(chars, length);
    text = text.substr(0, text.find(L'\0'));

    const auto fields = split(text, FIELD_SEPARATOR);
    if (fields.size() < 7) return false;
    if (to_int(fields[0]) != 1) return false;
    const auto action = to_int(fields[5]);
    if (!action) return false;

    toast_request request{std::wstring(fields[1]), std::wstring(fields[2]),     std::wstring(fields[3]),
                          std::wstring(fields[4]), toast_click_action(*action), std::wstring(fields[6])};
    if (request.text.empty()) return false;
    out = std::move(request);
    return true;
}

std::optional<add_to_index_arguments> parse_add_to_index_arg(std::wstring_view arg) {
    add_to_index_arguments result;
    bool first = true;
    for (const auto item : split(arg, LIST_SEPARATOR)) {
        if (item.empty()) continue;
        if (first && item.substr(0, SUBJECT_PREFIX.size()) == SUBJECT_PREFIX) {
            result.subject = item.substr(SUBJECT_PREFIX.size());
        } else {
            result.paths.emplace_back(item);
        }
        first = false;
    }
    if (result.paths.empty()) return std::nullopt;
    return result;
}

}  // namespace tray_toast_ipc
