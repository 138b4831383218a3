#include "host/settings/settings_sandbox.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

// A missing default fails every read, leaving the defaults, until it appears. (The Win32 tests copy
// the shipped default back after the user file is deleted.)
TEST(common_settings_file, a_missing_default_fails_every_read_until_it_appears) {
    settings_sandbox sandbox;
    std::filesystem::remove(sandbox.default_file());
    auto file = sandbox.open();
    EXPECT_FALSE(file->reload_if_changed(false) || std::filesystem::exists(sandbox.user_file()));
    EXPECT_EQ(file->get_int("x", "size", 7), 7);
    settings_sandbox::write(sandbox.default_file(), document_with_settings(R"({"size": 1})"), 1);
    ASSERT_TRUE(file->reload_if_changed(false));
    EXPECT_TRUE(file->get_int("x", "size", 0) == 1 && std::filesystem::exists(sandbox.user_file()));
}

// The settings file itself never fails to load; the rule belongs to every settings file. A load that
// throws what is no std::exception has failed too. An unchanged stamp loads nothing unless forced.
TEST(common_settings_file, a_failed_load_is_tried_again_at_the_next_poll) {
    struct failing_twice final : common::setting_utilities::common_settings_file {
        using common_settings_file::common_settings_file;
        bool load() override {
            if (++loads == 1) throw 42;
            return loads > 2;
        }
        int loads = 0;
    };
    settings_sandbox sandbox;
    failing_twice file(L"Settings", L"High Level Settings", sandbox);
    settings_sandbox::write(sandbox.user_file(), "{}", 1);
    EXPECT_EQ((std::vector<bool>{file.reload_if_changed(false), file.reload_if_changed(false),
                                 file.reload_if_changed(false), file.reload_if_changed(false)}),
              (std::vector<bool>{false, false, true, true}));
    EXPECT_EQ(file.loads, 3);
    EXPECT_TRUE(file.reload_if_changed(true) && file.loads == 4) << "a forced poll loads on an unchanged stamp";
}

// Readers on other threads see one whole document or the other while the file is reloaded.
TEST(common_settings_file, settings_threads_read_whole_documents_while_the_file_reloads) {
    settings_sandbox sandbox;
    auto file = sandbox.open();
    const auto document = [](int n) { return document_with_settings(fmt::format(R"({{"a": {0}, "l": ["{0}", "{0}"]}})", n)); };
    settings_sandbox::write(sandbox.user_file(), document(0), 0);
    ASSERT_TRUE(file->reload_if_changed(false));

    std::atomic<bool> done{false};
    std::atomic<int> torn{0};
    std::thread reader([&] {
        while (!done) {
            const auto list = file->get_string_list("x", "l", {});
            if (file->get_int("x", "a", -1) < 0 || list.size() != 2 || list[0] != list[1]) ++torn;
        }
    });
    for (int n = 1; n <= 40; ++n) {
        settings_sandbox::write(sandbox.user_file(), document(n), n);
        EXPECT_TRUE(file->reload_if_changed(false));
    }
    done = true;
    reader.join();
    EXPECT_EQ(std::pair(torn.load(), file->get_int("x", "a", -1)), std::pair(0, 40));
}
