#include "explorer/shell_repair_run.h"

#include "explorer/file_type_tables.h"
#include "explorer/shell_handler_repair.h"
#include "explorer/thumbnail_treatment.h"
#include "platform/string_conversion.h"
#include "settings/high_level_settings.h"

#include <fmt/format.h>
#include <fmt/xchar.h>

#include <exception>

namespace explorer {

std::optional<repair_choice> read_repair_choice(high_level_settings::settings_file& settings) {
    if (!settings.reload_if_changed(false)) return std::nullopt;
    repair_choice choice;
    choice.handlers_in_use = settings.is_app_enabled("tessary", true) &&
                             (settings.get_bool("tessary", "general.showTagsAsIconOverlay") ||
                              settings.get_bool("tessary", "general.showRatingAsIconOverlay"));
    choice.suppress = choice.handlers_in_use && settings.get_bool("tessary", "general.roundedThumbnailCorners");
    return choice;
}

bool run_shell_handler_repair(registry_port& registry, const repair_choice& choice, const log_line& log) {
    try {
        int32_t repaired = 0;
        if (choice.handlers_in_use) {
            std::vector<std::wstring> extensions;
            for (const auto& extension : repair_extension_list) extensions.push_back(to_wide(extension));
            repaired = repair_hijacked_handlers(registry, extensions, SUITE_HANDLER_CLASS, THUMBNAIL_PROVIDER_INTERFACE,
                                                REMEMBERED_ICON_HANDLER, log);
            if (repaired > 0) {
                log(log_severity::info, fmt::format(L"Repaired {} hijacked shell handler registration(s)", repaired));
            }
        }
        return repaired + update_thumbnail_treatment_overrides(registry, choice.suppress, log) > 0;
    } catch (const std::exception& e) {
        log(log_severity::error, L"repair_shell_handler_registrations_async failed: " + to_wide(e.what()));
    } catch (...) {
        log(log_severity::error, L"repair_shell_handler_registrations_async failed with unknown exception");
    }
    return false;
}

}  // namespace explorer
