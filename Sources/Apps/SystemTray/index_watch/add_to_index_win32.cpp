#include <windows.h>

#include "index_watch/add_to_index_win32.h"

#include "index_watch/add_to_index.h"
#include "logging/log.h"
#include "platform/paths_win32.h"
#include "process/launch_win32.h"

void launch_add_to_index_helper(const std::vector<std::wstring>& paths, const std::wstring& subject) {
    if (paths.empty()) return;
    const std::wstring helper = (module_folder() / L"Tessary.Common.BatchProcessor.exe").wstring();
    const std::wstring arguments = add_to_index_arguments(paths, subject);
    logging::log(log_severity::info, L"Launching add-to-index helper '{}' {}", helper, arguments);
    if (!launch_hidden_via_shell(helper, arguments)) {
        logging::log(log_severity::error, "Unable to launch the add-to-index helper");
    }
}
