#include "host/settings/settings_sandbox.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

std::string sized(int size) { return document_with_settings(fmt::format(R"({{"size": {}}})", size)); }

}  // namespace

TEST(common_settings_file, the_default_is_copied_on_first_use_and_again_after_deletion) {
    settings_sandbox sandbox;
    settings_sandbox::write(sandbox.default_file(), sized(1), 1);
    auto file = sandbox.open();
    EXPECT_FALSE(std::filesystem::exists(sandbox.user_file())) << "construction reads and copies nothing";
    EXPECT_EQ(file->get_int("x", "size", 0), 0);

    ASSERT_TRUE(file->reload_if_changed(false));
    EXPECT_EQ(file->get_int("x", "size", 0), 1);
    ASSERT_TRUE(std::filesystem::exists(sandbox.user_file()));

    settings_sandbox::write(sandbox.user_file(), sized(2), 2);
    ASSERT_TRUE(file->reload_if_changed(false));
    EXPECT_EQ(file->get_int("x", "size", 0), 2);

    std::filesystem::remove(sandbox.user_file());
    ASSERT_TRUE(file->reload_if_changed(false));
    EXPECT_EQ(file->get_int("x", "size", 0), 1);
    EXPECT_TRUE(std::filesystem::exists(sandbox.user_file()));
}

TEST(common_settings_file, an_unchanged_stamp_costs_one_stamp_read_and_reads_nothing) {
    settings_sandbox sandbox;
    auto file = sandbox.open();
    settings_sandbox::write(sandbox.user_file(), sized(1), 5);
    ASSERT_TRUE(file->reload_if_changed(false));

    // New content under the old stamp is not seen: the stamp is all that is looked at.
    settings_sandbox::write(sandbox.user_file(), sized(2), 5);
    for (int i = 0; i < 3; ++i) {
        sandbox.stamp_reads = 0;
        EXPECT_TRUE(file->reload_if_changed(false));
        EXPECT_EQ(sandbox.stamp_reads, 1);
        EXPECT_EQ(file->get_int("x", "size", 0), 1);
    }
}

TEST(common_settings_file, any_change_of_the_stamp_or_force_reads_the_file_again) {
    const struct {
        const char* name;
        int stamp;
        bool force;
    } cases[] = {{"later stamp", 6, false}, {"earlier stamp", 4, false}, {"same stamp, forced", 5, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        settings_sandbox sandbox;
        auto file = sandbox.open();
        settings_sandbox::write(sandbox.user_file(), sized(1), 5);
        ASSERT_TRUE(file->reload_if_changed(false));
        // Content that was already there when the stamp moved: only the stamp changes.
        settings_sandbox::write(sandbox.user_file(), sized(2), 5);
        ASSERT_TRUE(file->reload_if_changed(false));
        settings_sandbox::set_stamp(sandbox.user_file(), c.stamp);
        ASSERT_TRUE(file->reload_if_changed(c.force));
        EXPECT_EQ(file->get_int("x", "size", 0), 2);
    }
}

TEST(common_settings_file, a_missing_default_fails_every_read_until_it_appears) {
    settings_sandbox sandbox;
    std::filesystem::remove(sandbox.default_file());
    auto file = sandbox.open();
    for (int i = 0; i < 2; ++i) {
        EXPECT_FALSE(file->reload_if_changed(false));
        EXPECT_FALSE(std::filesystem::exists(sandbox.user_file()));
        EXPECT_TRUE(file->is_app_enabled("x", true));
        EXPECT_EQ(file->get_int("x", "size", 7), 7);
    }
    settings_sandbox::write(sandbox.default_file(), sized(3), 1);
    EXPECT_TRUE(file->reload_if_changed(false));
    EXPECT_EQ(file->get_int("x", "size", 7), 3);
}

// Readers on other threads see one whole document or the other while the file is reloaded.
TEST(common_settings_file, settings_threads_read_whole_documents_while_the_file_reloads) {
    settings_sandbox sandbox;
    auto file = sandbox.open();
    const auto document = [](int n) {
        return document_with_settings(fmt::format(R"({{"a": {0}, "b": {0}, "list": ["{0}", "{0}"]}})", n));
    };
    settings_sandbox::write(sandbox.user_file(), document(0), 0);
    ASSERT_TRUE(file->reload_if_changed(false));

    std::atomic<bool> done{false};
    std::atomic<int> torn{0};
    std::vector<std::thread> readers;
    for (int r = 0; r < 3; ++r) {
        readers.emplace_back([&] {
            while (!done) {
                const int a = file->get_int("x", "a", -1);
                const auto list = file->get_string_list("x", "list", {});
                if (a < 0 || list.size() != 2 || list[0] != list[1]) ++torn;
            }
        });
    }
    for (int n = 1; n <= 40; ++n) {
        settings_sandbox::write(sandbox.user_file(), document(n), n);
        EXPECT_TRUE(file->reload_if_changed(false));
    }
    done = true;
    for (auto& reader : readers) reader.join();
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(file->get_int("x", "b", -1), 40);
}
