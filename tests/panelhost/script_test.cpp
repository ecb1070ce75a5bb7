#include "panelhost/script/script.h"

#include <gmock/gmock.h>

#include "panelhost/base/text.h"
#include "support/full_disk.h"
#include "tests/panelhost/host_fixture.h"

namespace panelhost {
namespace {

using testing::HasSubstr;

TEST(Script, NamesTheLineOfEveryMistake) {
    const std::pair<const char*, const char*> rows[] = {
        {"run 5\nfly 5\n", "line 2: unknown command \"fly\""},
        {"run\n", "line 1: usage: run"},
        {"\n\nsay \"open\n", "line 3: a quotation mark is not closed"},
    };
    for (const auto& [text, error] : rows) {
        EXPECT_THAT(ParseScript(text).errors, testing::ElementsAre(HasSubstr(error))) << text;
    }
}

TEST(Script, ReadsWordsQuotesAndComments) {
    const Script script = ParseScript("# all of it\r\n  click MCU \"LINE KEY 1\"  # here\r\n");
    EXPECT_THAT(script.errors, testing::IsEmpty());
    ASSERT_EQ(script.lines.size(), 1U);
    EXPECT_EQ(script.lines[0].line, 2);
    EXPECT_THAT(script.lines[0].words, testing::ElementsAre("MCU", "LINE KEY 1"));
}

TEST(Script, TheDocumentListsEveryCommandValueAndEvent) {
    const std::string document =
        ReadWholeFile(AVQ1_SOURCE_DIR "/docs/panel-host.md", 1U << 20U).value_or("");
    for (const ScriptCommandName& command : ScriptCommands()) {
        EXPECT_THAT(document, HasSubstr(std::string("| `") + command.name));
    }
    for (const char* name : StatusValueNames()) {
        EXPECT_THAT(document, HasSubstr(std::string("`") + name + "`"));
    }
    for (const KeyEventName& event : KeyEventNames()) {
        EXPECT_THAT(document, HasSubstr(Format("| %d | `%s` | %s |", event.number, event.name,
                                               event.meaning)));
    }
}

class ScriptRun : public HostTest {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        ASSERT_TRUE(
            Open("[Window Titles]\nWindow01=Unit\n"
                 "[Window00]\nsize_mm=100,50\ngauge00=probe!SERVER,0,0\n"
                 "gauge01=probe!PROBE,20,10\n"
                 "[Window01]\nsize_mm=40,30\nident=4001\nvisible=0\n"
                 "gauge00=probe!PROBE,0,0\n"));
    }
};

TEST_F(ScriptRun, ObeysAndFailsWithTheLine) {
    const std::pair<const char*, const char*> rows[] = {
        // empty: it runs
        {"expect var probe_number > 42", "line 1: expect: expectation failed: it is 42"},
        {"expect var probe_text = INIT", ""},
        {"expect var probe_text < INIT", "with = or != only"},
        {"expect var nothing = 1", "no value \"nothing\""},
        {"set heading 200\nset altitude 9000\nexpect var altitude = 9000", ""},
        {"set altitude high", "line 1: set: not a number: high"},
        {"run 1s\nexpect texts contains drawn", ""},
        {"expect texts Unit contains drawn", "expectation failed"},
        {"expect window 4001 hidden\nwindow unit open\nexpect window 4001 shown\n"
         "window 4001 close",
         ""},
        {"click PROBE \"LINE KEY 1\"\nexpect var heading-bug >= 1", ""},
        {"click PROBE nokey", "no key \"nokey\""},
        {"click NOSUCH X", "no gauge \"NOSUCH\""},
        {"click PROBE 35 25", "nothing to click there"},
        {"set heading-true 90\nevent HEADING_BUG_SET 123\nexpect var heading-bug = 123", ""},
        {"event 66042 77\nexpect var heading-bug = 77", ""},
        {"event 66042 -1\nexpect var heading-bug = 359", ""},
        {"event 66042 99999999999", "32-bit"},
        {"override #107 -1e9\nexpect var #107 = -1e9\nevent 66042 78\nexpect var #107 = -1e9", ""},
        {"override #107 inf\nexpect var #107 > 1e9\noverride #107 off\nexpect var #107 = 78", ""},
        {"override 107 5", "needs #NN"},
        {"override #107 much", "needs #NN"},
        {"run-until var time > 100000 timeout 2s", "not within 2 s"},
        {"run soon", "not a duration"},
        {"screenshot main picture.png", ""},
        {"screenshot main no/such/folder.png", "cannot write"},
        {"key nokey", "no key"},
        {"type AB9\nkey enter", ""},
        {"key a down\nkey a up", ""},
        {"key a away", "usage: key NAME"},
        {"trace t every soon", "not a duration: soon"},
        {"window nosuch open", "there is no window \"nosuch\""},
        {"texts main", ""},
        {"quit\nexpect var nothing = 1", ""},
    };
    for (const auto& [text, expected] : rows) {
        const std::string error = Run(text);
        EXPECT_THAT(error, HasSubstr(expected)) << text;
        EXPECT_EQ(error.empty(), *expected == '\0') << text << error;
    }
    EXPECT_GT(std::filesystem::file_size(folder_ / "picture.png"), 100U);
}

TEST_F(ScriptRun, PrintsWhatIsAskedFor) {
    const avq1::VerticalProfilePoint points[] = {
        {.name = "BRONC",
         .restriction = 2,
         .distanceNm = 26.04,
         .altitudeFt = 18139,
         .restrictionFt = 17000},
        {.name = "T/C", .distanceNm = 171.8, .altitudeFt = 32000}};
    avq1::VerticalProfileRecord profile;
    profile.phase = 0;
    profile.engaged = 1;
    profile.count = 2;
    profile.cruiseAltitudeFt = 32000;
    profile.targetAltitudeFt = 17000;
    profile.points = points;
    EXPECT_THAT(Run("profile"), HasSubstr("no vertical profile is planned"));
    EXPECT_THAT(Run("log"), HasSubstr("there is no flight log"));
    Services().vertical_profile(&profile);
    std::filesystem::create_directories(folder_ / "avq/FlightLog");
    WriteFile("avq/FlightLog/fpl.log", "00:00:00 InitLoad\n");
    const std::pair<const char*, const char*> rows[] = {
        {"say one \"two  three\"", "one two  three\n"},
        {"print probe_number probe_text\nprint probe_distance",
         "probe_number 42\nprobe_text INIT\nprobe_distance 12.5\n"},
        {"keys unit", "PROBE 2 3 6 6 LINE KEY 1\nPROBE 22 22 4 4 \n"},
        {"window unit open\nrun 0.1s\ntexts unit\nwindow unit close", "PROBE 14 9 drawn 2\n"},
        {"profile",
         "climb by VNAV, cruise 32000 ft, target 17000 ft\n"
         "  26.0 nm  18139 ft BRONC at or above 17000 ft\n 171.8 nm  32000 ft T/C\n"},
        {"log", "00:00:00 InitLoad\n"},
    };
    for (const auto& [script, printed] : rows) {
        char* text = nullptr;
        std::size_t size = 0;
        std::FILE* const out = open_memstream(&text, &size);
        EXPECT_EQ(RunScript(session_, ParseScript(script), folder_.string(), out).error, "");
        std::fclose(out);
        EXPECT_EQ(std::string(text, size), printed);
        std::free(text);
    }
}

TEST_F(ScriptRun, HoldsAndLetsGoTheKeysTheModuleReads) {
    const struct {
        const char* script;
        int scanCode, virtualKey;
        bool isDown;
    } rows[] = {
        {"key a down", 0x1E, 'A', true}, {"key Enter down", 0x1C, 0x0D, true},
        {"key 0 down", 0x0B, '0', true}, {"key 9 down", 0x0A, '9', true},
        {"key a up", 0x1E, 'A', false},  {"key enter", 0x1C, 0x0D, false},
        {"type 90", 0x0A, '9', false},   {"key pageup down", 0xC9, 0x21, true},
        {"key q down", 0x10, 'Q', true},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Run(row.script), "");
        std::uint8_t keys[256] = {};
        EXPECT_EQ(Services().read_keyboard(keys), 0);
        EXPECT_EQ(keys[row.scanCode] == 0x80, row.isDown) << row.script;
        EXPECT_EQ(Services().key_state(row.virtualKey) == 0x80, row.isDown) << row.script;
    }
}

