#pragma once

#include "logging/log_format.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The registry as Explorer's upkeep sees it: a few reads of the three hives and writes under the
// user's own. The repairs are algorithms over this port; the platform and an in-memory stand-in
// implement it, and one set of contract tests runs against both.
namespace explorer {

enum class hive : uint32_t { current_user, local_machine, classes_root };

// The platform's value types that the repairs tell apart.
constexpr uint32_t REG_SZ_TYPE = 1;
constexpr uint32_t REG_EXPAND_SZ_TYPE = 2;
constexpr uint32_t REG_DWORD_TYPE = 4;

// A value as stored: its type and its bytes (strings in UTF-16, little-endian).
struct raw_value {
    uint32_t type = 0;
    std::string bytes;
};

class registry_port {
public:
    virtual ~registry_port() = default;
    // Nothing when the key or value is absent, unreadable, or longer than `max_bytes`.
    virtual std::optional<raw_value> query(hive root, const std::wstring& key, const std::wstring& name,
                                           uint32_t max_bytes) = 0;
    // Names up to the first enumeration failure; nothing when the key cannot be opened for reading.
    virtual std::optional<std::vector<std::wstring>> value_names(hive root, const std::wstring& key) = 0;
    virtual std::optional<std::vector<std::wstring>> subkey_names(hive root, const std::wstring& key) = 0;
    // Opens the user's key with read and write rights, created first when `create` is set: 0 when it
    // opened, else the platform's error code.
    virtual uint32_t open_for_write(const std::wstring& key, bool create) = 0;
    // Writes and deletions go to the user's hive only, and tell whether the platform took them.
    virtual bool set_string(const std::wstring& key, const std::wstring& name, const std::wstring& data) = 0;
    virtual bool set_dword(const std::wstring& key, const std::wstring& name, uint32_t data) = 0;
    virtual bool delete_value(const std::wstring& key, const std::wstring& name) = 0;
    // The ProgId that the shell's association lookup names for `extension`, if it answers.
    virtual std::optional<std::wstring> association_prog_id(const std::wstring& extension) = 0;
};

using log_line = std::function<void(log_severity, const std::wstring&)>;

// UTF-16 bytes with a terminator, as the platform stores a REG_SZ.
std::string string_bytes(std::wstring_view text);
// A string value's text: only REG_SZ and REG_EXPAND_SZ (unexpanded), an even byte count and a final
// terminator; zero bytes are an empty string.
std::optional<std::wstring> as_string(const std::optional<raw_value>& value);
std::optional<uint32_t> as_dword(const std::optional<raw_value>& value);

// Class ids, ProgIds and extensions compare without regard to case.
std::wstring fold_case(std::wstring_view text);
bool equal_folded(std::wstring_view a, std::wstring_view b);
// ".ext" from "ext" or ".ext".
std::wstring with_leading_dot(std::wstring_view extension);

}  // namespace explorer
