#include "toasts/toast_dispatcher.h"

#include <gtest/gtest.h>

#include <chrono>

using tray_toast_ipc::toast_click_action;
using namespace std::chrono_literals;

namespace {

// Stands in for the platform's toast: records "title/text" and keeps each toast up, polling like the
// real one, until the test lets it go or the dispatcher wants it gone.
struct fake_screen {
    std::mutex mutex;
    std::vector<std::wstring> shown;
    std::vector<std::string> tabs;
    std::vector<std::pair<std::vector<std::wstring>, std::wstring>> indexed;
    std::atomic<int> released = 0;
    std::atomic<bool> ended_by_stop = false;

    toast_platform platform() {
        toast_platform p;
        p.show = [this](const toast_entry& entry, std::function<bool()> should_continue) {
            {
                std::lock_guard lock(mutex);
                shown.push_back(entry.title + L"/" + entry.text);
            }
            while (should_continue() && released == 0) std::this_thread::sleep_for(1ms);
            if (released > 0) --released;
            else ended_by_stop = true;
        };
        p.open_settings_tab = [this](const std::string& tab) { tabs.push_back(tab); };
        p.add_to_index = [this](const std::vector<std::wstring>& paths, const std::wstring& subject) {
            if (subject == L"throw") throw std::runtime_error("no helper");
            indexed.push_back({paths, subject});
        };
        return p;
    }
    std::vector<std::wstring> wait_shown(size_t n) {
        for (int i = 0; i < 10000; ++i, std::this_thread::sleep_for(1ms)) {
            std::lock_guard lock(mutex);
            if (shown.size() >= n) break;
        }
        std::lock_guard lock(mutex);
        return shown;
    }
};

toast_entry entry(const wchar_t* title, const wchar_t* text = L"x") { return {L"", L"", title, text, {}}; }

}  // namespace

TEST(toast_dispatcher_threads, queue_keeps_the_newest_three_and_drops_only_a_queued_equal_title_and_text) {
    fake_screen screen;
    toast_dispatcher dispatcher(screen.platform());
    dispatcher.enqueue(entry(L"up"));  // before the start: it waits for the thread
    dispatcher.start();
    ASSERT_EQ(screen.wait_shown(1), std::vector<std::wstring>{L"up/x"});
    dispatcher.enqueue(entry(L"up"));  // the first is on screen, no longer queued: taken
    dispatcher.enqueue(entry(L"up"));  // equal to a queued one: dropped
    dispatcher.enqueue(entry(L"a"));
    dispatcher.enqueue(entry(L"a", L"y"));  // the same title with another text: taken
    dispatcher.enqueue(entry(L"b"));        // the same text under another title: taken, "up" falls out
    dispatcher.enqueue(entry(L"a"));        // dropped, or it would push "a/x" out
    dispatcher.enqueue(entry(L"empty", L""));
    screen.released = 4;
    EXPECT_EQ(screen.wait_shown(4), (std::vector<std::wstring>{L"up/x", L"a/x", L"a/y", L"b/x"}));
    dispatcher.stop();
}

// A stopped dispatcher holds nothing that a later start would show.
TEST(toast_dispatcher_threads, stop_ends_a_showing_toast_and_drops_what_waits_and_what_comes_after) {
    fake_screen screen;
    toast_dispatcher dispatcher(screen.platform());
    dispatcher.start();
    dispatcher.enqueue(entry(L"long"));
    dispatcher.enqueue(entry(L"queued"));
    screen.wait_shown(1);
    dispatcher.stop();
    EXPECT_TRUE(screen.ended_by_stop);
    dispatcher.enqueue(entry(L"after stop"));
    dispatcher.start();
    dispatcher.enqueue(entry(L"restarted"));
    screen.released = 1;
    EXPECT_EQ(screen.wait_shown(2), (std::vector<std::wstring>{L"long/x", L"restarted/x"}));
}

TEST(toast_dispatcher, copy_data_is_refused_unless_it_is_a_toast_request) {
    fake_screen screen;
    toast_dispatcher dispatcher(screen.platform());
    const std::wstring good = tray_toast_ipc::encode_toast_request({L"", L"", L"t", L"x", {}, L""});
    const std::wstring six_fields = L"1\u0001\u0001\u0001title\u0001text\u00010";
    const auto bytes = [](const std::wstring& s) { return static_cast<uint32_t>((s.size() + 1) * sizeof(wchar_t)); };
    constexpr uint64_t id = tray_toast_ipc::TOAST_COPYDATA_ID;
    const struct { const char* name; copy_data_view view; bool taken; } cases[] = {
        {"good", {id, good.c_str(), bytes(good)}, true},
        {"odd byte count", {id, good.c_str(), bytes(good) - 1}, true},
        {"another dwData", {0x4B445655, good.c_str(), bytes(good)}, false},
        {"upper bytes set", {0x1'0000'0000 | id, good.c_str(), bytes(good)}, false},
        {"null data", {id, nullptr, bytes(good)}, false},
        {"six fields", {id, six_fields.c_str(), bytes(six_fields)}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(dispatcher.on_copy_data(&c.view), c.taken);
    }
    EXPECT_FALSE(dispatcher.on_copy_data(nullptr));
}

TEST(toast_dispatcher, click_handlers_start_what_the_action_names) {
    fake_screen screen;
    toast_dispatcher dispatcher(screen.platform());
    const struct { toast_click_action action; std::wstring arg; bool has_handler; } cases[] = {
        {toast_click_action(7), L"settings", false},
        {toast_click_action::open_settings_tab, L"", false},
        {toast_click_action::open_settings_tab, L"context-menu-replacement", true},
        {toast_click_action::add_to_index, L"--subject:Photos", false},
        {toast_click_action::add_to_index, L"--subject:Photos\u0002C:\\Pictures\\", true},
        {toast_click_action::add_to_index, L"--subject:throw\u0002C:\\A", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "action " << static_cast<int>(c.action));
        const auto handler = dispatcher.make_click_handler(c.action, c.arg);
        ASSERT_EQ(static_cast<bool>(handler), c.has_handler);
        if (handler) {
            EXPECT_NO_THROW(handler()) << "a failing launch is logged, never thrown";
        }
    }
    EXPECT_EQ(screen.tabs, std::vector<std::string>{"context-menu-replacement"});
    ASSERT_EQ(screen.indexed.size(), 1u);
    EXPECT_EQ(screen.indexed[0], (std::pair<std::vector<std::wstring>, std::wstring>{{L"C:\\Pictures\\"}, L"Photos"}));
}
