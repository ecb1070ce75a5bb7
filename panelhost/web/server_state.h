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
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "panelhost/web/access.h"
#include "panelhost/web/audience.h"
#include "panelhost/web/guests.h"
#include "panelhost/web/web_server.h"

namespace panelhost {

namespace net = boost::asio;
using ErrorCode = boost::system::error_code;

struct Server {
    // These outlive the io_context, whose handlers take themselves off.
    std::vector<Guest> guests;
    std::map<std::uint64_t, std::function<void()>> closers;  // of guests, by id
    std::vector<std::string> socketPeers;                    // one for each open WebSocket
    std::uint64_t lastGuest = 0;
    PeerBuckets requests{400, 100};  // plain ones
    net::io_context io{1};
    net::ip::tcp::acceptor acceptor{io};
    net::steady_timer frameTimer{io};
    net::steady_timer acceptTimer{io};
    net::steady_timer glanceTimer{io};
    bool glances = false;  // the timer runs
    net::signal_set signals{io};
    Audience audience;
    int port = 0;
    Pairing pairing;
    std::string pairedFile;         // where tokens are kept; empty: nowhere
    std::vector<std::string> urls;  // those a tablet can open first
    int codesTold = 0;
    double lastFrameS = 0;
};

double SteadyNowS();

std::string PeerOf(const net::ip::tcp::socket& socket);

// http_connection.cpp: a guest that was admitted
void StartHttp(Server& server, net::ip::tcp::socket socket, std::string peer);
// web_server.cpp: the codes on the console, when there are new ones
void AnnounceCodes(Server& server);

// frames.cpp: the flight's clock
void StartFrames(Server& server);
void GlanceSoon(Server& server);  // after a message, when it touched something

}  // namespace panelhost
