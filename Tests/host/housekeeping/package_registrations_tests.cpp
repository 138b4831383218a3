#include "housekeeping/package_registrations.h"
#include "platform/string_conversion.h"

#include <gtest/gtest.h>

#include <map>

using namespace housekeeping;

namespace {

constexpr uint64_t v(uint64_t a, uint64_t b, uint64_t c, uint64_t d) { return a << 48 | b << 32 | c << 16 | d; }

// A package folder and the user's registrations, as the pass sees them through its port. A
// registration that exits with 0 takes effect, as Add-AppxPackage's would.
struct scripted_port final : package_port {
    std::vector<folder_entry_info> entries;
    std::map<std::wstring, package_identity> identities;  // by file name
    std::map<std::wstring, std::vector<uint64_t>> registered;
    std::map<std::wstring, std::wstring> status;
    int32_t exit_code = 0;

    std::vector<std::string> lines, commands;
    std::vector<uint32_t> sleeps;

    bool maintenance_running() override { return false; }
    std::optional<std::vector<folder_entry_info>> list_folder(std::wstring&) override { return entries; }
    package_identity read_identity(const std::filesystem::path& file) override {
        const auto found = identities.find(file.filename().wstring());
        return found == identities.end() ? package_identity{} : found->second;
    }
    std::vector<uint64_t> registered_versions(const std::wstring& family) override { return registered[family]; }
    std::wstring status_text(const std::wstring& family) override { return status[family]; }
    bool explorer_holds_other_hook() override { return false; }
    void wait_for_explorer() override {}
    std::vector<uint32_t> older_surrogates(const std::wstring&, uint64_t) override { return {}; }
    void end_surrogates(const std::vector<uint32_t>&) override {}
    int32_t run_powershell(const std::wstring& arguments) override {
        commands.push_back(to_utf8(arguments));
        if (exit_code == 0) {
            for (auto& [file, id] : identities) registered[id.family_name] = {id.version}, status[id.family_name] = L"";
        }
        return exit_code;
    }
    void sleep_ms(uint32_t ms) override { sleeps.push_back(ms); }
    void log(log_severity level, const std::wstring& line) override {
        lines.push_back(std::string(level_name(static_cast<uint32_t>(level))) + " " + to_utf8(line));
    }
};

scripted_port one_package(uint64_t file_version, std::vector<uint64_t> registered, std::wstring status = L"") {
    scripted_port port;
    port.entries = {{"C:/Suite/Veldrake.Corvane.msix", true}};
    port.identities[L"Veldrake.Corvane.msix"] = {L"Veldrake.Corvane", L"Veldrake.Corvane_abc", file_version, true};
    port.registered[L"Veldrake.Corvane_abc"] = std::move(registered);
    port.status[L"Veldrake.Corvane_abc"] = std::move(status);
    return port;
}

const std::string behind = "INFO Package Veldrake.Corvane is registered at 1.2.3.3, behind its installed 1.2.3.4; "
                           "update attempt 1 exited with code 0";

}  // namespace

TEST(package_registrations, updates_only_what_is_registered_behind_its_file_or_unusable) {
    const struct { const char* name; scripted_port port; std::vector<std::string> lines; } cases[] = {
        {"no registration", one_package(v(1, 2, 3, 4), {}), {}},
        {"equal, usable", one_package(v(1, 2, 3, 4), {v(1, 2, 3, 4)}), {}},
        {"registered newer, unusable", one_package(v(1, 2, 3, 4), {v(1, 2, 3, 5)}, L"Modified"), {}},
        {"equal, unusable", one_package(v(1, 2, 3, 4), {v(1, 2, 3, 4)}, L"Tampered, Modified"),
         {"INFO Package Veldrake.Corvane is registered at 1.2.3.4 but AppX reports it unusable (Tampered, Modified); "
          "installed 1.2.3.4; update attempt 1 exited with code 0",
          "INFO Package registrations match the installed packages"}},
        {"older, the newest of two counts", one_package(v(1, 2, 3, 4), {v(1, 2, 3, 3), v(0, 9, 0, 0)}),
         {behind, "INFO Package registrations match the installed packages"}},
    };
    for (auto c : cases) {
        SCOPED_TRACE(c.name);
        complete_package_registrations(c.port, "C:/Suite");
        EXPECT_EQ(c.port.lines, c.lines);
        EXPECT_EQ(c.port.commands.size(), c.lines.size() / 2);
        EXPECT_EQ(c.port.sleeps, std::vector<uint32_t>(c.port.commands.size(), 2000)) << "a good attempt settles 2 s";
    }
}

TEST(package_registrations, takes_msix_files_of_any_case_and_warns_of_an_unreadable_one_once) {
    scripted_port port = one_package(v(1, 2, 3, 4), {v(1, 2, 3, 3)});
    port.entries = {{"C:/Suite/folder.msix", false}, {"C:/Suite/Veldrake.Corvane.MSIX", true},
                    {"C:/Suite/broken.msix", true}, {"C:/Suite/readme.txt", true}};
    port.identities[L"Veldrake.Corvane.MSIX"] = port.identities[L"Veldrake.Corvane.msix"];
    port.identities.erase(L"Veldrake.Corvane.msix");
    port.exit_code = 1;
    complete_package_registrations(port, "C:/Suite");
    EXPECT_EQ(port.lines.front(), "WARNING Cannot read the package identity of C:/Suite/broken.msix");
    EXPECT_EQ(std::count(port.lines.begin(), port.lines.end(), port.lines.front()), 1);
    EXPECT_EQ(port.commands.size(), 10u);
    EXPECT_EQ(port.commands[0], "-NoProfile -NonInteractive -ExecutionPolicy Bypass -Command \"Add-AppxPackage -Path "
                                "'C:/Suite/Veldrake.Corvane.MSIX' -ExternalLocation 'C:/Suite' -ForceUpdateFromAnyVersion "
                                "-ErrorAction Stop\"");
    EXPECT_EQ(port.sleeps, std::vector<uint32_t>(10, 30000)) << "a failed attempt settles 30 s";
    EXPECT_EQ(port.lines.back(), "WARNING Package registrations are still behind the installed packages after 10 "
                                 "attempts; the next tray start tries again");
}

TEST(package_registrations, quotes_for_powershell_and_prints_versions) {
    EXPECT_EQ(quote_for_powershell(L"C:\\Bob's 'Suite'"), L"'C:\\Bob''s ''Suite'''");
    EXPECT_EQ(version_text(v(1, 65535, 0, 7)), L"1.65535.0.7");
    EXPECT_TRUE(other_build_hook(L"Veldrake.ContextMenuReplacement.Hook.1.0.9.0.dll"));
    EXPECT_TRUE(other_build_hook(L"VELDRAKE.CONTEXTMENUREPLACEMENT.HOOK.dll"));
    EXPECT_FALSE(other_build_hook(L"veldrake.contextmenureplacement.hook.1.0.10.0.dll")) << "this build's own";
    EXPECT_FALSE(other_build_hook(L"Veldrake.Paste.ShellExtension.dll"));
}
