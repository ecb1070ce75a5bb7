// One WebSocket. One that lets its queue grow past its bound is cut off.
#include <algorithm>
#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/websocket/stream.hpp>
#include <deque>

#include "panelhost/web/http_connection.h"
#include "panelhost/web/server_messages.h"
#include "panelhost/web/server_state.h"

namespace panelhost {

namespace beast = boost::beast;
namespace websocket = beast::websocket;

namespace {

constexpr std::size_t kMaxQueuedBytes = 16U << 20U;
constexpr std::size_t kMaxQueuedMessages = 1024;
constexpr double kMessageBurst = 800;
constexpr double kMessagesPerSecond = 400;

struct Outgoing {
    bool binary = false;
    SharedText bytes;
};

}  // namespace

struct Channel : Outlet, std::enable_shared_from_this<Channel> {
    Channel(Server& owner, beast::tcp_stream tcp, std::string from, bool mayTouch)
        : server(owner),
          peer(std::move(from)),
          stream(std::move(tcp)),
          bucket(MakeBucket(kMessageBurst, kMessagesPerSecond, SteadyNowS())) {
        watcher.outlet = this;
        watcher.peer = peer;
        watcher.mayTouch = mayTouch;
        server.socketPeers.push_back(peer);
    }
    ~Channel() override { server.socketPeers.erase(std::ranges::find(server.socketPeers, peer)); }
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    void Send(bool binary, SharedText bytes) override;

    Server& server;
    Watcher watcher;
    std::string peer;
    websocket::stream<beast::tcp_stream> stream;
    beast::flat_buffer buffer{kMaxClientMessageBytes};
    std::deque<Outgoing> queue;
    std::size_t queuedBytes = 0;
    TokenBucket bucket;
    bool joined = false;  // on the server's list
    bool ending = false;
};

namespace {

using ChannelPointer = std::shared_ptr<Channel>;

void Depart(Channel& channel) {
    channel.ending = true;
    if (channel.joined) {
        channel.joined = false;
        Leave(channel.server.audience, channel.watcher);
    }
}

void CutOff(const ChannelPointer& channel) {
    Depart(*channel);
    beast::get_lowest_layer(channel->stream).close();
}

void CloseNicely(const ChannelPointer& channel) {
    channel->stream.async_close(websocket::close_code::policy_error,
                                [channel](ErrorCode) { CutOff(channel); });
}

void WriteNext(const ChannelPointer& channel) {
    if (channel->queue.empty()) {
        if (channel->ending) {
            CloseNicely(channel);
        }
        return;
    }
    const Outgoing& next = channel->queue.front();
    channel->stream.binary(next.binary);
    channel->stream.async_write(net::buffer(*next.bytes), [channel](ErrorCode error, std::size_t) {
        if (error) {
            CutOff(channel);
            return;
        }
        channel->queuedBytes -= channel->queue.front().bytes->size();
        channel->queue.pop_front();
        channel->watcher.queuedMessages = channel->queue.size();
        WriteNext(channel);
    });
}

// Says what was wrong once, then closes when that is written. Nothing more is read.
void End(const ChannelPointer& channel, const std::string& problem) {
    channel->Send(false, Shared(ProblemMessage(problem)));
    Depart(*channel);
}

void ReadNext(const ChannelPointer& channel);

void OnMessage(const ChannelPointer& channel, ErrorCode error) {
    if (error) {
        CutOff(channel);
        return;
    }
    if (channel->ending) {
        return;
    }
    if (!channel->stream.got_text()) {
        End(channel, "only text messages");
        return;
    }
    const ClientMessage message =
        ParseClientMessage(beast::buffers_to_string(channel->buffer.data()));
    channel->buffer.clear();
    // Word of a picture sent is as frequent as pictures are.
    if (!AwaitsPainted(channel->watcher, message) && !TakeToken(channel->bucket, SteadyNowS())) {
        End(channel, "too many messages");
        return;
    }
    if (message.action == ClientAction::Bad) {
        End(channel, message.problem);
        return;
    }
    if (!ObeyMessage(channel->server.audience, channel->watcher, message)) {
        End(channel, "no such display");
        return;
    }
    GlanceSoon(channel->server);
    ReadNext(channel);
}

void ReadNext(const ChannelPointer& channel) {
    channel->stream.async_read(
        channel->buffer, [channel](ErrorCode error, std::size_t) { OnMessage(channel, error); });
}

void Begin(const ChannelPointer& channel, ErrorCode error) {
    if (error) {
        return;
    }
    channel->joined = true;
    Join(channel->server.audience, channel->watcher);
    ReadNext(channel);
}

}  // namespace

void Channel::Send(bool binary, SharedText bytes) {
    if (ending || !bytes) {
        return;
    }
    if (queuedBytes + bytes->size() > kMaxQueuedBytes || queue.size() >= kMaxQueuedMessages) {
        // Closing from here would change the list of watchers under its reader's feet.
        net::post(server.io, [pointer = shared_from_this()] { CutOff(pointer); });
        return;
    }
    queuedBytes += bytes->size();
    queue.push_back({binary, std::move(bytes)});
    watcher.queuedMessages = queue.size();
    if (queue.size() == 1) {
        WriteNext(shared_from_this());
    }
}

void StartSocket(Server& server, beast::tcp_stream stream, const UpgradeRequest& request,
                 std::string peer, bool mayTouch) {
    stream.expires_never();  // the WebSocket watches the time from here on
    const auto channel =
        std::make_shared<Channel>(server, std::move(stream), std::move(peer), mayTouch);
    websocket::stream_base::timeout times{};
    times.handshake_timeout = std::chrono::seconds(10);
    times.idle_timeout = std::chrono::seconds(40);
    times.keep_alive_pings = true;
    channel->stream.set_option(times);
    channel->stream.read_message_max(kMaxClientMessageBytes);
    channel->stream.auto_fragment(false);
    channel->stream.async_accept(request, [channel](ErrorCode error) { Begin(channel, error); });
}

}  // namespace panelhost
