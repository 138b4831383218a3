#include "housekeeping/dialog_hook.h"
#include "settings/high_level_settings.h"

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

// The dialog hook's mode and its allowed and excluded process lists (the crash exclusions among them)
// come from a settings file that any program may write. Reading them must not crash, and whatever the
// lists hold, the selection keeps its rules.
namespace {

class fuzz_folder final : public common::setting_utilities::settings_file_system {
public:
    fuzz_folder() {
        std::filesystem::create_directories(root_ / "App" / "Content" / "Configurations");
        std::ofstream(root_ / "App" / "Content" / "Configurations" / "High Level Settings.json") << "{}";
    }
    std::filesystem::path local_app_data() override { return root_ / "LocalAppData"; }
    void* main_module() override { return this; }
    std::filesystem::path module_file_name(void*) override { return root_ / "App" / "Veldrake.SystemTray.exe"; }
    std::optional<uint64_t> last_write_time(const std::filesystem::path& file) override {
        return common::setting_utilities::platform_settings_file_system().last_write_time(file);
    }
    std::filesystem::path user_file() const {
        return root_ / "LocalAppData" / "Kestrane" / "Veldrake" / "Settings" / "High Level Settings.json";
    }

private:
    const std::filesystem::path root_ =
        std::filesystem::temp_directory_path() / ("veldrake-dialog-lists-fuzz-" + std::to_string(getpid()));
};

// The hook's own comparison: ASCII letters folded, nothing else.
bool same_text(const std::wstring& a, std::wstring_view lower) {
    if (a.size() != lower.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if ((a[i] >= L'A' && a[i] <= L'Z' ? a[i] + 32 : a[i]) != lower[i]) return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static fuzz_folder folder;
    static high_level_settings::settings_file settings(L"Settings", L"High Level Settings", folder);
    std::ofstream(folder.user_file(), std::ios::binary | std::ios::trunc).write(reinterpret_cast<const char*>(data), size);
    settings.reload_if_changed(true);

    housekeeping::dialog_settings chosen;
    if (!housekeeping::read_dialog_settings(settings, chosen)) return 0;
    if (housekeeping::dialog_selected(chosen, L"") || housekeeping::dialog_selected(chosen, L"explorer.exe")) std::abort();
    const bool off = same_text(chosen.mode, L"off"), allowlist = same_text(chosen.mode, L"allowlist");
    // Off serves nothing; the allowlist serves what it lists; otherwise nothing excluded is served.
    for (const auto& name : allowlist ? chosen.allowed : chosen.excluded) {
        if (name.empty() || name == L"explorer.exe") continue;
        if (housekeeping::dialog_selected(chosen, name) != (allowlist && !off)) std::abort();
    }
    return 0;
}
