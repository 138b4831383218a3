#include "process/settings_app.h"

#include "platform/string_conversion.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <algorithm>
#include <array>

namespace settings_app {

bool is_application_control_error(uint32_t error) noexcept {
    // ERROR_ACCESS_DISABLED_BY_POLICY, ERROR_SYSTEM_INTEGRITY_POLICY_VIOLATION and the codes of
    // application control policies.
    constexpr std::array<uint32_t, 9> codes{1260, 4551, 4556, 4557, 4558, 4559, 4580, 4581, 4582};
    return std::find(codes.begin(), codes.end(), error) != codes.end();
}

std::wstring format_launch_failure_text(std::wstring_view path, uint32_t error, std::wstring_view error_text) {
    if (is_application_control_error(error)) {
        return fmt::format(
            L"Windows blocked the Veldrake Settings app from starting.\n\nSmart App Control or another application "
            L"control policy on this PC refused to run:\n{}\n\nWindows reported: {} (error {})\n\nPlease contact support "
            L"and include these details (use Copy).",
            path, error_text, error);
    }
    return fmt::format(L"The Veldrake Settings app could not be started.\n\n{}\n\nWindows reported: {} (error {})", path,
                       error_text, error);
}

std::string_view application_control_suffix(uint32_t error) noexcept {
    return is_application_control_error(error) ? " - blocked by Smart App Control or an application control policy" : "";
}

std::wstring open_tab_arguments(std::string_view tab) { return L"--open-tab=" + to_wide(tab); }

bool start_through_shell(bool packaged, bool elevated) noexcept { return packaged || elevated; }

}  // namespace settings_app
