// panelhost/web/http_rules.h - which request gets which answer, without sockets.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "panelhost/web/access.h"

namespace panelhost {

inline constexpr std::size_t kMaxTargetCharacters = 256;

struct PageAsset {  // a file of the page, built into the program
    const char* path;
    const char* contentType;
    std::string_view bytes;
};
const std::vector<PageAsset>& PageAssets();

struct PageRequest {
    std::string_view method = {};
    std::string_view target = {};
    std::string_view host = {};
    std::string_view origin = {};
    std::string_view cookie = {};
    std::string_view body = {};
    bool isUpgrade = false;      // asks for a WebSocket
    std::string_view peer = {};  // who asks
    std::string_view authorization = {};
    int hostHeaders = 1;
};

struct PageHeader {
    const char* name;
    std::string value;
};

struct PageReply {
    unsigned status = 200;
    const char* contentType = "text/plain; charset=utf-8";
    std::string body;
    std::vector<PageHeader> headers;
    bool acceptsSocket = false;  // hand the connection to the WebSocket
    int pictureWindow = -1;      // the body is this window's picture
    std::string apiPath;         // the body is what the interface answers to this
    bool mayTouch = true;        // else only looking is answered
};

// `port` is the one listened on; a network server has pairing.required set.
PageReply AnswerRequest(const PageRequest& request, int port, Pairing& pairing, double nowS);

}  // namespace panelhost
