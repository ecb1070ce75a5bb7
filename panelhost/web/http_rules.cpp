#include "panelhost/web/http_rules.h"

#include <algorithm>
#include <cctype>
#include <optional>

#include "panelhost/base/text.h"

namespace panelhost {
namespace {

PageReply Plain(unsigned status, std::string text) {
    PageReply reply;
    reply.status = status;
    reply.body = std::move(text) + "\n";
    return reply;
}

void AddSecurityHeaders(std::string_view host, PageReply& reply) {
    // The socket's address is spelled out: older browsers do not count it as 'self'.
    reply.headers.push_back({"Content-Security-Policy",
                             "default-src 'none'; script-src 'self'; style-src 'self'; "
                             "img-src 'self' blob: data:; connect-src 'self' ws://" +
                                 std::string(host) +
                                 "; manifest-src 'self'; base-uri 'none'; form-action 'self'; "
                                 "frame-ancestors 'none'"});
    reply.headers.push_back({"X-Content-Type-Options", "nosniff"});
    reply.headers.push_back({"Referrer-Policy", "same-origin"});
    reply.headers.push_back({"Cross-Origin-Resource-Policy", "same-origin"});
    reply.headers.push_back({"Cache-Control", "no-store"});
}

std::optional<PageReply> Asset(std::string_view path, unsigned status = 200) {
    for (const PageAsset& asset : PageAssets()) {
        if (path == asset.path) {
            PageReply reply;
            reply.status = status;
            reply.contentType = asset.contentType;
            reply.body = std::string(asset.bytes);
            return reply;
        }
    }
    return {};
}

// Anybody may ask for less than he may do.
bool OnlyLooks(std::string_view target) {
    return target.ends_with("?look");
}

PageReply PairingPage(unsigned status, std::string_view remark, std::string_view page) {
    PageReply reply = Asset("/pair.html", status).value_or(Plain(status, "pairing needed"));
    const auto fill = [&reply](std::string_view mark, std::string_view text) {
        const std::size_t at = reply.body.find(mark);
        if (at != std::string::npos) {
            reply.body.replace(at, mark.size(), text);
        }
    };
    fill("<!--remark-->", remark);
    fill("action=\"/pair\"", "action=\"/pair?" + std::string(page) + "\"");
    return reply;
}

// The page a browser wanted before it was paired, "/" for anything that could be something else.
std::string PageAfter(std::string_view target) {
    const std::size_t mark = target.find('?');
    const std::string_view page = mark == std::string_view::npos ? "" : target.substr(mark + 1);
    const bool isPlain = std::all_of(page.begin(), page.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '/' || c == '_' ||
               c == '+' || c == '-' || c == '%';
    });
    return isPlain && page.starts_with("/show/") ? std::string(page) : "/";
}

PageReply Pair(const PageRequest& request, Pairing& pairing, double nowS) {
    constexpr std::string_view kField = "code=";
    if (!IsOwnOrigin(request.origin, request.host)) {
        return Plain(403, "not this server's own page");
    }
    const std::string page = PageAfter(request.target);
    const bool hasField = request.body.substr(0, kField.size()) == kField;
    const std::string_view typed = hasField ? request.body.substr(kField.size()) : "";
    switch (TryPairing(pairing, typed, request.peer, nowS)) {
        case PairingAnswer::Paired: {
            PageReply reply = Plain(303, "paired");
            reply.headers.push_back({"Location", page});
            reply.headers.push_back(
                {"Set-Cookie",
                 Format("%s=%s; HttpOnly; SameSite=Strict; Path=/; Max-Age=%d", kPairingCookie,
                        pairing.tokens.back().text.c_str(), kPairingDays * 86400)});
            return reply;
        }
        case PairingAnswer::WrongCode:
            return PairingPage(403, "That is not a code on the console.", page);
        case PairingAnswer::TooManyAttempts:
            return PairingPage(429, "Too many attempts. Wait a little and try again.", page);
    }
    return Plain(500, "no answer");
}

PageReply Json(unsigned status, std::string text) {
    PageReply reply = Plain(status, std::move(text));
    reply.contentType = "application/json";
    return reply;
}

// A program sends the code as it is and keeps the token it gets.
PageReply PairProgram(const PageRequest& request, Pairing& pairing, double nowS) {
    switch (TryPairing(pairing, request.body, request.peer, nowS)) {
        case PairingAnswer::Paired: {
            const Token& token = pairing.tokens.back();
            return Json(200, Format(R"({"token":"%s","access":"%s"})", token.text.c_str(),
                                    token.access == Access::Touch ? "touch" : "look"));
        }
        case PairingAnswer::WrongCode:
            return Json(403, R"({"t":"error","problem":"not a code on the console"})");
        case PairingAnswer::TooManyAttempts:
            break;
    }
    return Json(429, R"({"t":"error","problem":"too many attempts"})");
}

constexpr std::string_view kApi = "/api/1/";

// The interface for programs. A browser says where its page comes from, a program does not.
PageReply Api(const PageRequest& request, std::string_view path, Pairing& pairing, double nowS) {
    if (!request.origin.empty() && !IsOwnOrigin(request.origin, request.host)) {
        return Plain(403, "not this server's own page");
    }
    if (pairing.required && request.method == "POST" && path == "/api/1/pair") {
        return PairProgram(request, pairing, nowS);
    }
    const Access access = AccessOf(pairing, request.cookie, request.authorization);
    if (access == Access::None) {
        return Json(401, R"({"t":"error","problem":"pairing needed"})");
    }
    PageReply reply = Json(200, "");
    reply.apiPath = std::string(path.substr(kApi.size()));
    reply.mayTouch = access == Access::Touch && !OnlyLooks(request.target);
    return reply;
}

// "/window/12.png" gives 12, anything else -1.
int PictureWindow(std::string_view path) {
    constexpr std::string_view kStart = "/window/";
    constexpr std::string_view kEnd = ".png";
    if (path.size() <= kStart.size() + kEnd.size() || path.substr(0, kStart.size()) != kStart ||
        path.substr(path.size() - kEnd.size()) != kEnd) {
        return -1;
    }
    const std::string_view digits =
        path.substr(kStart.size(), path.size() - kStart.size() - kEnd.size());
    int number = 0;
    for (const char c : digits) {
        if (c < '0' || c > '9' || digits.size() > 4) {
            return -1;
        }
        number = number * 10 + (c - '0');
    }
    return number;
}

constexpr std::string_view kShow = "/show/";
constexpr std::string_view kManifest = "/app.webmanifest";

bool IsPage(std::string_view path) {
    return path == "/" || (path.starts_with(kShow) && !path.ends_with(kManifest));
}

// What a page needs before it is paired, and what a system fetches for an app without its cookie.
bool IsOpenToAll(std::string_view path) {
    return path == "/app.css" || path == "/pair.js" || path == "/comfort.js" ||
           path.starts_with("/icon") || path.ends_with(kManifest);
}

// The file that answers a path. The displays a page shows are its own business, and an installed
// one starts where its manifest lies.
std::string_view FileFor(std::string_view path) {
    if (path.starts_with(kShow)) {
        return path.ends_with(kManifest) ? kManifest : "/show.html";
    }
    const bool isInner = path == "/pair.html" || path == "/show.html";
    return isInner ? "" : path == "/" ? "/index.html" : path;
}

PageReply Route(const PageRequest& request, Pairing& pairing, double nowS) {
    const std::string_view path = request.target.substr(0, request.target.find('?'));
    const bool isGet = request.method == "GET" || request.method == "HEAD";
    if (path.starts_with(kApi) && path != kApi && (isGet || request.method == "POST")) {
        return Api(request, path, pairing, nowS);
    }
    if (pairing.required && request.method == "POST" && path == "/pair") {
        return Pair(request, pairing, nowS);
    }
    if (!isGet) {
        PageReply reply = Plain(405, "only GET and HEAD");
        reply.headers.push_back({"Allow", "GET, HEAD"});
        return reply;
    }
    if (path == "/healthz") {
        return Plain(200, "ok");
    }
    const Access access = AccessOf(pairing, request.cookie, request.authorization);
    if (!IsOpenToAll(path) && access == Access::None) {
        return IsPage(path) ? PairingPage(401, "", PageAfter("?" + std::string(path)))
                            : Plain(401, "pairing needed");
    }
    if (path == "/socket") {
        if (!request.isUpgrade) {
            return Plain(426, "a WebSocket is served here");
        }
        if (!request.origin.empty() && !IsOwnOrigin(request.origin, request.host)) {
            return Plain(403, "not this server's own page");
        }
        PageReply reply;
        reply.acceptsSocket = true;
        reply.mayTouch = access == Access::Touch && !OnlyLooks(request.target);
        return reply;
    }
    const int window = PictureWindow(path);
    if (window >= 0) {
        PageReply reply;
        reply.contentType = "image/png";
        reply.pictureWindow = window;
        return reply;
    }
    return Asset(FileFor(path)).value_or(Plain(404, "no such page"));
}

}  // namespace

PageReply AnswerRequest(const PageRequest& request, int port, Pairing& pairing, double nowS) {
    if (request.target.size() > kMaxTargetCharacters) {
        return Plain(414, "address too long");
    }
    if (request.hostHeaders > 1) {
        return Plain(400, "more than one Host header");
    }
    const bool knownHost =
        pairing.required ? IsPlainHost(request.host) : IsLoopbackHost(request.host, port);
    if (!knownHost) {
        return Plain(421, "not a name of this server");
    }
    PageReply reply = Route(request, pairing, nowS);
    AddSecurityHeaders(request.host, reply);
    return reply;
}

}  // namespace panelhost
