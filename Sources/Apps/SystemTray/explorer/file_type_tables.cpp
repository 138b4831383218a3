#include "explorer/file_type_tables.h"

namespace explorer {

namespace {
std::vector<std::string> with_mp3(std::vector<std::string> types) {
    types.push_back(".mp3");
    return types;
}
}  // namespace

// Defined in this order in one file, so known_file_types is built before the list copied from it.
const std::vector<std::string> known_file_types = {
    ".arw", ".asm", ".aspx", ".avi", ".bat", ".bmp", ".cmd", ".config", ".cpp", ".cs", ".csv", ".d64", ".dll",
    ".doc", ".docx", ".gif", ".gfie", ".heic", ".hpp", ".htm", ".html", ".ico", ".ini", ".jpeg", ".jpg", ".json",
    ".jxl", ".lnk", ".log", ".lnx", ".master", ".md", ".mov", ".mp4", ".msi", ".pdf", ".pfx", ".png", ".prg",
    ".ppt", ".pptx", ".ps1", ".rar", ".reg", ".rtf", ".sid", ".sln", ".svg", ".tif", ".tiff", ".tmp", ".txt",
    ".url", ".wav", ".webmanifest", ".webp", ".wma", ".xls", ".xlsx", ".xml", ".zip"};

const std::vector<std::string> repair_extension_list = with_mp3(known_file_types);

const std::vector<std::string> embedded_metadata_types = {".arw", ".heic", ".jpeg", ".jpg", ".jxl", ".mp4",
                                                          ".tif", ".tiff", ".wma", ".mp3", ".wmv"};

const std::vector<std::string> rich_preview_types = {".arw", ".bmp",  ".gif", ".heic", ".ico", ".jpeg",
                                                     ".jpg", ".tif", ".tiff", ".url", ".webp"};

const std::vector<std::string> photo_types = {".arw", ".heic", ".jpeg", ".jpg", ".tif", ".tiff", ".webp"};

const std::string_view file_types_guid = "{73A6EEEE-36B5-4536-A731-8F92EF883087}";
const std::string_view details_property_list =
    "prop:System.PropGroup.Description;System.Rating;System.Keywords;System.Comment;System.PropGroup.FileSystem;"
    "System.ItemNameDisplay;System.ItemType;System.ItemFolderPathDisplay;System.DateCreated;System.DateModified;"
    "System.Size;System.FileAttributes;System.OfflineAvailability;System.OfflineStatus;System.SharedWith;"
    "System.FileOwner;System.ComputerName";
const std::string_view tile_property_list = "prop:System.ItemType;System.Comment;System.Keywords;System.Rating;System.Size";
const std::string_view preview_property_list =
    "prop:System.ItemType;System.Keywords;System.Rating;System.Comment;System.Size";
const std::string_view calendar_location_property = "System.Calendar.Location";
const std::vector<std::string_view> contact_location_properties = {
    "System.Contact.PrimaryAddressCountry", "System.Contact.PrimaryAddressState", "System.Contact.PrimaryAddressCity",
    calendar_location_property};

}  // namespace explorer
