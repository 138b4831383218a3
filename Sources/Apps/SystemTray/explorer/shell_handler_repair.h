#pragma once

#include "explorer/registry_port.h"

#include <cstdint>
#include <string>
#include <vector>

// Puts the suite's icon handler and thumbnail provider back where another program took a claimed file
// type over. A type is hijacked when its claim key names the suite's class and a key that the shell
// looks up beside it does not; a type the suite never claimed is never touched.
namespace explorer {

constexpr wchar_t SUITE_HANDLER_CLASS[] = L"{931CC9DD-9E0F-4FA1-AA06-229D0372956A}";
// The IThumbnailProvider interface id: the ShellEx subkey of a thumbnail provider.
constexpr wchar_t THUMBNAIL_PROVIDER_INTERFACE[] = L"{e357fccd-a995-4576-b01f-234630154e96}";
// Where a replaced handler value is remembered, beside it. "OriginalPropertyHandler" is reserved for a
// property handler and written by nobody here.
constexpr wchar_t REMEMBERED_ICON_HANDLER[] = L"tessary_original_icon_handler";
constexpr wchar_t REMEMBERED_THUMBNAIL_PROVIDER[] = L"OriginalThumbnailProvider";

// A string value, "" on any failure.
std::wstring read_registry_string(registry_port& registry, hive root, const std::wstring& subkey,
                                  const std::wstring& value_name);

// Writes `data` under the user's `subkey`; a different value already there is first remembered under
// `remembered_name`, unless something is remembered already. Throws when the key cannot be opened.
void write_handler_value(registry_port& registry, const std::wstring& subkey, const std::wstring& value_name,
                         const std::wstring& data, const std::wstring& remembered_name);

// The type's ProgIds from the six places the shell takes them from, in order, without repeats and
// without packaged apps' "AppX" ones.
std::vector<std::wstring> collect_prog_ids(registry_port& registry, const std::wstring& extension);

bool icon_handler_is_registered(registry_port& registry, const std::wstring& extension, const std::wstring& class_id);
bool thumbnail_provider_is_registered(registry_port& registry, const std::wstring& extension,
                                      const std::wstring& class_id, const std::wstring& interface_id);
void register_icon_handler(registry_port& registry, const std::wstring& extension, const std::wstring& class_id,
                           const std::wstring& remembered_name);
void register_thumbnail_provider(registry_port& registry, const std::wstring& extension, const std::wstring& class_id,
                                 const std::wstring& interface_id, const std::wstring& remembered_name);

// The count of repairs over `extensions`, in their order; each repair is logged.
int32_t repair_hijacked_handlers(registry_port& registry, const std::vector<std::wstring>& extensions,
                                 const std::wstring& class_id, const std::wstring& interface_id,
                                 const std::wstring& remembered_icon_name, const log_line& log);

}  // namespace explorer
