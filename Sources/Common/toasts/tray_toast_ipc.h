#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The toast request that processes of the suite send to the tray in one WM_COPYDATA: seven UTF-16
// fields joined by U+0001, terminated by U+0000.
namespace tray_toast_ipc {

constexpr uint64_t TOAST_COPYDATA_ID = 0x4B445654;  // "TVDK"
constexpr wchar_t FIELD_SEPARATOR = L'\u0001';
constexpr wchar_t LIST_SEPARATOR = L'\u0002';  // between the items of an add_to_index argument
constexpr std::wstring_view SUBJECT_PREFIX = L"--subject:";

enum class toast_click_action : int32_t { none = 0, open_settings_tab = 1, add_to_index = 2 };

struct toast_request {
    std::wstring icon_path;
    std::wstring tooltip;
    std::wstring title;
    std::wstring text;
    toast_click_action click_action = toast_click_action::none;
    std::wstring click_arg;

    friend bool operator==(const toast_request&, const toast_request&) = default;
};

// The payload without its terminator. A U+0001 inside a field is sent as a blank.
std::wstring encode_toast_request(const toast_request& request);

// Reads `length` characters (or up to the first U+0000). Fails on fewer than seven fields, a
// version other than 1, a non-numeric action or an empty text; `out` is left alone then.
bool decode_toast_request(const wchar_t* chars, size_t length, toast_request& out);

struct add_to_index_arguments {
    std::vector<std::wstring> paths;
    std::wstring subject;
};

// The items of an add_to_index argument; nothing when no path is left.
std::optional<add_to_index_arguments> parse_add_to_index_arg(std::wstring_view arg);

}  // namespace tray_toast_ipc
