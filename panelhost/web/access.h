// panelhost/web/access.h - who may talk to the page: rates, names of this host, pairing.
//
// Pure rules without sockets; times are seconds of any steady clock. On loopback the Host header
// must name this machine (a foreign name resolved to 127.0.0.1 is refused), on a network address a
// browser or program needs the token it gets for a pairing code.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace panelhost {

// Takes `capacity` at once and `perSecond` in the long run.
struct TokenBucket {
    double capacity = 1;
    double perSecond = 1;
    double level = 1;
    double lastS = 0;
};

TokenBucket MakeBucket(double capacity, double perSecond, double nowS);
bool TakeToken(TokenBucket& bucket, double nowS, double count = 1);

// One for each peer heard of lately: a new one is full, the fullest makes room for it.
struct PeerBuckets {
    double capacity = 1;
    double perSecond = 1;
    std::map<std::string, TokenBucket> buckets = {};
};
inline constexpr std::size_t kMostPeers = 64;

TokenBucket& BucketOf(PeerBuckets& peers, std::string_view peer, double nowS);

// "name" or "name:port" with a plain DNS name, IPv4 or bracketed IPv6 address.
bool IsPlainHost(std::string_view host);
bool IsLoopbackHost(std::string_view host, int port);
// Whether a page of `origin` is this server's own page. No Origin header: not a browser's page.
bool IsOwnOrigin(std::string_view origin, std::string_view host);

enum class Access { None, Look, Touch };  // each may do what those before it may

struct Token {  // what a paired browser or program shows
    std::string text;
    Access access = Access::Touch;
};

struct Pairing {
    bool required = false;
    std::string code;           // what the pilot types: digits
    std::string lookCode;       // the same for those who may only look
    std::vector<Token> tokens;  // given out, oldest first
    PeerBuckets attempts{5, 0.1};
    int failures = 0;   // since the codes were made
    int codesMade = 0;  // so that new ones are told
};

inline constexpr std::size_t kPairingDigits = 8;
inline constexpr int kMaxPairingFailures = 1000;  // then there are new codes
inline constexpr std::size_t kMaxPairedBrowsers = 64;
inline constexpr std::size_t kTokenCharacters = 32;
inline constexpr int kPairingDays = 90;
inline constexpr const char* kPairingCookie = "avqpanel_pair";

Pairing MakePairing(bool required);

enum class PairingAnswer { Paired, WrongCode, TooManyAttempts };
// Checks what was typed (blanks and dashes ignored); Paired adds a token at the end of the list.
// Each peer's wrong codes count against that peer only.
PairingAnswer TryPairing(Pairing& pairing, std::string_view typed, std::string_view peer,
                         double nowS);
// Of a request with these headers, either may be empty; "Bearer TOKEN" is for programs.
Access AccessOf(const Pairing& pairing, std::string_view cookieHeader,
                std::string_view authorization);

// The same time for every text of one length.
bool EqualSecrets(std::string_view a, std::string_view b);

}  // namespace panelhost
