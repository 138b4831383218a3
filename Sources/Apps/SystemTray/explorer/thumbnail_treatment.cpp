#include "explorer/thumbnail_treatment.h"

#include "explorer/shell_handler_repair.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

namespace explorer {

namespace {

const std::wstring ASSOCIATIONS = L"Software\\Classes\\SystemFileAssociations";
constexpr uint32_t PERCEIVED_TYPE_BYTES = 128;
constexpr uint32_t HANDLER_VALUE_BYTES = 2048;

bool qualifies(registry_port& registry, const std::wstring& key, const std::wstring& extension,
               const std::wstring& class_id, const std::wstring& interface_id) {
    if (equal_folded(extension, L".ico")) return false;  // icons keep their frame
    const auto perceived =
        as_string(registry.query(hive::classes_root, extension, L"PerceivedType", PERCEIVED_TYPE_BYTES));
    const std::wstring provider =
        read_registry_string(registry, hive::current_user, key + L"\\ShellEx\\" + interface_id, L"");
    return perceived && equal_folded(*perceived, L"image") && equal_folded(provider, class_id);
}

}  // namespace

bool has_treatment_marker(registry_port& registry, const std::wstring& extension, const std::wstring& marker_name) {
    const auto marker = as_dword(registry.query(hive::current_user, ASSOCIATIONS + L"\\" + with_leading_dot(extension),
                                                marker_name, sizeof(uint32_t)));
    return marker.value_or(0) != 0;
}

int32_t apply_thumbnail_treatment_overrides(registry_port& registry, bool suppress, const std::wstring& class_id,
                                            const std::wstring& interface_id, const std::wstring& marker_name) {
    int32_t count = 0;
    const auto names = registry.subkey_names(hive::current_user, ASSOCIATIONS);
    if (!names) return count;
    for (const auto& extension : *names) {
        if (extension.empty() || extension.front() != L'.') continue;
        const std::wstring key = ASSOCIATIONS + L"\\" + extension;
        const bool has = has_treatment_marker(registry, extension, marker_name);
        const bool want = suppress && qualifies(registry, key, extension, class_id, interface_id);
        if (want == has || registry.open_for_write(key, false) != 0) continue;
        if (want) {
            // A DWORD already there belongs to someone else: no override and no marker.
            if (registry.query(hive::current_user, key, L"Treatment", HANDLER_VALUE_BYTES).value_or(raw_value{}).type ==
                REG_DWORD_TYPE) {
                continue;
            }
            if (registry.set_dword(key, L"Treatment", 0) && registry.set_dword(key, marker_name, 1)) ++count;
        } else {
            registry.delete_value(key, L"Treatment");
            registry.delete_value(key, marker_name);
            ++count;
        }
    }
    return count;
}

int32_t update_thumbnail_treatment_overrides(registry_port& registry, bool suppress, const log_line& log) {
    const int32_t count = apply_thumbnail_treatment_overrides(registry, suppress, SUITE_HANDLER_CLASS,
                                                              THUMBNAIL_PROVIDER_INTERFACE, TREATMENT_MARKER);
    if (count >= 1) {
        log(log_severity::info, fmt::format(L"Updated {} thumbnail treatment override(s), suppress={}", count,
                                            suppress ? L"true" : L"false"));
    }
    return count;
}

}  // namespace explorer
