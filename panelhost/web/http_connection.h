// panelhost/web/http_connection.h - hands an upgraded connection to its WebSocket.
#pragma once

#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/string_body.hpp>

#include "panelhost/web/server_state.h"

namespace panelhost {

using UpgradeRequest = boost::beast::http::request<boost::beast::http::string_body>;

// socket_client.cpp
void StartSocket(Server& server, boost::beast::tcp_stream stream, const UpgradeRequest& request,
                 std::string peer, bool mayTouch);

}  // namespace panelhost