TEST_F(ScriptRun, AClickNeverRepeatsAndAPressDoes) {
    for (const char* rate : {"1", "2", "4", "20", "60"}) {
        Log()->count = 0;
        EXPECT_EQ(Run(std::string("frame-rate ") + rate + "\nclick PROBE 4 5\n"), "");
        EXPECT_EQ(Clicks().size(), 2U) << rate << ": the press and the release";
    }
    Log()->count = 0;
    EXPECT_EQ(Run("press PROBE 4 5\nrun 1s\nrelease\n"), "");
    EXPECT_GT(Clicks().size(), 5U);
}

TEST_F(ScriptRun, TracesFlightTimeAtAnyRate) {
    EXPECT_EQ(Run("set rate 16\ntrace t every 10s probe_number #1\nrun 10s\ntrace off\n"), "");
    std::ifstream file(folder_ / "t");
    std::string line;
    std::getline(file, line);
    EXPECT_EQ(line, "# time lat lon altitude heading gs probe_number #1");
    int lines = 0;
    double last = -10;
    while (std::getline(file, line)) {
        const double time = std::stod(line);
        EXPECT_NEAR(time - last, 10, 0.81) << line;
        EXPECT_THAT(line, HasSubstr(" 42 "));
        last = time;
        ++lines;
    }
    EXPECT_EQ(lines, 17);
}

TEST_F(ScriptRun, AFullDiskIsSaidAndLeavesTheOldFile) {
    const struct {
        const char* script;
        const char* name;
        std::size_t bytes;
        bool written;
    } cases[] = {
        {"trace FILE every 1s\nrun 60s\n", "t", 200, false},
        {"trace FILE every 1s\nrun 60s\ntrace off\n", "t", 200, false},
        {"trace FILE every 1s\nrun 60s\n", "t", 1 << 20, true},
        {"screenshot 0 FILE\n", "p.png", 20, false},
        {"screenshot 0 FILE\n", "p.png", 1 << 20, true},
        {"trace /dev/full\nrun 1s\n", "t", 1 << 20, false},
        {"screenshot 0 /dev/full\n", "p.png", 1 << 20, false},
    };
    for (const auto& [script, name, bytes, written] : cases) {
        SCOPED_TRACE(script);
        WriteFile(name, "old");
        std::string text = script;
        if (const std::size_t at = text.find("FILE"); at != std::string::npos) {
            text.replace(at, 4, name);
        }
        std::string error;
        {
            const avq1::test::FullDisk disk(bytes);
            error = Run(text);
        }
        EXPECT_EQ(error.empty(), written) << error;
        EXPECT_EQ(error.find("cannot write") != std::string::npos, !written) << error;
        const std::string now = ReadWholeFile((folder_ / name).string(), 1 << 20).value_or("");
        EXPECT_EQ(now == "old", !written);
        EXPECT_FALSE(std::filesystem::exists(folder_ / (std::string(name) + ".part")));
    }
}

}  // namespace
}  // namespace panelhost
