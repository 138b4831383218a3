#include "updates/update_download.h"

#include <gtest/gtest.h>

using namespace updates;

TEST(update_download, file_name_and_address_for_each_platform) {
    const std::wstring base = L"https://host/products/veldrake/Downloads/Public";
    const struct { uint16_t architecture; const wchar_t* version; std::wstring base, name, url; } cases[] = {
        {12, L"v1.2.0", base, L"Veldrake v1.2.0 ARM64.msi",
         base + L"/Veldrake%20v1.2.0%20ARM64.msi?ref=client_download_update"},
        {9, L"1.3", base + L"/", L"Veldrake 1.3 x64.msi", base + L"/Veldrake%201.3%20x64.msi?ref=client_download_update"},
        {0, L"v2 beta", L"h/p?a=1", L"Veldrake v2 beta x64.msi", L"h/p?a=1/Veldrake%20v2%20beta%20x64.msi&ref=client_download_update"},
        {5, L"<platform>", L"", L"Veldrake x64 x64.msi", L"/Veldrake%20x64%20x64.msi?ref=client_download_update"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::wstring name = installer_file_name(c.version, platform_text(c.architecture));
        EXPECT_EQ(name, c.name);
        EXPECT_EQ(installer_url(c.base, name), c.url);
    }
}

TEST(update_download, paths_arguments_and_the_size_floor) {
    const std::wstring path = L"C:\\Users\\u\\Downloads\\Veldrake v1.1 x64.msi";
    EXPECT_EQ(temporary_installer_path(path, 123456789012), path + L".123456789012.tmp");
    EXPECT_EQ(installer_arguments(path), L"/i \"" + path + L"\" /passive REBOOT=ReallySuppress");
    for (const auto& [bytes, ok] : {std::pair{5119999ull, false}, {5120000ull, true}, {0ull, false}, {9000000ull, true}}) {
        SCOPED_TRACE(bytes);
        EXPECT_EQ(installer_size_acceptable(bytes), ok);
    }
}

TEST(update_download, the_toast_goes_out_once_per_check_result_with_an_update) {
    const struct { uint32_t status; bool shown; } cases[] = {{1, false}, {2, false}, {4, true}, {8, true}, {16, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.status);
        tray_state s;
        EXPECT_TRUE(begin_version_check(s));
        EXPECT_FALSE(begin_version_check(s)) << "one check at a time";
        on_version_check_result(s, c.status);
        EXPECT_TRUE(begin_version_check(s)) << "the result ends it";
        EXPECT_EQ(s.update_status, c.status);
        EXPECT_EQ(take_download_toast(s), c.shown);
        EXPECT_FALSE(take_download_toast(s)) << "a refresh does not repeat it";
        on_version_check_result(s, c.status);
        EXPECT_EQ(take_download_toast(s), c.shown) << "the next result does";
    }
}

TEST(update_download, the_notice_follows_a_changed_recorded_version) {
    const struct { const wchar_t* recorded; bool due; } cases[] = {
        {L"", false}, {L"v1.0.10.0", false}, {L"v1.0.9.0", true}, {L"V1.0.10.0", true}, {L"v1.0.10.0 ", true}, {L"v1.0.11.0", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.recorded);
        EXPECT_EQ(installed_version_changed(c.recorded, L"v1.0.10.0"), c.due);
    }
}

TEST(update_download, texts_carry_the_version) {
    EXPECT_EQ(up_to_date_text(L"v1.0.10.0"), L"Your Veldrake is already up to date with v1.0.10.0. Happy veldrake!");
    EXPECT_EQ(update_installed_text(L"v2"), L"Update to v2 installed. Restart Windows when convenient to finish "
                                            L"cleaning up the previous version. Click to see what's new.");
}
