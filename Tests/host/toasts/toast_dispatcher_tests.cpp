#include "toasts/toast_dispatcher.h"

#include <gtest/gtest.h>

#include <chrono>

using tray_toast_ipc::toast_click_action;

namespace {

// A stand-in for the platform's toast: it records titles and holds each toast on screen until the test
// lets it go or the dispatcher asks it to end.
class fake_screen {
public:
    toast_platform platform() {
        toast_platform p;
        p.thread_begin = [this] { begun = true; };
        p.show = [this](const toast_entry& entry, std::function<bool()> should_continue) {
            std::unique_lock lock(mutex);
            shown.push_back(entry.title);
            if (entry.on_click) entry.on_click();
            changed.notify_all();
            changed.wait(lock, [&] { return released > 0 || !should_continue(); });
            if (released > 0) --released;
            if (!should_continue()) ended_by_stop = true;
        };
        p.open_settings_tab = [this](const std::string& tab) { tabs.push_back(tab); };
        p.add_to_index = [this](const std::vector<std::wstring>& paths, const std::wstring& subject) {
            if (subject == L"throw") throw std::runtime_error("no helper");
            indexed.push_back({paths, subject});
        };
        return p;
    }

    void wait_shown(size_t count) {
        std::unique_lock lock(mutex);
        ASSERT_TRUE(changed.wait_for(lock, std::chrono::seconds(10), [&] { return shown.size() >= count; }));
    }
    void release_one() {
        std::lock_guard lock(mutex);
        ++released;
        changed.notify_all();
    }
    // The dispatcher's stop flag changes outside our lock: poke the waiting toast so it looks again.
    void poke() { changed.notify_all(); }

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::wstring> shown;
    std::vector<std::string> tabs;
    std::vector<std::pair<std::vector<std::wstring>, std::wstring>> indexed;
    int released = 0;
    std::atomic<bool> begun = false;
    std::atomic<bool> ended_by_stop = false;
};

toast_entry entry(const wchar_t* title, const wchar_t* text = L"text") { return {L"", L"", title, text, {}}; }

}  // namespace

TEST(toast_dispatcher_threads, four_requests_during_a_toast_leave_the_last_three) {
    fake_screen screen;
    toast_dispatcher dispatcher(screen.platform());
    dispatcher.start();
    dispatcher.enqueue(entry(L"showing"));
    screen.wait_shown(1);
    for (const wchar_t* title : {L"a", L"b", L"c", L"d"}) dispatcher.enqueue(entry(title));
    for (int i = 0; i < 4; ++i) screen.release_one();
    screen.wait_shown(4);
    dispatcher.stop();
    EXPECT_EQ(screen.shown, (std::vector<std::wstring>{L"showing", L"b", L"c", L"d"}));
    EXPECT_TRUE(screen.begun);
}

TEST(toast_dispatcher_threads, equal_title_and_text_are_dropped_only_while_queued) {
    fake_screen screen;
    toast_dispatcher dispatcher(screen.platform());
    dispatcher.start();
    dispatcher.enqueue(entry(L"same"));
    screen.wait_shown(1);
    dispatcher.enqueue(entry(L"same"));  // the first is on screen, no longer queued: accepted
    dispatcher.enqueue(entry(L"same"));  // equal to a queued one: dropped
    dispatcher.enqueue(entry(L"same", L"other text"));
    dispatcher.enqueue(entry(L"empty", L""));  // no text: dropped
    for (int i = 0; i < 3; ++i) screen.release_one();
    screen.wait_shown(3);
    dispatcher.stop();
    EXPECT_EQ(screen.shown, (std::vector<std::wstring>{L"same", L"same", L"same"}));
}

TEST(toast_dispatcher_threads, stop_ends_a_showing_toast_and_drops_later_requests) {
    fake_screen screen;
    toast_dispatcher dispatcher(screen.platform());
    dispatcher.start();
    dispatcher.enqueue(entry(L"long"));
    dispatcher.enqueue(entry(L"queued"));
    screen.wait_shown(1);
    std::thread poker([&] {
        while (dispatcher.running() && !screen.ended_by_stop) {
            screen.poke();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    dispatcher.stop();
    poker.join();
    dispatcher.enqueue(entry(L"after stop"));
    EXPECT_TRUE(screen.ended_by_stop);
    EXPECT_EQ(screen.shown, std::vector<std::wstring>{L"long"});
    EXPECT_FALSE(dispatcher.running());
}

TEST(toast_dispatcher_threads, copy_data_is_refused_silently_unless_it_is_a_toast_request) {
    fake_screen screen;
    toast_dispatcher dispatcher(screen.platform());
    const std::wstring good = tray_toast_ipc::encode_toast_request({L"", L"", L"title", L"text", toast_click_action::none, L""});
    const auto bytes = static_cast<uint32_t>((good.size() + 1) * sizeof(wchar_t));
    const std::wstring six_fields = L"1\u0001\u0001\u0001title\u0001text\u00010";
    const struct {
        const char* name;
        copy_data_view view;
        bool taken;
    } cases[] = {
        {"good", {tray_toast_ipc::TOAST_COPYDATA_ID, good.c_str(), bytes}, true},
        {"odd byte count", {tray_toast_ipc::TOAST_COPYDATA_ID, good.c_str(), bytes - 1}, true},
        {"another dwData", {0x4B445655, good.c_str(), bytes}, false},
        {"upper bytes set", {0x1'4B445654, good.c_str(), bytes}, false},
        {"null data", {tray_toast_ipc::TOAST_COPYDATA_ID, nullptr, bytes}, false},
        {"cbData 0", {tray_toast_ipc::TOAST_COPYDATA_ID, good.c_str(), 0}, false},
        {"cbData 1", {tray_toast_ipc::TOAST_COPYDATA_ID, good.c_str(), 1}, false},
        {"six fields", {tray_toast_ipc::TOAST_COPYDATA_ID, six_fields.c_str(), static_cast<uint32_t>((six_fields.size() + 1) * sizeof(wchar_t))}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(dispatcher.on_copy_data(&c.view), c.taken);
    }
    EXPECT_FALSE(dispatcher.on_copy_data(nullptr));
}

TEST(toast_dispatcher_threads, click_handlers_start_what_the_action_names) {
    fake_screen screen;
    toast_dispatcher dispatcher(screen.platform());
    const struct {
        toast_click_action action;
        std::wstring arg;
        bool has_handler;
    } cases[] = {
        {toast_click_action::none, L"settings", false},
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
    EXPECT_EQ(screen.indexed[0].first, std::vector<std::wstring>{L"C:\\Pictures\\"});
    EXPECT_EQ(screen.indexed[0].second, L"Photos");
}
