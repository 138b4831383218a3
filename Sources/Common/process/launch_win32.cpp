#include <windows.h>

#include <exdisp.h>
#include <oleauto.h>
#include <servprov.h>
#include <shldisp.h>
#include <shlguid.h>
#include <shlobj.h>

#include "platform/com_ptr_win32.h"
#include "platform/unique_resource_win32.h"
#include "process/launch_commands.h"
#include "process/launch_win32.h"

#include <stdexcept>

static_assert(process_launch::startf_use_show_window == STARTF_USESHOWWINDOW);
static_assert(process_launch::detached_process == DETACHED_PROCESS);
static_assert(process_launch::create_no_window == CREATE_NO_WINDOW);

namespace process_launch {
namespace {

class bstr {
public:
    explicit bstr(const std::wstring& text) : value_(SysAllocString(text.c_str())) {
        if (!value_) throw com_failure{E_OUTOFMEMORY};
    }
    bstr(const bstr&) = delete;
    bstr& operator=(const bstr&) = delete;
    ~bstr() { SysFreeString(value_); }
    BSTR get() const noexcept { return value_; }

private:
    BSTR value_;
};

class variant {
public:
    variant() noexcept { VariantInit(&value_); }
    explicit variant(const std::wstring& text) : variant() {
        value_.bstrVal = SysAllocString(text.c_str());
        if (!value_.bstrVal) throw com_failure{E_OUTOFMEMORY};
        value_.vt = VT_BSTR;
    }
    explicit variant(int32_t number) noexcept : variant() {
        value_.vt = VT_I4;
        value_.lVal = number;
    }
    variant(const variant&) = delete;
    variant& operator=(const variant&) = delete;
    // Clearing a string or a number cannot fail.
    ~variant() { VariantClear(&value_); }
    VARIANT& get() noexcept { return value_; }

private:
    VARIANT value_;
};

// The interpreter runs hidden: the child's window state comes from the "start" switch alone.
HRESULT shell_execute(IShellDispatch2& shell, const std::wstring& file, const std::wstring& arguments) {
    const bstr file_name(file);
    variant args{arguments}, folder{std::wstring()}, operation{std::wstring(L"open")}, show{0};
    return shell.ShellExecute(file_name.get(), args.get(), folder.get(), operation.get(), show.get());
}

std::wstring system_interpreter() {
    wchar_t folder[MAX_PATH];
    const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return interpreter_path(std::nullopt);
    return interpreter_path(std::wstring_view(folder, length));
}

// Both shell roads in their order, in a COM scope of this call; a thread already in another
// apartment goes on in the one it has.
void shell_execute_interpreter(const std::wstring& interpreter, const std::wstring& arguments) {
    bool started = false;
    {
        com_scope com;
        started = shell_execute_through_shell_object(interpreter, arguments) ||
                  shell_execute_through_desktop(interpreter, arguments);
    }
    if (!started) throw std::runtime_error("Failed to launch process via Explorer (ShellExecute fallback failed).");
}

bool create_process_direct(const std::wstring& path, const std::wstring& arguments, int32_t show_command,
                           bool no_window) {
    std::wstring command_line = direct_command_line(path, arguments);
    const direct_start options = direct_start_options(show_command, no_window);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = options.startup_flags;
    startup.wShowWindow = options.show_window;
    PROCESS_INFORMATION info{};
    // On failure GetLastError stays as CreateProcessW left it, for the caller to read.
    if (!CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, options.creation_flags, nullptr,
                        nullptr, &startup, &info)) {
        return false;
    }
    CloseHandle(info.hThread);
    CloseHandle(info.hProcess);
    return true;
}

}  // namespace

bool shell_execute_through_shell_object(const std::wstring& file, const std::wstring& arguments) {
    com_ptr<IShellDispatch2> shell;
    if (FAILED(CoCreateInstance(CLSID_Shell, nullptr, CLSCTX_ALL, IID_IShellDispatch2, shell.put_void())) || !shell) {
        return false;
    }
    return SUCCEEDED(shell_execute(*shell.get(), file, arguments));
}

bool shell_execute_through_desktop(const std::wstring& file, const std::wstring& arguments) {
    com_ptr<IShellWindows> windows;
    if (FAILED(CoCreateInstance(CLSID_ShellWindows, nullptr, CLSCTX_ALL, IID_IShellWindows, windows.put_void())) ||
        !windows) {
        return false;
    }
    variant location(0), root;
    LONG window = 0;
    com_ptr<IDispatch> desktop;
    if (FAILED(windows->FindWindowSW(&location.get(), &root.get(), SWC_DESKTOP, &window, SWFO_NEEDDISPATCH,
                                     desktop.put())) ||
        !desktop) {
        return false;
    }
    const auto services = desktop.try_query<IServiceProvider>();
    if (!services) return false;
    com_ptr<IShellBrowser> browser;
    if (FAILED(services->QueryService(SID_STopLevelBrowser, IID_IShellBrowser, browser.put_void())) || !browser) {
        return false;
    }
    com_ptr<IShellView> view;
    if (FAILED(browser->QueryActiveShellView(view.put())) || !view) return false;
    com_ptr<IDispatch> background;
    if (FAILED(view->GetItemObject(SVGIO_BACKGROUND, IID_IDispatch, background.put_void())) || !background) {
        return false;
    }
    const auto folder_view = background.try_query<IShellFolderViewDual>();
    if (!folder_view) return false;
    com_ptr<IDispatch> application;
    if (FAILED(folder_view->get_Application(application.put())) || !application) return false;
    const auto shell = application.try_query<IShellDispatch2>();
    if (!shell) return false;
    return SUCCEEDED(shell_execute(*shell.get(), file, arguments));
}

}  // namespace process_launch

bool launch_via_shell(const std::wstring& path, const std::wstring& arguments, int32_t show_command, bool no_window) {
    using namespace process_launch;
    try {
        shell_execute_interpreter(system_interpreter(),
                                  interpreter_arguments(window_switch(show_command), path, arguments));
        return true;
    } catch (const std::exception&) {
        return create_process_direct(path, arguments, show_command, no_window);
    }
}

bool launch_hidden_via_shell(const std::wstring& path, const std::wstring& arguments) {
    using namespace process_launch;
    shell_execute_interpreter(system_interpreter(), interpreter_arguments(window_switch(0), path, arguments));
    return true;
}

int32_t run_and_wait(const std::wstring& path, const std::wstring& arguments) {
    std::wstring command_line = process_launch::direct_command_line(path, arguments);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = SW_HIDE;
    PROCESS_INFORMATION info{};
    if (!CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr,
                        &startup, &info)) {
        return -1;
    }
    const unique_handle process(info.hProcess), thread(info.hThread);
    WaitForSingleObject(process.get(), INFINITE);
    DWORD code = static_cast<DWORD>(-1);
    GetExitCodeProcess(process.get(), &code);
    return static_cast<int32_t>(code);
}
