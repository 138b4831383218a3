#pragma once

#include <windows.h>

#include "explorer/registry_port.h"

namespace explorer {

// The registry port over the real registry. The three roots are the hives themselves in the tray; the
// contract tests hand it throwaway keys instead. The association lookup is the shell's, only with the
// real hives: with throwaway roots it answers nothing.
class platform_registry final : public registry_port {
public:
    platform_registry() = default;
    platform_registry(HKEY current_user, HKEY local_machine, HKEY classes_root, bool ask_shell)
        : roots_{current_user, local_machine, classes_root}, ask_shell_(ask_shell) {}

    std::optional<raw_value> query(hive root, const std::wstring& key, const std::wstring& name,
                                   uint32_t max_bytes) override;
    std::optional<std::vector<std::wstring>> value_names(hive root, const std::wstring& key) override;
    std::optional<std::vector<std::wstring>> subkey_names(hive root, const std::wstring& key) override;
    uint32_t open_for_write(const std::wstring& key, bool create) override;
    bool set_string(const std::wstring& key, const std::wstring& name, const std::wstring& data) override;
    bool set_dword(const std::wstring& key, const std::wstring& name, uint32_t data) override;
    bool delete_value(const std::wstring& key, const std::wstring& name) override;
    std::optional<std::wstring> association_prog_id(const std::wstring& extension) override;

private:
    HKEY root_of(hive root) const noexcept { return roots_[static_cast<size_t>(root)]; }

    HKEY roots_[3] = {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_CLASSES_ROOT};
    bool ask_shell_ = true;
};

}  // namespace explorer
