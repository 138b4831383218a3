#include "e2e/tray_harness_win32.h"

#include "common/test_registry_win32.h"
#include "doubles/sibling_doubles_win32.h"
#include "e2e/tray_presentation_desktop_win32.h"
#include "logging/log_format.h"
#include "platform/paths_win32.h"
#include "toasts/tray_toast_ipc_win32.h"
#include "tray_messages.h"

#include <shellapi.h>

namespace e2e {

namespace {

const std::wstring personalize = L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";
const std::wstring dll_overrides = L"Software\\Wine\\DllOverrides";

bool notify_icon(DWORD message, HWND tray, UINT id) {
    NOTIFYICONDATAW icon{};
    icon.cbSize = sizeof(icon);
    icon.hWnd = tray;
    icon.uID = id;
    return Shell_NotifyIconW(message, &icon);
}

}  // namespace

std::filesystem::path tray_exe() { return this_program().parent_path() / L"Veldrake.SystemTray.exe"; }

std::filesystem::path short_timers_tray_exe() {
    return this_program().parent_path().parent_path() / L"short-timers" / L"Veldrake.SystemTray.exe";
}

std::filesystem::path tray_data_root() { return local_app_data_folder() / L"Kestrane" / L"Veldrake" / L"System Tray"; }

std::filesystem::path tray_log_file() {
    return tray_data_root() / L"System Tray" / L"Logs" /
           log_file_name(L"System Tray", to_local_time(std::chrono::system_clock::now()));
}

std::filesystem::path settings_file() {
    return local_app_data_folder() / L"Kestrane\\Veldrake\\Settings\\High Level Settings.json";
}

std::filesystem::path known_folder(REFKNOWNFOLDERID id) {
    PWSTR path = nullptr;
    SHGetKnownFolderPath(id, 0, nullptr, &path);
    std::filesystem::path result = path ? path : L"";
    CoTaskMemFree(path);
    return result;
}

void reset_tray_state() {
    // Moved aside, not deleted: a file of a folder being deleted stays while any process holds it open,
    // and a recursive delete of such a folder need never end.
    static int moved = 0;
    std::error_code ignored;
    const auto aside = std::filesystem::temp_directory_path() /
                       (L"veldrake-old-tray-data-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++moved));
    if (std::filesystem::exists(tray_data_root(), ignored)) std::filesystem::rename(tray_data_root(), aside, ignored);
    // The gate is the only key of the suite's in the machine's hive: a test leaves it as it found it.
    test_registry::delete_tree(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Kestrane");
}

void tray_test::set_theme(bool dark) {
    test_registry::set_dword(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme", dark ? 0 : 1);
}

void tray_test::TearDown() {
    desktop::click_empty_desktop();
    test_registry::delete_value(HKEY_CURRENT_USER, personalize, L"AppsUseLightTheme");
    // A tray that the test did not start itself (a sender did) ends through its window.
    if (HWND tray = FindWindowW(TRAY_WINDOW_CLASS, nullptr)) PostMessageW(tray, WM_CLOSE, 0, 0);
    if (!poll_until([] { return FindWindowW(TRAY_WINDOW_CLASS, nullptr) == nullptr; })) {
        DWORD stuck = 0;
        GetWindowThreadProcessId(FindWindowW(TRAY_WINDOW_CLASS, nullptr), &stuck);
        ADD_FAILURE() << "a tray outlived its test: process " << stuck;
        const unique_handle process(OpenProcess(PROCESS_TERMINATE | SYNCHRONIZE, FALSE, stuck));
        if (process && TerminateProcess(process.get(), 99)) WaitForSingleObject(process.get(), 5000);
    }
    reset_tray_state();
}

recorded_runs::recorded_runs(const wchar_t* program, const std::filesystem::path& folder)
    : program_(folder / program),
      record_(fresh_folder(L"runs-" + program_.stem().wstring()) / L"record.txt") {
    sibling_doubles::control(program_, record_);
}

recorded_runs::~recorded_runs() { sibling_doubles::remove_control(program_); }

std::vector<std::vector<std::wstring>> recorded_runs::wait(size_t count) const {
    std::vector<sibling_doubles::run_record> runs;
    poll_until([&] { return (runs = sibling_doubles::read_records(record_)).size() >= count; });
    std::vector<std::vector<std::wstring>> arguments;
    for (const auto& run : runs) {
        int argc = 0;
        wchar_t** argv = CommandLineToArgvW(run.command_line.c_str(), &argc);
        arguments.emplace_back(argv + 1, argv + argc);
        LocalFree(argv);
    }
    return arguments;
}

system_program_double::system_program_double(const std::filesystem::path& program)
    : program_(program), saved_(fresh_folder(L"builtin-" + program.stem().wstring()) / program.filename()),
      runs(program.filename().c_str(), program.parent_path()) {
    std::filesystem::copy_file(program_, saved_, std::filesystem::copy_options::overwrite_existing);
    sibling_doubles::install_copy(program_);
    // Else Wine runs its builtin whatever the file holds.
    test_registry::set_string(HKEY_CURRENT_USER, dll_overrides, program_.filename().c_str(), L"native");
}

system_program_double::~system_program_double() {
    test_registry::delete_value(HKEY_CURRENT_USER, dll_overrides, program_.filename().c_str());
    std::error_code ignored;
    std::filesystem::copy_file(saved_, program_, std::filesystem::copy_options::overwrite_existing, ignored);
}

resident::resident(const wchar_t* name, const std::string& mode)
    : program_(sibling_doubles::install_copy(fresh_folder(std::wstring(L"resident-") + name) / name)) {
    sibling_doubles::control(program_, program_.parent_path() / L"record.txt", "0", mode);
    process_ = child_process::start(program_);
    poll_until([&] { return !sibling_doubles::read_records(program_.parent_path() / L"record.txt").empty(); });
}

bool icon_shown(HWND tray, UINT id) { return notify_icon(NIM_MODIFY, tray, id); }

bool restart_explorer(HWND tray, UINT id) {
    if (!notify_icon(NIM_DELETE, tray, id)) return false;
    SendNotifyMessageW(HWND_BROADCAST, RegisterWindowMessageW(L"TaskbarCreated"), 0, 0);
    return true;
}

LRESULT send_copy_data(HWND tray, ULONG_PTR id, const wchar_t* payload, DWORD bytes) {
    COPYDATASTRUCT copy{id, bytes, const_cast<wchar_t*>(payload)};
    DWORD_PTR reply = 99;
    SendMessageTimeoutW(tray, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy), SMTO_BLOCK | SMTO_ABORTIFHUNG, 5000, &reply);
    return static_cast<LRESULT>(reply);
}

bool request_toast(const std::wstring& title) {
    return tray_toast_ipc::send_toast_request({L"", L"", title, L"text", tray_toast_ipc::toast_click_action::none, L""});
}

running_tray::running_tray(bool expect_window, const std::filesystem::path& exe)
    : process_(child_process::start(exe)) {
    if (!expect_window) return;
    // The tray's window is hidden.
    std::vector<HWND> found;
    poll_until([&] {
        return !(found = windows_of(process_.id(), TRAY_WINDOW_CLASS, nullptr, true)).empty() || !process_.running();
    });
    window_ = found.empty() ? nullptr : found.front();
    EXPECT_NE(window_, nullptr) << "no window of class VeldrakeSystemTrayWnd";
}

running_tray::~running_tray() {
    if (process_.running() && !close()) process_.terminate();
}

std::optional<DWORD> running_tray::close() {
    if (window_) PostMessageW(window_, WM_CLOSE, 0, 0);
    return process_.wait_exit(std::chrono::seconds(20));
}

}  // namespace e2e
