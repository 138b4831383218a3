#pragma once

#include "explorer/registry_port.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

// The registry in memory. Keys and value names compare without regard to case; values enumerate in
// the order of their first write, subkeys in folded order. Like Wine 8, the classes root is the
// machine's classes alone. Every port call is counted (the lookup of its key counts it).
class fake_registry final : public explorer::registry_port {
public:
    using hive = explorer::hive;
    using raw_value = explorer::raw_value;
    using values = std::vector<std::pair<std::wstring, raw_value>>;

    // Test set-up in any hive; the key and its parents are created.
    void plant(hive root, const std::wstring& key, const std::wstring& name, const raw_value& value) {
        put(make(root, key), name, value);
    }

    std::optional<raw_value> query(hive root, const std::wstring& key, const std::wstring& name, uint32_t max) override {
        values* found = find(root, key);
        const auto* at = found ? named(*found, name) : nullptr;
        return at && at->second.bytes.size() <= max ? std::optional(at->second) : std::nullopt;
    }
    std::optional<std::vector<std::wstring>> value_names(hive root, const std::wstring& key) override {
        const values* found = find(root, key);
        if (!found) return std::nullopt;
        std::vector<std::wstring> names;
        for (const auto& value : *found) names.push_back(value.first);
        return names;
    }
    std::optional<std::vector<std::wstring>> subkey_names(hive root, const std::wstring& key) override {
        if (!find(root, key)) return std::nullopt;
        const std::wstring prefix = id(root, key) + L"\\";
        std::vector<std::wstring> names;
        for (const auto& [path, entry] : keys) {
            if (path.starts_with(prefix) && path.find(L'\\', prefix.size()) == std::wstring::npos) {
                names.push_back(entry.first.substr(entry.first.size() - (path.size() - prefix.size())));
            }
        }
        return names;
    }
    uint32_t open_for_write(const std::wstring& key, bool create) override {
        if (refuse_writes) return ++calls, 5;  // ERROR_ACCESS_DENIED
        if (create) make(hive::current_user, key);
        return find(hive::current_user, key) ? 0 : 2;  // ERROR_FILE_NOT_FOUND
    }
    bool set_string(const std::wstring& key, const std::wstring& name, const std::wstring& data) override {
        return set(key, name, {explorer::REG_SZ_TYPE, explorer::string_bytes(data)});
    }
    bool set_dword(const std::wstring& key, const std::wstring& name, uint32_t data) override {
        return set(key, name, {explorer::REG_DWORD_TYPE, std::string(reinterpret_cast<const char*>(&data), 4)});
    }
    bool delete_value(const std::wstring& key, const std::wstring& name) override {
        values* found = find(hive::current_user, key);
        return found && std::erase_if(*found, [&](const auto& v) { return explorer::equal_folded(v.first, name); }) > 0;
    }
    // The shell's association lookup never answers here.
    std::optional<std::wstring> association_prog_id(const std::wstring&) override {
        ++calls;
        return std::nullopt;
    }

    int calls = 0;
    bool refuse_writes = false;  // no key opens for writing

private:
    // A key's folded path with its hive in front; the classes root is the machine's classes.
    static std::wstring id(hive root, const std::wstring& key) {
        if (root == hive::classes_root) return id(hive::local_machine, L"Software\\Classes\\" + key);
        return std::to_wstring(static_cast<int>(root)) + L"\\" + explorer::fold_case(key);
    }
    static std::pair<std::wstring, raw_value>* named(values& in, const std::wstring& name) {
        const auto at = std::ranges::find_if(in, [&](const auto& value) { return explorer::equal_folded(value.first, name); });
        return at == in.end() ? nullptr : &*at;
    }
    values* find(hive root, const std::wstring& key) {
        ++calls;
        const auto found = keys.find(id(root, key));
        return found == keys.end() ? nullptr : &found->second.second;
    }
    values& make(hive root, const std::wstring& key) {
        for (size_t end = key.find(L'\\'); end != std::wstring::npos; end = key.find(L'\\', end + 1)) {
            keys.try_emplace(id(root, key.substr(0, end)), key.substr(0, end), values{});
        }
        return keys.try_emplace(id(root, key), key, values{}).first->second.second;
    }
    static void put(values& in, const std::wstring& name, const raw_value& value) {
        if (auto* at = named(in, name)) at->second = value; else in.emplace_back(name, value);
    }
    bool set(const std::wstring& key, const std::wstring& name, const raw_value& value) {
        values* found = find(hive::current_user, key);
        return found && (put(*found, name, value), true);
    }

    std::map<std::wstring, std::pair<std::wstring, values>> keys;  // id -> (path as written, values)
};
