#include "panelhost/web/access.h"

#include <algorithm>
#include <cctype>
#include <random>

#include "panelhost/base/text.h"

namespace panelhost {
namespace {

constexpr double kPairingBurst = 5;
constexpr double kPairingPerSecond = 0.1;
constexpr std::size_t kCookieCharacters = 32;

std::string RandomText(std::string_view alphabet, std::size_t length) {
    std::random_device source;
    std::uniform_int_distribution<std::size_t> pick(0, alphabet.size() - 1);
    std::string text;
    while (text.size() < length) {
        text.push_back(alphabet[pick(source)]);
    }
    return text;
}

bool IsPort(std::string_view text) {
    return !text.empty() && text.size() <= 5 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Splits "name:port"; an IPv6 address keeps its brackets. False when it is neither.
bool SplitHost(std::string_view host, std::string_view& name, std::string_view& port) {
    const std::size_t bracket = host.find(']');
    const std::size_t colon = host.find(':', bracket == std::string_view::npos ? 0 : bracket);
    name = host.substr(0, colon);
    port = colon == std::string_view::npos ? std::string_view() : host.substr(colon + 1);
    return !name.empty() && (colon == std::string_view::npos || IsPort(port));
}

bool IsNameCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '.' || c == '-';
}

bool IsAddressCharacter(char c) {
    return std::isxdigit(static_cast<unsigned char>(c)) != 0 || c == '.' || c == ':';
}

}  // namespace

TokenBucket MakeBucket(double capacity, double perSecond, double nowS) {
    return {capacity, perSecond, capacity, nowS};
}

bool TakeToken(TokenBucket& bucket, double nowS) {
    const double gained = std::max(0.0, nowS - bucket.lastS) * bucket.perSecond;
    bucket.level = std::min(bucket.capacity, bucket.level + gained);
    bucket.lastS = nowS;
    if (bucket.level < 1) {
        return false;
    }
    bucket.level -= 1;
    return true;
}

bool IsPlainHost(std::string_view host) {
    std::string_view name;
    std::string_view port;
    if (host.size() > 255 || !SplitHost(host, name, port)) {
        return false;
    }
    if (name.front() == '[') {
        const std::string_view inner = name.substr(1, name.size() - 2);
        return name.size() > 3 && name.back() == ']' &&
               std::all_of(inner.begin(), inner.end(), IsAddressCharacter);
    }
    return std::all_of(name.begin(), name.end(), IsNameCharacter);
}

bool IsLoopbackHost(std::string_view host, int port) {
    std::string_view name;
    std::string_view portText;
    if (!IsPlainHost(host) || !SplitHost(host, name, portText)) {
        return false;
    }
    const bool ours = EqualNoCase(name, "localhost") || name == "127.0.0.1" || name == "[::1]";
    const std::string expected = std::to_string(port);
    return ours && (portText == expected || (portText.empty() && port == 80));
}

bool IsOwnOrigin(std::string_view origin, std::string_view host) {
    constexpr std::string_view kScheme = "http://";
    return origin.substr(0, kScheme.size()) == kScheme &&
           EqualNoCase(origin.substr(kScheme.size()), host);
}

Pairing MakePairing(bool required, double nowS) {
    Pairing pairing;
    pairing.required = required;
    pairing.attempts = MakeBucket(kPairingBurst, kPairingPerSecond, nowS);
    if (required) {
        pairing.code = RandomText("0123456789", kPairingDigits);
    }
    return pairing;
}

PairingAnswer TryPairing(Pairing& pairing, std::string_view typed, double nowS) {
    if (pairing.failures >= kMaxPairingFailures || !TakeToken(pairing.attempts, nowS)) {
        return PairingAnswer::TooManyAttempts;
    }
    std::string code;
    for (const char c : typed.substr(0, 64)) {
        if (c != ' ' && c != '-' && c != '+') {
            code.push_back(c);
        }
    }
    if (pairing.code.empty() || !EqualSecrets(code, pairing.code)) {
        ++pairing.failures;
        return PairingAnswer::WrongCode;
    }
    if (pairing.cookies.size() >= kMaxPairedBrowsers) {
        pairing.cookies.erase(pairing.cookies.begin());
    }
    pairing.cookies.push_back(RandomText("0123456789abcdef", kCookieCharacters));
    return PairingAnswer::Paired;
}

bool IsPaired(const Pairing& pairing, std::string_view cookieHeader) {
    if (!pairing.required) {
        return true;
    }
    bool paired = false;
    const std::string prefix = std::string(kPairingCookie) + "=";
    for (const std::string_view part : SplitOn(cookieHeader.substr(0, 4096), ';')) {
        const std::string_view cookie = Trim(part);
        if (cookie.substr(0, prefix.size()) == prefix) {
            for (const std::string& given : pairing.cookies) {
                paired |= EqualSecrets(cookie.substr(prefix.size()), given);
            }
        }
    }
    return paired;
}

bool EqualSecrets(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    unsigned different = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        different |= static_cast<unsigned char>(a[i]) ^ static_cast<unsigned char>(b[i]);
    }
    return different == 0;
}

}  // namespace panelhost
