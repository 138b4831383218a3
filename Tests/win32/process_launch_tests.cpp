#include "common/wine_process_win32.h"
#include "doubles/sibling_doubles_win32.h"
#include "process/launch_win32.h"
#include "win32/process_scenario_runner_win32.h"

#include <gtest/gtest.h>

namespace {

// A sibling double at a path with blanks, recording into a file of this test.
class launch_test : public testing::Test {
protected:
    void SetUp() override {
        root = scenario_runner::fresh_folder(L"launch");
        program = sibling_doubles::install_copy(root / L"Program Files" / L"Veldrake Suite" / L"Veldrake.exe");
        record = root / L"record.txt";
        sibling_doubles::control(program, record);
    }
    void TearDown() override {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }

    // The runs recorded so far, once there are `count` of them.
    std::vector<sibling_doubles::run_record> runs(size_t count) const {
        test_support::poll_until([&] { return sibling_doubles::read_records(record).size() >= count; });
        return sibling_doubles::read_records(record);
    }

    static std::wstring current_folder() {
        std::wstring folder(32768, L'\0');
        folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
        return folder;
    }

    std::filesystem::path root, program, record;
};

}  // namespace

TEST_F(launch_test, run_and_wait_gives_each_exit_code_of_a_sequence_and_the_exact_command_line) {
    sibling_doubles::control(program, record, {3, 3, 0xC0000005, 0});
    const std::wstring arguments = L"reconcile --allow-restart";
    EXPECT_EQ(run_and_wait(program.wstring(), arguments), 3);
    EXPECT_EQ(run_and_wait(program.wstring(), arguments), 3);
    EXPECT_EQ(run_and_wait(program.wstring(), L""), static_cast<int32_t>(0xC0000005));
    EXPECT_EQ(run_and_wait(program.wstring(), L"\"quoted argument\" 2"), 0);
    EXPECT_EQ(run_and_wait(program.wstring(), arguments), 0) << "runs past the sequence keep its last code";

    const auto seen = runs(5);
    ASSERT_EQ(seen.size(), 5u);
    const std::wstring quoted = L"\"" + program.wstring() + L"\" ";
    EXPECT_EQ(seen[0].command_line, quoted + arguments);
    EXPECT_EQ(seen[2].command_line, quoted) << "empty arguments keep the blank";
    EXPECT_EQ(seen[3].command_line, quoted + L"\"quoted argument\" 2");
    for (const auto& run : seen) {
        EXPECT_EQ(run.program, L"Veldrake.exe");
        EXPECT_EQ(run.show, L"0");
        EXPECT_EQ(run.folder, current_folder()) << "the child keeps the caller's working folder";
    }
}

TEST_F(launch_test, run_and_wait_of_a_missing_program_gives_minus_one) {
    EXPECT_EQ(run_and_wait((root / L"Missing Folder" / L"Veldrake.exe").wstring(), L"reconcile"), -1);
    EXPECT_EQ(run_and_wait(L"", L""), -1);
    EXPECT_TRUE(sibling_doubles::read_records(record).empty());
}

TEST(process_launch_powershell, the_stand_in_powershell_runs_from_the_system_folder) {
    const auto root = scenario_runner::fresh_folder(L"powershell");
    const auto powershell = sibling_doubles::install_powershell();
    const auto record = root / L"record.txt";
    sibling_doubles::control(powershell, record, {1, 0});
    const std::wstring arguments = L"-NoProfile -NonInteractive -Command \"Add-AppxPackage -Register 'C:\\a b\\x.msix'\"";
    EXPECT_EQ(run_and_wait(powershell.wstring(), arguments), 1);
    EXPECT_EQ(run_and_wait(powershell.wstring(), arguments), 0);
    const auto seen = sibling_doubles::read_records(record);
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].program, L"powershell.exe");
    EXPECT_EQ(seen[0].command_line, L"\"" + powershell.wstring() + L"\" " + arguments);
    sibling_doubles::remove_control(powershell);
    std::filesystem::remove_all(root);
}
