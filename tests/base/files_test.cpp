#include "platform/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/sim_folder.h"
#include "support/temp_sim_folder.h"

namespace avq1 {
namespace {

using test::TempSimFolder;

TEST(Files, AreFoundUnderTheSimulatorsSpelling) {
    const TempSimFolder folder;
    folder.Write("AVQ/NavData/Avq_Navs.TXT", "navaids");
    folder.Write("avq/other.txt", "elsewhere");
    struct Case {
        const char* path;
        const char* contents;  // null: not found
    };
    // The folder exists in two spellings: the exact one wins, and holds only its own file.
    const Case cases[] = {
        {"\\AVQ\\NavData\\Avq_Navs.TXT", "navaids"},  {"\\AVQ\\navdata\\avq_navs.txt", "navaids"},
        {"\\Avq/NAVDATA\\\\avq_navs.txt", "navaids"}, {"\\avq\\OTHER.txt", "elsewhere"},
        {"\\avq\\navdata\\avq_navs.txt", nullptr},    {"\\AVQ\\NavData", nullptr},
        {"\\AVQ\\NavData\\Avq_Navs.TXT\\x", nullptr}};
    for (const Case& c : cases) {
        std::string contents = "stale";
        EXPECT_EQ(ReadWholeFile(SimPath(c.path), contents), c.contents != nullptr) << c.path;
        EXPECT_EQ(contents, c.contents == nullptr ? "" : c.contents) << c.path;
    }
    std::string contents;
    const std::filesystem::path from = std::filesystem::current_path();
    std::filesystem::current_path(folder.root());
    EXPECT_TRUE(ReadWholeFile("avq\\OTHER.txt", contents)) << "from the present folder";
    std::filesystem::current_path(from);
    ASSERT_EQ(mkfifo((folder.root() / "pipe.txt").c_str(), 0600), 0);
    EXPECT_FALSE(ReadWholeFile(SimPath("\\pipe.txt"), contents)) << "no file, and no waiting";
    EXPECT_FALSE(ReadWholeFile("", contents));
    EXPECT_FALSE(ReadWholeFile(std::string_view("a\0b", 3), contents));
}

TEST(Files, APartEndsWithTheFile) {
    const TempSimFolder folder;
    folder.Write("ten.txt", "0123456789");
    const struct {
        std::size_t offset, size;
        const char* contents;
    } cases[] = {{0, 4, "0123"}, {8, 100, "89"}, {10, 1, ""}, {99, 1, ""}};
    for (const auto& c : cases) {
        std::string contents = "stale";
        EXPECT_TRUE(ReadFilePart(SimPath("\\ten.txt"), c.offset, c.size, contents)) << c.offset;
        EXPECT_EQ(contents, c.contents) << c.offset;
    }
    std::string contents = "stale";
    EXPECT_FALSE(ReadFilePart(SimPath("\\none.txt"), 0, 1, contents));
    EXPECT_EQ(StampOf(SimPath("\\TEN.txt")).sizeBytes, 10U);
    EXPECT_EQ(StampOf(SimPath("\\none.txt")), FileStamp{});
    EXPECT_EQ(contents, "");
}

TEST(Files, AreReplacedWhole) {
    const TempSimFolder folder;
    folder.Write("Plans/Old.rte", "old and longer");
    EXPECT_TRUE(ReplaceFile(SimPath("\\plans\\OLD.RTE"), "new"));
    EXPECT_EQ(folder.Read("Plans/Old.rte"), "new");
    EXPECT_TRUE(ReplaceFile(SimPath("\\avq\\FlightLog\\fpl.log"), std::string_view("a\0b", 3)));
    EXPECT_EQ(folder.Read("avq/FlightLog/fpl.log"), std::string("a\0b", 3));
    // A folder in the target's place: refused, and nothing is left beside it.
    EXPECT_FALSE(ReplaceFile(SimPath("\\Plans"), "x"));
    EXPECT_FALSE(ReplaceFile(SimPath("\\Plans\\Old.rte\\below.rte"), "x"));
    std::vector<std::string> names;
    EXPECT_TRUE(ListFolder(SimPath("\\PLANS\\"), names));
    EXPECT_EQ(names, (std::vector<std::string>{"Old.rte"}));
    EXPECT_FALSE(ListFolder(SimPath("\\nowhere"), names));
    EXPECT_TRUE(names.empty());
}

TEST(Files, GrowAtTheirEndOrBeginAnew) {
    const TempSimFolder folder;
    folder.Write("file", "");
    const struct {
        const char* path;
        FileStart start;
        bool written;
        const char* contents;  // of log/Fpl.log afterwards
    } cases[] = {
        {"\\log\\Fpl.log", FileStart::AtEnd, true, "x"},
        {"\\LOG\\fpl.log", FileStart::AtEnd, true, "xx"},
        {"\\log\\fpl.log", FileStart::Anew, true, "x"},
        {"\\file\\fpl.log", FileStart::AtEnd, false, "x"},
        {"\\log", FileStart::AtEnd, false, "x"},
        {"\\log\\", FileStart::Anew, false, "x"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(AppendToFile(SimPath(c.path), "x", c.start), c.written) << c.path;
        EXPECT_EQ(folder.Read("log/Fpl.log"), c.contents) << c.path;
    }
    EXPECT_FALSE(AppendToFile("", "x", FileStart::AtEnd));
}

TEST(SimFolder, IsTheCurrentDirectoryWhenNothingElseIsKnown) {
    ResetModuleState();
    EnsureSimFolder();
    EXPECT_EQ(SimFolder, std::filesystem::current_path().string());
    SimFolder = "/elsewhere";
    EnsureSimFolder();
    EXPECT_EQ(SimPath("\\avq\\avq.cfg"), "/elsewhere\\avq\\avq.cfg");
    SimFolder.clear();
}

TEST(Messages, DropLinesWhenFullAndCanBeCut) {
    ResetModuleState();
    for (int i = 1; i <= 500; ++i) {
        AppendMessage("line " + std::to_string(i));
    }
    EXPECT_EQ(messages.count, 400);
    EXPECT_EQ(messages.lines[400], "line 400");
    CutMessages(10);
    AppendMessage("again");
    CutMessages(100);
    EXPECT_EQ(messages.count, 11);
    EXPECT_EQ(messages.lines[11], "again");
    AppendLogRecord("00:00:01 Taxi");
    EXPECT_EQ(messages.lines[12], "00:00:01 Taxi");
    EXPECT_EQ(messages.lastNotice, 11);
    CutMessages(4);
    EXPECT_EQ(messages.lastNotice, 4);
    CutMessages(0);
    AppendLogRecord("00:00:02 Taxi");
    EXPECT_EQ(messages.lastNotice, 0);
}

}  // namespace
}  // namespace avq1
