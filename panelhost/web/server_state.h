// panelhost/web/server_state.h - the records of the running server.
//
// One thread owns all of it. Connections keep themselves alive through their pending handlers and
// refer to the server, which outlives the io_context's last run.
#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "panelhost/session/session.h"
#include "panelhost/web/access.h"
#include "panelhost/web/client_message.h"
#include "panelhost/web/picture_feed.h"
#include "panelhost/web/web_server.h"

namespace panelhost {

namespace net = boost::asio;
using ErrorCode = boost::system::error_code;

struct SocketClient;

// A browser that loads the page holds half a dozen for some seconds.
inline constexpr int kMaxConnections = 64;

// What every reader of a window shares.
struct WindowFeed {
    WindowInfo info;
    PictureFeed picture;
    std::uint64_t pictureRevision = ~0ULL;  // of the session, when last compared
    std::uint64_t textsRevision = ~0ULL;
    std::uint64_t textsStamp = 0;  // grows with the text below
    std::shared_ptr<const std::string> texts;
    std::uint64_t areasStamp = 0;
    std::shared_ptr<const std::string> areas;
};

// The flight log as it was last read. Another stamp: it is another log, not more of the same.
struct LogFeed {
    std::string text;
    std::uint64_t stamp = 0;
};

struct Server {
    int connections = 0;  // outlives the io_context, whose handlers count themselves out
    net::io_context io{1};
    net::ip::tcp::acceptor acceptor{io};
    net::steady_timer frameTimer{io};
    net::steady_timer acceptTimer{io};
    net::signal_set signals{io};
    Session* session = nullptr;
    int port = 0;
    Pairing pairing;
    std::vector<WindowFeed> feeds;
    LogFeed log;
    std::shared_ptr<const std::string> profile;
    std::vector<SocketClient*> clients;    // each takes itself off the list
    SocketClient* pointerOwner = nullptr;  // whose press holds the mouse
    std::uint64_t frame = 0;
    double lastFrameS = 0;
};

double SteadyNowS();

// Counts a connection as long as it lives.
struct ConnectionCount {
    explicit ConnectionCount(int& counter) : counter(&counter) { ++counter; }
    ~ConnectionCount() { --*counter; }
    ConnectionCount(const ConnectionCount&) = delete;
    ConnectionCount& operator=(const ConnectionCount&) = delete;
    int* counter;
};

// http_connection.cpp
void StartHttp(Server& server, net::ip::tcp::socket socket);

// frames.cpp: the flight and what everybody is told of it
void StartFrames(Server& server);
// Carries out a page's message. False: the message was wrong, the connection ends.
bool ObeyMessage(Server& server, SocketClient& client, const ClientMessage& message);
// Sends what the client waits for: pictures and texts of the windows it watches.
void FeedClient(Server& server, SocketClient& client);
void ForgetClient(Server& server, SocketClient& client);

}  // namespace panelhost
