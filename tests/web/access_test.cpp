// Who gets in: host names, origins, rates, pairing, and the answers that follow from them.
#include "panelhost/web/access.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "panelhost/base/text.h"
#include "panelhost/web/guests.h"
#include "panelhost/web/http_rules.h"
#include "panelhost/web/paired_file.h"
#include "panelhost/web/qr_code.h"

namespace panelhost {
namespace {

constexpr int kPort = 8737;

TEST(Access, OnlyNamesOfThisMachineCountOnLoopback) {
    for (const char* host : {"localhost:8737", "LocalHost:8737", "127.0.0.1:8737", "[::1]:8737"}) {
        EXPECT_TRUE(IsLoopbackHost(host, kPort)) << host;
    }
    for (const char* host :
         {"", "localhost", "localhost:8738", "localhost:08737x", "127.0.0.1.evil.example:8737",
          "127.0.0.1:8737:8737", "[::1", "user@localhost:8737"}) {
        EXPECT_FALSE(IsLoopbackHost(host, kPort)) << host;
    }
    EXPECT_TRUE(IsLoopbackHost("localhost", 80));
}

TEST(Access, HostsThatCouldBreakOutOfAHeaderAreRefused) {
    EXPECT_TRUE(IsPlainHost("panel-pc.local:8737"));
    EXPECT_TRUE(IsPlainHost("[fe80::1]:8737"));
    for (const char* host : {"a;b", "a b", "a/b", "[::1;]", "a'b", "[]", "]", ":80", "a:999999"}) {
        EXPECT_FALSE(IsPlainHost(host)) << host;
    }
}

TEST(Access, OnlyTheOwnPageIsTheOwnOrigin) {
    EXPECT_TRUE(IsOwnOrigin("http://localhost:8737", "localhost:8737"));
    for (const char* origin : {"https://localhost:8737", "http://localhost", "null", "",
                               "http://localhost:87370", "http://evil.example"}) {
        EXPECT_FALSE(IsOwnOrigin(origin, "localhost:8737")) << origin;
    }
}

TEST(Access, BucketGivesItsCapacityThenItsRate) {
    TokenBucket bucket = MakeBucket(3, 2, 100);
    for (const bool expected : {true, true, true, false}) {
        EXPECT_EQ(TakeToken(bucket, 100), expected);
    }
    EXPECT_TRUE(TakeToken(bucket, 100.6));
    EXPECT_FALSE(TakeToken(bucket, 100.6));
    EXPECT_FALSE(TakeToken(bucket, 101.5, 3));
    EXPECT_TRUE(TakeToken(bucket, 102.1, 3));
    EXPECT_FALSE(TakeToken(bucket, 102.1));
    EXPECT_FALSE(TakeToken(bucket, 90));  // a clock that stepped back gives nothing
    PeerBuckets peers{2, 1};
    for (const bool expected : {true, true, false}) {
        EXPECT_EQ(TakeToken(BucketOf(peers, "a", 5), 5), expected);
    }
    EXPECT_TRUE(TakeToken(BucketOf(peers, "b", 5), 5));
}

std::string CookieOf(const Token& token) {
    return std::string(kPairingCookie) + "=" + token.text;
}

TEST(Pairing, ACodeGivesATokenAndNothingElseDoes) {
    Pairing pairing = MakePairing(true);
    ASSERT_EQ(pairing.code.size(), kPairingDigits);
    const auto dashed = [](const std::string& code) {
        return code.substr(0, 4) + "-" + code.substr(4) + " ";
    };
    ASSERT_EQ(TryPairing(pairing, dashed(pairing.code), "a", 0), PairingAnswer::Paired);
    ASSERT_EQ(TryPairing(pairing, dashed(pairing.lookCode), "a", 0), PairingAnswer::Paired);
    const std::string touch = CookieOf(pairing.tokens[0]);
    const std::string look = CookieOf(pairing.tokens[1]);
    struct Row {
        std::string cookie, authorization;
        Access access;
    };
    const Row rows[] = {{"", "", Access::None},
                        {"avqpanel_pair=", "Bearer ", Access::None},
                        {"other=1; " + touch, "", Access::Touch},
                        {touch + "0", "", Access::None},
                        {"x" + touch, "", Access::None},
                        {look, "", Access::Look},
                        {look, "Bearer " + pairing.tokens[0].text, Access::Touch},
                        {"", "Bearer " + pairing.tokens[1].text, Access::Look},
                        {"", pairing.tokens[0].text, Access::None}};
    for (const Row& row : rows) {
        EXPECT_EQ(AccessOf(pairing, row.cookie, row.authorization), row.access)
            << row.cookie << " " << row.authorization;
    }
    EXPECT_EQ(AccessOf(MakePairing(false), "", ""), Access::Touch);
    EXPECT_NE(MakePairing(true).code, pairing.code);
    EXPECT_NE(pairing.lookCode, pairing.code);
}

TEST(Pairing, WrongCodesCountAgainstTheirOwnPeerOnly) {
    Pairing pairing = MakePairing(true);
    const std::string wrong(kPairingDigits, 'x');
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(TryPairing(pairing, wrong, "a", 0), PairingAnswer::WrongCode);
    }
    EXPECT_EQ(TryPairing(pairing, pairing.code, "a", 0), PairingAnswer::TooManyAttempts);
    EXPECT_EQ(TryPairing(pairing, pairing.code, "b", 0), PairingAnswer::Paired);
    EXPECT_EQ(TryPairing(pairing, pairing.code, "a", 11), PairingAnswer::Paired);
    // Strangers by the hundred: who has tried most is remembered longest.
    for (int i = 0; i < 5; ++i) {
        TryPairing(pairing, wrong, "a", 20);
    }
    for (int i = 0; i < 200; ++i) {
        TryPairing(pairing, wrong, std::to_string(i), 20);
    }
    EXPECT_LE(pairing.attempts.buckets.size(), kMostPeers);
    EXPECT_EQ(TryPairing(pairing, pairing.code, "a", 20), PairingAnswer::TooManyAttempts);
}

TEST(Pairing, AfterManyWrongCodesThereAreNewOnes) {
    Pairing pairing = MakePairing(true);
    const std::string code = pairing.code;
    double nowS = 0;
    for (int i = 1; i < kMaxPairingFailures; ++i) {
        ASSERT_EQ(TryPairing(pairing, "x", "a", nowS += 20), PairingAnswer::WrongCode);
    }
    EXPECT_EQ(pairing.code, code);
    TryPairing(pairing, "x", "a", nowS += 20);
    EXPECT_NE(pairing.code, code);
    EXPECT_EQ(pairing.codesMade, 2);
    EXPECT_EQ(TryPairing(pairing, pairing.code, "a", nowS + 20), PairingAnswer::Paired);
}

TEST(Pairing, OutlivesTheProgramInAFileOfItsOwnersOnly) {
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("paired-" + std::to_string(getpid()));
    const std::string path = (folder / "deep" / "paired").string();
    Pairing pairing = MakePairing(true);
    for (std::size_t i = 0; i < kMaxPairedBrowsers + 3; ++i) {
        TryPairing(pairing, i % 2 == 0 ? pairing.code : pairing.lookCode, std::to_string(i), 0);
    }
    ASSERT_EQ(pairing.tokens.size(), kMaxPairedBrowsers);
    ASSERT_TRUE(SavePaired(path, pairing));
    EXPECT_EQ(std::filesystem::status(path).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    Pairing next = MakePairing(true);
    LoadPaired(path, next);
    for (const Token& token : pairing.tokens) {
        EXPECT_EQ(AccessOf(next, CookieOf(token), ""), token.access);
    }
    std::ofstream(path) << "touch\nown 0123\ntouch 0123456789abcdef0123456789abcdeX\n"
                        << std::string(5000, 'x') << "\nlook " << pairing.tokens[0].text << " more";
    Pairing none = MakePairing(true);
    LoadPaired(path, none);
    LoadPaired("", none);
    EXPECT_TRUE(none.tokens.empty());
    EXPECT_FALSE(SavePaired("/proc/none/paired", pairing));
    std::filesystem::remove_all(folder);
}

TEST(Pairing, IsKeptInTheStateFolderElseInTheHomeFolder) {
    const struct {
        const char *state, *home, *path;  // null: not set
    } rows[] = {{"/state", "/home/a", "/state/avqpanel/paired"},
                {"state", "/home/a", "/home/a/.local/state/avqpanel/paired"},
                {nullptr, "/home/a", "/home/a/.local/state/avqpanel/paired"},
                {nullptr, "home", ""},
                {nullptr, nullptr, ""}};
    const auto set = [](const char* name, const char* value) {
        return value != nullptr ? setenv(name, value, 1) : unsetenv(name);
    };
    const char* const home = std::getenv("HOME");
    const std::string before = home != nullptr ? home : "/";
    for (const auto& row : rows) {
        set("XDG_STATE_HOME", row.state);
        set("HOME", row.home);
        EXPECT_EQ(PairedFilePath(), row.path);
    }
    unsetenv("XDG_STATE_HOME");
    set("HOME", before.c_str());
}

TEST(Guests, SilentOnesMakeRoomAndPeersHaveTheirOwnLimits) {
    std::vector<Guest> guests;
    std::uint64_t id = 0;
    while (guests.size() < kMaxGuestsOfPeer) {
        EXPECT_TRUE(AdmitGuest(guests, "a").admitted);
        guests.push_back({++id, "a", guests.size() != 0});
    }
    EXPECT_EQ(AdmitGuest(guests, "b").leaves, 0U);
    Admission admission = AdmitGuest(guests, "a");
    EXPECT_TRUE(admission.admitted);
    EXPECT_EQ(admission.leaves, 2U) << "the longest waiting; the first is being answered";
    while (guests.size() < kMaxGuests) {
        guests.push_back({++id, std::to_string(id), true});
    }
    EXPECT_EQ(AdmitGuest(guests, "b").leaves, 2U) << "of all, the longest waiting";
    for (Guest& guest : guests) {
        guest.waits = false;
    }
    EXPECT_FALSE(AdmitGuest(guests, "b").admitted);
}

TEST(Guests, WebSocketsArePerPeerToo) {
    std::vector<std::string> open(kMaxSocketsOfPeer, "a");
    EXPECT_FALSE(AdmitSocket(open, "a"));
    EXPECT_TRUE(AdmitSocket(open, "b"));
    open.resize(kMaxSockets, "c");
    EXPECT_FALSE(AdmitSocket(open, "b"));
    const std::uint8_t address[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 1, 0, 2, 3};
    EXPECT_EQ(PeerOfV6(address), "20010db800010002::");
}

TEST(QrCode, StandsAsTextOnTheConsole) {
    const std::string code = QrText("http://192.168.1.5:8737/#12345678");
    const std::vector<std::string_view> lines = Lines(code);
    ASSERT_GE(lines.size(), 14U);
    EXPECT_EQ(lines.front().substr(0, 3), "\u2588") << "a light edge";
    EXPECT_EQ(QrText(std::string(4000, 'x')), "");
    EXPECT_NE(QrText("http://192.168.1.5:8737/#12345679"), code);
}

PageReply Ask(Pairing& pairing, PageRequest request) {
    return AnswerRequest(request, kPort, pairing, 0);
}

TEST(Pairing, ANetworkServerShowsNothingBeforePairing) {
    Pairing pairing = MakePairing(true);
    PageRequest request{"GET", "/", "panel:8737", "", "", "", false};
    EXPECT_EQ(Ask(pairing, request).status, 401U);
    EXPECT_THAT(Ask(pairing, request).body, testing::HasSubstr("name=\"code\""));
    request.target = "/window/0.png";
    EXPECT_EQ(Ask(pairing, request).status, 401U);
    request = {"GET", "/socket", "panel:8737", "http://panel:8737", "", "", true};
    EXPECT_FALSE(Ask(pairing, request).acceptsSocket);

    request = {"POST", "/pair", "panel:8737", "http://evil.example", "", "code=1", false};
    EXPECT_EQ(Ask(pairing, request).status, 403U);
    EXPECT_EQ(pairing.failures, 0);
    request.origin = "http://panel:8737";
    EXPECT_EQ(Ask(pairing, request).status, 403U);
    EXPECT_EQ(pairing.failures, 1);
    const std::string body = "code=" + pairing.code;
    request.body = body;
    EXPECT_EQ(Ask(pairing, request).status, 303U);

    const std::string cookie = CookieOf(pairing.tokens.back());
    request = {"GET", "/socket", "panel:8737", "http://panel:8737", cookie, "", true};
    EXPECT_TRUE(Ask(pairing, request).acceptsSocket);
    request.origin = "http://evil.example";
    EXPECT_EQ(Ask(pairing, request).status, 403U);
}

TEST(Pairing, AfterPairingABrowserGetsThePageItAskedFor) {
    Pairing pairing = MakePairing(true);
    PageRequest request{"GET", "/show/4012+MCU", "panel:8737", "", "", "", false};
    EXPECT_THAT(Ask(pairing, request).body, testing::HasSubstr("action=\"/pair?/show/4012+MCU\""));
    const std::string body = "code=" + pairing.code;
    const std::pair<const char*, const char*> rows[] = {{"/pair?/show/4012+MCU", "/show/4012+MCU"},
                                                        {"/pair?//evil.example", "/"},
                                                        {"/pair?/show/\r\nX", "/"},
                                                        {"/pair?/app.js", "/"},
                                                        {"/pair", "/"}};
    for (const auto& [target, location] : rows) {
        request = {"POST", target, "panel:8737", "http://panel:8737", "", body, false, target};
        const PageReply reply = Ask(pairing, request);
        ASSERT_EQ(reply.status, 303U) << target;
        EXPECT_EQ(reply.headers.front().value, location) << target;
    }
}

TEST(Access, FilesOfThePageAreToldForWhatTheyAre) {
    Pairing pairing = MakePairing(false);
    const std::pair<const char*, const char*> rows[] = {{"/", "text/html; charset=utf-8"},
                                                        {"/app.css", "text/css; charset=utf-8"},
                                                        {"/icon-192.png", "image/png"}};
    for (const auto& [path, type] : rows) {
        EXPECT_STREQ(Ask(pairing, {"GET", path, "localhost:8737", "", "", "", false}).contentType,
                     type);
    }
}

TEST(Pairing, ProgramsPairWithoutAPageAndMayBeToldToLookOnly) {
    Pairing pairing = MakePairing(true);
    PageRequest request{"GET", "/api/1/gauges", "panel:8737", "", "", "", false};
    EXPECT_EQ(Ask(pairing, request).status, 401U);
    request = {"POST", "/api/1/pair", "panel:8737", "http://evil.example", "", pairing.code, false};
    EXPECT_EQ(Ask(pairing, request).status, 403U);
    request.origin = "";
    EXPECT_THAT(Ask(pairing, request).body, testing::HasSubstr("\"access\":\"touch\""));
    request.body = pairing.lookCode;
    EXPECT_THAT(Ask(pairing, request).body, testing::HasSubstr("\"access\":\"look\""));
    request.body = "12";
    EXPECT_EQ(Ask(pairing, request).status, 403U);
    struct Row {
        std::size_t token;
        const char* target;
        bool mayTouch;
    };
    for (const Row& row :
         {Row{0, "/api/1/do", true}, Row{1, "/api/1/do", false}, Row{0, "/api/1/do?look", false}}) {
        const std::string bearer = "Bearer " + pairing.tokens[row.token].text;
        request = {"POST", row.target, "panel:8737", "", "", "{}", false, "a", bearer};
        const PageReply reply = Ask(pairing, request);
        EXPECT_EQ(reply.apiPath, "do");
        EXPECT_EQ(reply.mayTouch, row.mayTouch) << row.token << row.target;
    }
}

TEST(Access, TwoHostHeadersAreABadRequest) {
    Pairing pairing = MakePairing(false);
    PageRequest request{"GET", "/", "localhost:8737", "", "", "", false};
    EXPECT_EQ(Ask(pairing, request).status, 200U);
    request.hostHeaders = 2;
    EXPECT_EQ(Ask(pairing, request).status, 400U);
}

TEST(Pairing, OnLoopbackNothingIsPosted) {
    Pairing pairing = MakePairing(false);
    const PageRequest request{"POST",  "/pair", "localhost:8737", "http://localhost:8737", "",
                              "code=", false};
    EXPECT_EQ(Ask(pairing, request).status, 405U);
    EXPECT_TRUE(pairing.tokens.empty());
}

}  // namespace
}  // namespace panelhost
