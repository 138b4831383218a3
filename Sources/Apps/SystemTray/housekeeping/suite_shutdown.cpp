#include "housekeeping/suite_shutdown.h"

namespace housekeeping {

std::wstring shutdown_report(const wchar_t* label, const std::vector<uint32_t>& process_ids) {
    std::wstring text = label;
    if (process_ids.empty()) return text + L": none running.";
    text += L": closing";
    for (const uint32_t id : process_ids) text += L" " + std::to_wstring(id);
    return text;
}

}  // namespace housekeeping
