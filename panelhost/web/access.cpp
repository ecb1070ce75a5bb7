#include "panelhost/web/access.h"

#include <algorithm>
#include <cctype>
#include <random>

#include "panelhost/base/text.h"

namespace panelhost {
namespace {

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

void MakeCodes(Pairing& pairing) {
    pairing.code = RandomText("0123456789", kPairingDigits);
    do {
        pairing.lookCode = RandomText("0123456789", kPairingDigits);
    } while (pairing.lookCode == pairing.code);
    pairing.failures = 0;
    ++pairing.codesMade;
}

}  // namespace

TokenBucket MakeBucket(double capacity, double perSecond, double nowS) {
    return {capacity, perSecond, capacity, nowS};
}

bool TakeToken(TokenBucket& bucket, double nowS, double count) {
    const double gained = std::max(0.0, nowS - bucket.lastS) * bucket.perSecond;
    bucket.level = std::min(bucket.capacity, bucket.level + gained);
    bucket.lastS = nowS;
    if (bucket.level < count) {
        return false;
    }
    bucket.level -= count;
    return true;
}

TokenBucket& BucketOf(PeerBuckets& peers, std::string_view peer, double nowS) {
    const auto known = peers.buckets.find(std::string(peer));
    if (known != peers.buckets.end()) {
        return known->second;
    }
    if (peers.buckets.size() >= kMostPeers) {
        // What it holds by now, but for what all have gained alike.
        const auto held = [&peers](const auto& each) {
            return each.second.level - each.second.lastS * peers.perSecond;
        };
        peers.buckets.erase(std::ranges::max_element(peers.buckets, {}, held));
    }
    return peers.buckets
        .emplace(std::string(peer), MakeBucket(peers.capacity, peers.perSecond, nowS))
        .first->second;
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

Pairing MakePairing(bool required) {
    Pairing pairing;
    pairing.required = required;
    if (required) {
        MakeCodes(pairing);
    }
    return pairing;
}

PairingAnswer TryPairing(Pairing& pairing, std::string_view typed, std::string_view peer,
                         double nowS) {
    if (!TakeToken(BucketOf(pairing.attempts, peer, nowS), nowS)) {
        return PairingAnswer::TooManyAttempts;
    }
    std::string code;
    for (const char c : typed.substr(0, 64)) {
        if (c != ' ' && c != '-' && c != '+') {
            code.push_back(c);
        }
    }
    const bool touches = !pairing.code.empty() && EqualSecrets(code, pairing.code);
    const bool looks = !pairing.lookCode.empty() && EqualSecrets(code, pairing.lookCode);
    if (!touches && !looks) {
        if (++pairing.failures >= kMaxPairingFailures) {
            MakeCodes(pairing);
        }
        return PairingAnswer::WrongCode;
    }
    if (pairing.tokens.size() >= kMaxPairedBrowsers) {
        pairing.tokens.erase(pairing.tokens.begin());
    }
    pairing.tokens.push_back(
        {RandomText("0123456789abcdef", kTokenCharacters), touches ? Access::Touch : Access::Look});
    return PairingAnswer::Paired;
}

Access AccessOf(const Pairing& pairing, std::string_view cookieHeader,
                std::string_view authorization) {
    if (!pairing.required) {
        return Access::Touch;
    }
    Access access = Access::None;
    const auto show = [&](std::string_view text) {
        for (const Token& given : pairing.tokens) {
            access = EqualSecrets(text, given.text) ? std::max(access, given.access) : access;
        }
    };
    const std::string prefix = std::string(kPairingCookie) + "=";
    for (const std::string_view part : SplitOn(cookieHeader.substr(0, 4096), ';')) {
        const std::string_view cookie = Trim(part);
        if (cookie.starts_with(prefix)) {
            show(cookie.substr(prefix.size()));
        }
    }
    constexpr std::string_view kBearer = "Bearer ";
    if (authorization.starts_with(kBearer)) {
        show(Trim(authorization.substr(kBearer.size())));
    }
    return access;
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
