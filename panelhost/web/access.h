// panelhost/web/access.h - who may talk to the page: rates, names of this host, pairing.
//
// Pure rules without sockets; times are seconds of any steady clock. On loopback the Host header
// must name this machine (a foreign name resolved to 127.0.0.1 is refused), on a network address a
// browser needs the cookie it gets for the pairing code.
#pragma once

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
bool TakeToken(TokenBucket& bucket, double nowS);

// "name" or "name:port" with a plain DNS name, IPv4 or bracketed IPv6 address.
bool IsPlainHost(std::string_view host);
bool IsLoopbackHost(std::string_view host, int port);
// Whether a page of `origin` is this server's own page. No Origin header: not a browser's page.
bool IsOwnOrigin(std::string_view origin, std::string_view host);

struct Pairing {
    bool required = false;
    std::string code;                  // what the pilot types: digits
    std::vector<std::string> cookies;  // given out, oldest first
    TokenBucket attempts;
    int failures = 0;
};

inline constexpr std::size_t kPairingDigits = 8;
inline constexpr int kMaxPairingFailures = 1000;  // then no more until the next start
inline constexpr std::size_t kMaxPairedBrowsers = 64;
inline constexpr const char* kPairingCookie = "avqpanel_pair";

Pairing MakePairing(bool required, double nowS);

enum class PairingAnswer { Paired, WrongCode, TooManyAttempts };
// Checks what was typed (blanks and dashes ignored); Paired adds a cookie at the end of the list.
PairingAnswer TryPairing(Pairing& pairing, std::string_view typed, double nowS);
bool IsPaired(const Pairing& pairing, std::string_view cookieHeader);

// The same time for every text of one length.
bool EqualSecrets(std::string_view a, std::string_view b);

}  // namespace panelhost
