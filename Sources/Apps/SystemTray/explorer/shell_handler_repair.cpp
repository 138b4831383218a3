#include "explorer/shell_handler_repair.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <algorithm>
#include <stdexcept>

namespace explorer {

namespace {

constexpr uint32_t READ_BUFFER_BYTES = 8192;
constexpr uint32_t HANDLER_BUFFER_BYTES = 2048;
const std::wstring CLASSES = L"Software\\Classes\\";

std::wstring icon_claim_key(const std::wstring& extension) {
    return CLASSES + L"SystemFileAssociations\\" + extension + L"\\ShellEx\\IconHandler";
}
std::wstring thumbnail_claim_key(const std::wstring& extension, const std::wstring& interface_id) {
    return CLASSES + L"SystemFileAssociations\\" + extension + L"\\ShellEx\\" + interface_id;
}
std::wstring icon_handler_key(const std::wstring& prog_id) { return CLASSES + prog_id + L"\\ShellEx\\IconHandler"; }
std::wstring thumbnail_key(const std::wstring& name, const std::wstring& interface_id) {
    return CLASSES + name + L"\\ShellEx\\" + interface_id;
}

bool names_class(registry_port& registry, const std::wstring& key, const std::wstring& class_id) {
    const std::wstring value = read_registry_string(registry, hive::current_user, key, L"");
    return !value.empty() && equal_folded(value, class_id);
}

// The keys that the shell looks up beside a claim: the extension's own (thumbnails only) and each ProgId's.
std::vector<std::wstring> icon_keys(const std::vector<std::wstring>& prog_ids) {
    std::vector<std::wstring> keys;
    for (const auto& id : prog_ids) keys.push_back(icon_handler_key(id));
    return keys;
}
std::vector<std::wstring> thumbnail_keys(const std::wstring& extension, const std::wstring& interface_id,
                                         const std::vector<std::wstring>& prog_ids) {
    std::vector<std::wstring> keys{thumbnail_key(extension, interface_id)};
    for (const auto& id : prog_ids) keys.push_back(thumbnail_key(id, interface_id));
    return keys;
}

bool all_name_class(registry_port& registry, const std::vector<std::wstring>& keys, const std::wstring& class_id) {
    return std::all_of(keys.begin(), keys.end(), [&](const auto& key) { return names_class(registry, key, class_id); });
}

void write_all(registry_port& registry, const std::wstring& claim, const std::vector<std::wstring>& keys,
               const std::wstring& class_id, const std::wstring& remembered_name) {
    write_handler_value(registry, claim, L"", class_id, remembered_name);
    for (const auto& key : keys) write_handler_value(registry, key, L"", class_id, remembered_name);
}

}  // namespace

std::wstring read_registry_string(registry_port& registry, hive root, const std::wstring& subkey,
                                  const std::wstring& value_name) {
    return as_string(registry.query(root, subkey, value_name, READ_BUFFER_BYTES)).value_or(L"");
}

void write_handler_value(registry_port& registry, const std::wstring& subkey, const std::wstring& value_name,
                         const std::wstring& data, const std::wstring& remembered_name) {
    if (registry.open_for_write(subkey, true) != 0) throw std::runtime_error("Failed to create/open registry key");
    const auto present = as_string(registry.query(hive::current_user, subkey, value_name, HANDLER_BUFFER_BYTES));
    // The remembering test alone compares exactly: the first original is kept for good.
    if (present && !present->empty() && *present != data &&
        !as_string(registry.query(hive::current_user, subkey, remembered_name, HANDLER_BUFFER_BYTES))) {
        registry.set_string(subkey, remembered_name, *present);
    }
    registry.set_string(subkey, value_name, data);
}

std::vector<std::wstring> collect_prog_ids(registry_port& registry, const std::wstring& extension) {
    std::vector<std::wstring> ids;
    if (extension.empty()) return ids;
    const std::wstring ext = with_leading_dot(extension);
    const auto add = [&ids](const std::wstring& id) {
        if (id.empty() || id == L"*" || equal_folded(id.substr(0, 4), L"appx")) return;
        if (std::any_of(ids.begin(), ids.end(), [&](const auto& known) { return equal_folded(known, id); })) return;
        ids.push_back(id);
    };
    if (const auto associated = registry.association_prog_id(ext)) add(*associated);
    add(read_registry_string(registry, hive::current_user,
                             L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\" + ext + L"\\UserChoice",
                             L"ProgId"));
    add(read_registry_string(registry, hive::current_user, CLASSES + ext, L""));
    add(read_registry_string(registry, hive::classes_root, ext, L""));
    for (const hive root : {hive::current_user, hive::local_machine}) {
        for (const auto& name : registry.value_names(root, CLASSES + ext + L"\\OpenWithProgids").value_or(
                 std::vector<std::wstring>{})) {
            add(name);
        }
    }
    return ids;
}

bool icon_handler_is_registered(registry_port& registry, const std::wstring& extension, const std::wstring& class_id) {
    if (extension.empty() || class_id.empty()) return false;
    const std::wstring ext = with_leading_dot(extension);
    return names_class(registry, icon_claim_key(ext), class_id) &&
           all_name_class(registry, icon_keys(collect_prog_ids(registry, ext)), class_id);
}

bool thumbnail_provider_is_registered(registry_port& registry, const std::wstring& extension,
                                      const std::wstring& class_id, const std::wstring& interface_id) {
    if (extension.empty() || class_id.empty() || interface_id.empty()) return false;
    const std::wstring ext = with_leading_dot(extension);
    return names_class(registry, thumbnail_claim_key(ext, interface_id), class_id) &&
           all_name_class(registry, thumbnail_keys(ext, interface_id, collect_prog_ids(registry, ext)), class_id);
}

void register_icon_handler(registry_port& registry, const std::wstring& extension, const std::wstring& class_id,
                           const std::wstring& remembered_name) {
    if (extension.empty() || class_id.empty()) return;
    const std::wstring ext = with_leading_dot(extension);
    write_all(registry, icon_claim_key(ext), icon_keys(collect_prog_ids(registry, ext)), class_id, remembered_name);
}

void register_thumbnail_provider(registry_port& registry, const std::wstring& extension, const std::wstring& class_id,
                                 const std::wstring& interface_id, const std::wstring& remembered_name) {
    if (extension.empty() || class_id.empty() || interface_id.empty()) return;
    const std::wstring ext = with_leading_dot(extension);
    write_all(registry, thumbnail_claim_key(ext, interface_id),
              thumbnail_keys(ext, interface_id, collect_prog_ids(registry, ext)), class_id, remembered_name);
}

int32_t repair_hijacked_handlers(registry_port& registry, const std::vector<std::wstring>& extensions,
                                 const std::wstring& class_id, const std::wstring& interface_id,
                                 const std::wstring& remembered_icon_name, const log_line& log) {
    int32_t count = 0;
    if (class_id.empty() || interface_id.empty()) return count;
    for (const auto& extension : extensions) {
        if (extension.empty()) continue;
        const std::wstring ext = with_leading_dot(extension);
        // The ProgIds are read once per claimed type: the writes below do not change where they come from.
        std::optional<std::vector<std::wstring>> prog_ids;
        const auto ids = [&]() -> const std::vector<std::wstring>& {
            if (!prog_ids) prog_ids = collect_prog_ids(registry, ext);
            return *prog_ids;
        };
        const std::wstring icon_claim = icon_claim_key(ext);
        if (names_class(registry, icon_claim, class_id)) {
            const auto keys = icon_keys(ids());
            if (!all_name_class(registry, keys, class_id)) {
                write_all(registry, icon_claim, keys, class_id, remembered_icon_name);
                ++count;
                log(log_severity::info, fmt::format(L"Repaired hijacked icon handler registration for {}", ext));
            }
        }
        const std::wstring thumbnail_claim = thumbnail_claim_key(ext, interface_id);
        if (names_class(registry, thumbnail_claim, class_id)) {
            const auto keys = thumbnail_keys(ext, interface_id, ids());
            if (!all_name_class(registry, keys, class_id)) {
                write_all(registry, thumbnail_claim, keys, class_id, REMEMBERED_THUMBNAIL_PROVIDER);
                ++count;
                log(log_severity::info, fmt::format(L"Repaired hijacked thumbnail provider registration for {}", ext));
            }
        }
    }
    return count;
}

}  // namespace explorer
