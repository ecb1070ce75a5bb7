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

#include "panelhost/web/access.h"
#include "panelhost/web/audience.h"
#include "panelhost/web/web_server.h"

namespace panelhost {

namespace net = boost::asio;
using ErrorCode = boost::system::error_code;

// A browser that loads the page holds half a dozen for some seconds.
inline constexpr int kMaxConnections = 64;

struct Server {
    int connections = 0;  // outlives the io_context, whose handlers count themselves out
    net::io_context io{1};
    net::ip::tcp::acceptor acceptor{io};
    net::steady_timer frameTimer{io};
    net::steady_timer acceptTimer{io};
    net::signal_set signals{io};
    Audience audience;
    int port = 0;
    Pairing pairing;
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

// frames.cpp: the flight's clock
void StartFrames(Server& server);

}  // namespace panelhost
