#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// What Exit ends besides the tray: the suite's resident processes, then the surrogate hosts of its
// shell extensions. Explorer is never touched.
namespace housekeeping {

constexpr std::array<const wchar_t*, 11> resident_process_names = {
    L"Veldrake.exe",
    L"Veldrake.HotkeyHandler.exe",
    L"Veldrake.HotkeyHandler.Helper.exe",
    L"Veldrake.Lumbrix.HelperService.exe",
    L"Veldrake.AutoTagging.Service.exe",
    L"Tessary.Common.TagManager.exe",
    L"Veldrake.Comment.exe",
    L"Veldrake.Paste.exe",
    L"Veldrake.Lumbrix.VariablesUX.exe",
    L"Veldrake.MessageDialog.exe",
    L"Tessary.Common.BatchProcessor.exe",
};

// Module name patterns; the last two carry a version in their file names.
constexpr std::array<const wchar_t*, 12> shell_extension_modules = {
    L"Veldrake.Corvane.ShellExtension.dll",
    L"Veldrake.Lumbrix.ShellExtension.dll",
    L"Veldrake.Paste.ShellExtension.dll",
    L"Veldrake.Comment.ShellExtension.dll",
    L"Tessary.Icon.ShellExtension.dll",
    L"Tessary.Rate.ShellExtension.dll",
    L"Tessary.Tag.ShellExtension.dll",
    L"Tessary.Namespace.ShellExtension.dll",
    L"Tessary.PropertyHandler.ShellExtension.dll",
    L"Tessary.IconHandler.ShellExtension.dll",
    L"Veldrake.Vantry*.dll",
    L"Veldrake.ContextMenuReplacement.Hook*.dll",
};

constexpr const wchar_t* SHELL_EXTENSION_HOST = L"dllhost.exe";

// "Resident processes: none running." or "Resident processes: closing 12 34".
std::wstring shutdown_report(const wchar_t* label, const std::vector<uint32_t>& process_ids);

}  // namespace housekeeping
