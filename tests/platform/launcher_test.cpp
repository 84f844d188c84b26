#include "platform/launcher.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "test_folder.h"

namespace tavora {
namespace {

using Words = std::vector<std::string>;

TEST(SystemLauncher, SplitsTheLineStartsWithoutWaitingAndFailsOnAMissingProgram) {
    EXPECT_EQ(SplitCommandLine("notepad.exe c:\\tavora\\badlinks.txt"),
              (Words{"notepad.exe", "c:\\tavora\\badlinks.txt"}));
    EXPECT_EQ(SplitCommandLine("  prog   \"a b\"  c\"d e\"f \"\" "),
              (Words{"prog", "a b", "cd ef", ""}));
    EXPECT_TRUE(SplitCommandLine("   ").empty());

    TestFolder dir;
    const auto marker = dir.path() / "started";
    SystemLauncher launcher;
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(launcher.Start("/bin/sh -c \"sleep 0.3; touch '" + marker.string() + "'\""));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(250))
        << "the launcher waited for the program";
    for (int i = 0; i < 100 && !std::filesystem::exists(marker); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    EXPECT_TRUE(std::filesystem::exists(marker));

    EXPECT_FALSE(launcher.Start("c:\\tavora\\tqxst.exe"));
    EXPECT_FALSE(launcher.Start("no-such-program-here --flag"));
    EXPECT_FALSE(launcher.Start(""));
    EXPECT_FALSE(launcher.OpenTextFile("/no/such/badlinks.txt"));
}

}  // namespace
}  // namespace tavora
