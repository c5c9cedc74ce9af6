// SPDX-License-Identifier: Apache-2.0

// File names that are not drawings: devices, pipes, folders; and outputs that are inputs.

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "tests/apps/limits_run.h"

namespace {

using testing::HasSubstr;

class SpecialFilesTest : public BoundedToolTest {};

// Whatever a document names, only regular files in its own folder are opened.
TEST_F(SpecialFilesTest, SpecialFilesAreNotOpened) {
    ASSERT_EQ(mkfifo((Folder() / "pipe").c_str(), 0600), 0);
    std::filesystem::create_directory(Folder() / "folder");
    std::filesystem::create_symlink("/etc/hostname", Folder() / "link.png");
    std::filesystem::create_symlink("/etc", Folder() / "way-out");
    std::filesystem::create_symlink("loop", Folder() / "loop");
    WriteFile("sparse.png", "");
    std::filesystem::resize_file(Folder() / "sparse.png", std::uintmax_t{1} << 40U);
    std::string content;
    for (const char* name : {"/dev/zero",
                             "/dev/stdin",
                             "/dev/tty",
                             "/proc/self/mem",
                             "/proc/kmsg",
                             "/etc/hostname",
                             "pipe",
                             "folder",
                             ".",
                             "..",
                             "../x.png",
                             "link.png",
                             "way-out/hostname",
                             "loop",
                             "sparse.png",
                             "http://example.com/x.png",
                             "file:///etc/hostname",
                             "//example.com/x.png",
                             "",
                             "nul&#10;"})
        content += std::string("<image width='9' height='9' xlink:href='") + name + "'/>";
    WriteFile("a.svg", SmallDrawing(content));
    EXPECT_EQ(RunBounded("a.svg -o a.pdf").exitCode, 0);
    EXPECT_EQ(RunBounded("inspect a.svg > a.json").exitCode, 0);
    EXPECT_THAT(ReadFile("a.json"), testing::Not(HasSubstr("\"pixelImage\":{")));
    const ToolRun check = RunBounded("check --verbose a.svg");
    EXPECT_EQ(check.exitCode, 1);
    for (const std::string name : {"link.png", "way-out/hostname", "/etc/hostname"})
        EXPECT_THAT(check.output, HasSubstr("\"" + name + "\": the drawing may not read files there"));
    EXPECT_THAT(check.output, HasSubstr("nothing is loaded from the network"));
}

TEST_F(SpecialFilesTest, AnOutputNeverTakesThePlaceOfAnInput) {
    const std::string drawing = SmallDrawing(kLeaf);
    WriteFile("a.svg", drawing);
    std::filesystem::create_hard_link(Folder() / "a.svg", Folder() / "hard.svg");
    std::filesystem::create_symlink("a.svg", Folder() / "soft.svg");
    std::filesystem::create_directory(Folder() / "x");
    std::filesystem::create_directory_symlink(".", Folder() / "here");
    for (const char* output : {"a.svg", "./a.svg", "x/../a.svg", "hard.svg", "soft.svg", "here/a.svg"}) {
        EXPECT_EQ(Run({"a.svg", "-o", output}).exitCode, 8) << output;
        EXPECT_EQ(ReadFile("a.svg"), drawing) << output;
        EXPECT_EQ(ReadFile("hard.svg"), drawing) << output;
    }
    EXPECT_EQ(Run({"a.svg", "--out-dir", "here", "-f", "svg"}).exitCode, 8);
    EXPECT_EQ(ReadFile("a.svg"), drawing);
}

}  // namespace
