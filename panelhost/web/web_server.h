// panelhost/web/web_server.h - serves a session's panel to browsers over HTTP and WebSocket.
//
// One thread runs the flight, the drawing and every connection. A connection that misbehaves is
// closed; nothing it sends ends the program. On an address other than loopback a browser must first
// be paired with the code printed on the console.
#pragma once

#include <string>

#include "panelhost/session/session.h"

namespace panelhost {

struct WebOptions {
    std::string listenAddress = "127.0.0.1";
    int port = 8737;            // 0: any free one
    bool forgetPaired = false;  // of earlier starts
};

// Prints the page's address when it is ready and runs until an interrupt or terminate signal.
// Returns the program's exit status: 1 with one line on standard error when it cannot listen.
int ServeWeb(Session& session, const WebOptions& options);

}  // namespace panelhost
