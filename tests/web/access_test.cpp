// Who gets in: host names, origins, rates, pairing, and the answers that follow from them.
#include "panelhost/web/access.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "panelhost/web/http_rules.h"

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
    EXPECT_FALSE(TakeToken(bucket, 90));  // a clock that stepped back gives nothing
}

TEST(Pairing, TheCodeGivesACookieAndNothingElseDoes) {
    Pairing pairing = MakePairing(true, 0);
    ASSERT_EQ(pairing.code.size(), kPairingDigits);
    EXPECT_FALSE(IsPaired(pairing, ""));
    EXPECT_FALSE(IsPaired(pairing, "avqpanel_pair="));
    const std::string typed = pairing.code.substr(0, 4) + "-" + pairing.code.substr(4) + " ";
    ASSERT_EQ(TryPairing(pairing, typed, 0), PairingAnswer::Paired);
    const std::string cookie = std::string(kPairingCookie) + "=" + pairing.cookies.back();
    EXPECT_TRUE(IsPaired(pairing, "other=1; " + cookie));
    EXPECT_FALSE(IsPaired(pairing, cookie + "0"));
    EXPECT_FALSE(IsPaired(pairing, "x" + cookie));
    EXPECT_NE(MakePairing(true, 0).code, pairing.code);
}

TEST(Pairing, GuessesAreCountedAgainstTheRightCodeToo) {
    Pairing pairing = MakePairing(true, 0);
    const std::string wrong(kPairingDigits, 'x');
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(TryPairing(pairing, wrong, 0), PairingAnswer::WrongCode);
    }
    EXPECT_EQ(TryPairing(pairing, pairing.code, 0), PairingAnswer::TooManyAttempts);
    EXPECT_EQ(TryPairing(pairing, pairing.code, 11), PairingAnswer::Paired);
    double nowS = 1000;
    while (pairing.failures < kMaxPairingFailures) {
        TryPairing(pairing, wrong, nowS += 20);
    }
    EXPECT_EQ(TryPairing(pairing, pairing.code, nowS + 1000), PairingAnswer::TooManyAttempts);
}

PageReply Ask(Pairing& pairing, PageRequest request) {
    return AnswerRequest(request, kPort, pairing, 0);
}

TEST(Pairing, ANetworkServerShowsNothingBeforePairing) {
    Pairing pairing = MakePairing(true, 0);
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

    const std::string cookie = std::string(kPairingCookie) + "=" + pairing.cookies.back();
    request = {"GET", "/socket", "panel:8737", "http://panel:8737", cookie, "", true};
    EXPECT_TRUE(Ask(pairing, request).acceptsSocket);
    request.origin = "http://evil.example";
    EXPECT_EQ(Ask(pairing, request).status, 403U);
}

TEST(Pairing, OnLoopbackNothingIsPosted) {
    Pairing pairing = MakePairing(false, 0);
    const PageRequest request{"POST",  "/pair", "localhost:8737", "http://localhost:8737", "",
                              "code=", false};
    EXPECT_EQ(Ask(pairing, request).status, 405U);
    EXPECT_TRUE(pairing.cookies.empty());
}

}  // namespace
}  // namespace panelhost
