#include "settings/settings_document.h"

#include <cstdint>
#include <cstdlib>
#include <string>

// Any file a user or another program may leave in the settings folder: parsing must not crash or
// recurse without bound, and a document's records must be those of the ids they are filed under.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto parsed = high_level_settings::parse_settings_document(text);
    if (!parsed || !parsed->apps) return 0;
    for (const auto& [id, record] : *parsed->apps) {
        if (id != record.app_id) std::abort();
    }
    // Cut at the first null, the document is the same.
    const auto cut = high_level_settings::parse_settings_document(text.substr(0, text.find('\0')));
    if (!cut || cut->apps->size() != parsed->apps->size()) std::abort();
    return 0;
}
