#include "common/test_registry_win32.h"
#include "e2e/tray_harness_win32.h"
#include "e2e/tray_presentation_desktop_win32.h"
#include "toasts/notification_window_win32.h"
#include "tray_messages.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>

using namespace e2e;

namespace {

const std::wstring NOTICE_KEY = L"Software\\Kestrane\\Veldrake";
constexpr const char* DOWNLOAD_PATH = "products/veldrake/Downloads/Public/";

std::string quoted(const std::filesystem::path& p) { return "'" + desktop::unix_path(p) + "'"; }

std::vector<std::filesystem::path> files_in(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) found.push_back(entry.path().filename());
    return found;
}

// The tests' web host on 127.0.0.1, serving the files of a folder, the short-timers tray's web host.
// Started and ended by its process id.
class update_site {
public:
    update_site() : root_(fresh_folder(L"update-site")) {
        std::filesystem::create_directories(root_ / DOWNLOAD_PATH);
        const std::string host = VELDRAKE_TEST_WEB_HOST;
        const auto run = fresh_folder(L"update-site-run"), pid_file = run / L"pid";
        desktop::run_unix("(python3 " + quoted(this_program().parent_path() / L"update_server.py") + " " +
                          host.substr(host.rfind(':') + 1) + " " + quoted(root_) + " " + quoted(pid_file) + " > " +
                          quoted(run / L"log") + " 2>&1 &)");
        poll_until([&] { return static_cast<bool>(std::ifstream(pid_file) >> pid_); });
    }
    ~update_site() {
        if (pid_ != 0) desktop::run_unix("kill " + std::to_string(pid_));
    }
    void version(const std::string& text) const {
        std::ofstream(root_ / "products/veldrake/download_public_version.txt", std::ios::binary) << text;
    }
    // The installer for `version`, of `bytes` bytes.
    void installer(const std::string& version, uint64_t bytes) const {
        const auto file = root_ / DOWNLOAD_PATH / ("Veldrake " + version + " x64.msi");
        std::ofstream(file).close();
        std::filesystem::resize_file(file, bytes);
    }
    // "slow": bodies trickle out, so that the download's dialog stays a while; "stall": requests wait.
    void flag(const char* name, bool on) const {
        if (on) std::ofstream(root_ / name);
        else std::filesystem::remove(root_ / name);
    }

private:
    std::filesystem::path root_;
    int pid_ = 0;
};

class updates_e2e : public tray_test {
protected:
    void SetUp() override {
        tray_test::SetUp();
        // A new prefix's Downloads is a link to the Linux home, which every prefix shares.
        downloads = known_folder(FOLDERID_Downloads);
        desktop::run_unix("d=" + quoted(downloads) + "; if [ -L $d ]; then rm $d; fi; rm -rf $d; mkdir -p $d");
        test_registry::delete_value(HKEY_CURRENT_USER, NOTICE_KEY, L"LastInstalledVersion");
    }

    HWND wait_for_dialog() const { return wait_for_window(tray->process().id(), L"KTN_SimpleProgressDialogWnd"); }
    // The dialog shows, then goes with its download.
    void dialog_goes(const std::function<void(HWND)>& while_open = {}) const {
        const HWND dialog = wait_for_dialog();
        EXPECT_NE(dialog, nullptr) << "no download dialog";
        if (dialog && while_open) while_open(dialog);
        EXPECT_TRUE(poll_until([&] { return !IsWindow(dialog); })) << "the dialog stays";
    }

    update_site site;
    std::filesystem::path downloads;
    std::optional<running_tray> tray;
};

using desktop::centre;

}  // namespace

