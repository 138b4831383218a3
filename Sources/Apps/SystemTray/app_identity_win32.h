#pragma once

#include <string>

// HKCU\Software\Classes\AppUserModelId\Kestrane.Veldrake: the name and icon that toasts of the
// unpackaged process show. A key that cannot be opened is left alone.
void register_app_user_model_display(const std::wstring& icon_path);

// The process's explicit AppUserModelID, for an unpackaged process.
void set_process_app_user_model_id();
