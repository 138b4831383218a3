#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

// Starting other processes. The launchers hand the start to the shell, which runs the command
// interpreter hidden, whose "start" starts the program; the shell's result says nothing of the child.

// Through the shell with the window switch of `show_command` (0 hide, 1 normal, 2 minimised,
// 3 maximised); when both shell roads are closed, CreateProcessW itself, where `no_window` gives a
// console child no window for show command 0. False when that fails too, with GetLastError set.
bool launch_via_shell(const std::wstring& path, const std::wstring& arguments, int32_t show_command, bool no_window);

// Through the shell with the "/B" switch only. Throws std::runtime_error when the shell roads are
// closed; the caller logs it.
bool launch_hidden_via_shell(const std::wstring& path, const std::wstring& arguments);

// Runs the program hidden and waits without limit: worker threads only. The exit code, or -1 when
// the program could not be started or its code read.
int32_t run_and_wait(const std::wstring& path, const std::wstring& arguments);

namespace process_launch {

// Out of memory for a COM string. Deliberately no std::exception: launch_via_shell lets it pass
// rather than trying the direct road.
struct com_failure {
    HRESULT result;
};

// The two shell roads, in the order the launchers take them, for a thread with COM initialised.
// Shell.Application's ShellExecute of `file` with "open", the interpreter hidden; false if any step fails.
bool shell_execute_through_shell_object(const std::wstring& file, const std::wstring& arguments);
// The same through the folder view of the desktop of the running Explorer.
bool shell_execute_through_desktop(const std::wstring& file, const std::wstring& arguments);

}  // namespace process_launch