// A minor update on the server: the first check gives the toast (the badge that its result gives is
// the presentation tests'); a click downloads with the dialog showing, keeps a file of exactly the
// floor's size and starts msiexec on it. Then each road that fails or is stopped leaves no file in
// Downloads and starts nothing: one byte short of the floor, and Esc (the Win32 tier shows that
// WM_CLOSE is Cancel).
TEST_F(updates_e2e, a_newer_minor_version_badges_toasts_and_installs_and_a_short_or_cancelled_download_does_not) {
    const system_program_double msiexec(known_folder(FOLDERID_System) / L"msiexec.exe");
    site.version("\xEF\xBB\xBFv1.1.0.0\r\n");
    site.installer("v1.1.0.0", 5120000);
    site.flag("slow", true);
    tray.emplace(true, short_timers_tray_exe());
    const HWND toast = wait_for_window(tray->process().id(), toast_utilities::NOTIFICATION_WINDOW_CLASS);
    ASSERT_NE(toast, nullptr) << "no update toast";
    RECT r{};
    GetWindowRect(toast, &r);
    ASSERT_TRUE(desktop::click(centre(r), 1));
    dialog_goes();
    const std::filesystem::path installer = downloads / L"Veldrake v1.1.0.0 x64.msi";
    EXPECT_EQ(msiexec.runs.wait(), (std::vector<std::vector<std::wstring>>{
                                        {L"/i", installer.wstring(), L"/passive", L"REBOOT=ReallySuppress"}}));
    EXPECT_EQ(files_in(downloads), std::vector<std::filesystem::path>{installer.filename()}) << "no temporary file left";

    std::filesystem::remove(installer);
    // Stopped downloads are of a size that would be installed.
    for (const bool cancel : {false, true}) {
        SCOPED_TRACE(cancel ? "Cancel" : "5119999 bytes");
        site.installer("v1.1.0.0", cancel ? 5120000 : 5119999);
        // What a click on the toast posts.
        PostMessageW(tray->window(), WM_START_DOWNLOAD, 0, 0);
        dialog_goes([&](HWND dialog) {
            if (!cancel) return;
            // Esc on the focused Cancel button, read by the tray's dialog-message loop.
            GUITHREADINFO gui{};
            gui.cbSize = sizeof(gui);
            GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &gui);
            EXPECT_EQ(gui.hwndFocus, GetDlgItem(dialog, IDCANCEL)) << "Cancel has the focus";
            PostMessageW(GetDlgItem(dialog, IDCANCEL), WM_KEYDOWN, VK_ESCAPE, 0);
        });
        EXPECT_TRUE(poll_until([&] { return files_in(downloads).empty(); })) << "a file stays in Downloads";
        EXPECT_EQ(msiexec.runs.wait(0).size(), 1u) << "only the first download was installed";
    }
}

// A check that hangs on the server leaves the window answering. Meanwhile, another version recorded at
// the last start gives "Update installed" after five seconds, whose click opens What's new, and this
// version is recorded (that no record or an equal one gives none is the core's). A failed check says so
// once in the log and counts as up to date; the menu command against an up-to-date server says so in a dialog.
TEST_F(updates_e2e, a_stalled_check_blocks_no_window_a_changed_version_gives_the_notice_and_a_404_is_logged) {
    site.flag("stall", true);
    test_registry::set_string(HKEY_CURRENT_USER, NOTICE_KEY, L"LastInstalledVersion", L"v1.0.9.0");
    const recorded_runs settings(L"Veldrake.exe", short_timers_tray_exe().parent_path());
    tray.emplace(true, short_timers_tray_exe());  // nothing served yet
    const log_mark mark(tray_log_file());
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(6);  // the first check is at 3 s
    while (std::chrono::steady_clock::now() < end) {
        ASSERT_TRUE(answers(tray->window()));
        Sleep(100);
    }
    // The index watch logs its samples meanwhile; only the version check must still be waiting.
    for (const auto& line : mark.messages()) EXPECT_EQ(line.find("Public version check"), std::string::npos) << line;
    const HWND toast = wait_for_window(tray->process().id(), toast_utilities::NOTIFICATION_WINDOW_CLASS);
    ASSERT_NE(toast, nullptr) << "no notice";
    EXPECT_EQ(test_registry::get_string(HKEY_CURRENT_USER, NOTICE_KEY, L"LastInstalledVersion"), L"v1.0.10.0");
    RECT r{};
    GetWindowRect(toast, &r);
    ASSERT_TRUE(desktop::click(centre(r), 1));
    EXPECT_EQ(settings.wait(), std::vector<std::vector<std::wstring>>{{L"--open-tab=what-new"}});
    site.flag("stall", false);
    EXPECT_TRUE(poll_until([&] {
        return mark.count("[WARNING] Public version check: unexpected HTTP status 404, ignoring the response") > 0;
    })) << "no warning";

    site.version("v1.0.10.0");
    PostMessageW(tray->window(), WM_COMMAND, ID_TRAY_UPDATE, 0);
    const HWND dialog = wait_for_window(tray->process().id(), L"#32770");
    ASSERT_NE(dialog, nullptr) << "no up-to-date dialog";
    EXPECT_EQ(dialog_body(dialog), L"Your Veldrake is already up to date with v1.0.10.0. Happy veldrake!");
    PostMessageW(dialog, WM_CLOSE, 0, 0);
}
