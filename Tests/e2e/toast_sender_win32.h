#pragma once

// The sibling process of the toast tests: this program, started with
//   --send-toast TITLE TEXT ACTION ARG   one request through send_tray_toast (starts the tray if needed)
//   --flood COUNT TAG                    COUNT requests through send_toast_request, as fast as they go
// Returns the exit code, or -1 when the arguments are not a sender's.
int run_toast_sender(int argc, wchar_t** argv);
