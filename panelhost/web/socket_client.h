// panelhost/web/socket_client.h - one browser's WebSocket, as the frame loop sees it.
//
// Messages to a browser wait in a queue; one that lets the queue grow past its bound is cut off.
// Pictures never wait there: the next one is made when the browser has shown the last.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace panelhost {

struct Server;
struct Channel;  // the connection itself

struct ClientWindow {
    bool watched = false;
    bool pictureOutstanding = false;
    std::uint64_t pictureStamp = 0;
    std::uint64_t textsStamp = 0;
    std::uint64_t areasStamp = 0;
    double lastPictureS = 0;
};

struct SocketClient {
    Channel* channel = nullptr;
    std::vector<ClientWindow> windows;
    std::set<std::pair<int, int>> heldKeys;      // scan code, virtual key
    std::uint64_t logStamp = 0;                  // of the flight log it was told
    std::size_t logBytes = 0;                    // how much of it
    std::shared_ptr<const std::string> profile;  // the vertical profile it was told
    std::size_t queuedBytes = 0;
    std::size_t queuedMessages = 0;
};

void SendText(SocketClient& client, std::shared_ptr<const std::string> text);
void SendBinary(SocketClient& client, std::shared_ptr<const std::string> bytes);

}  // namespace panelhost
