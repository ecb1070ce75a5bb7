#include "panelhost/web/socket_client.h"

#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/websocket/stream.hpp>
#include <deque>

#include "panelhost/web/client_message.h"
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
    std::shared_ptr<const std::string> bytes;
};

}  // namespace

struct Channel : std::enable_shared_from_this<Channel> {
    Channel(Server& owner, beast::tcp_stream tcp, std::unique_ptr<ConnectionCount> counted)
        : server(owner),
          count(std::move(counted)),
          stream(std::move(tcp)),
          bucket(MakeBucket(kMessageBurst, kMessagesPerSecond, SteadyNowS())) {
        client.channel = this;
    }

    Server& server;
    SocketClient client;
    std::unique_ptr<ConnectionCount> count;
    websocket::stream<beast::tcp_stream> stream;
    beast::flat_buffer buffer{kMaxClientMessageBytes};
    std::deque<Outgoing> queue;
    TokenBucket bucket;
    bool joined = false;  // on the server's list
    bool ending = false;
};

namespace {

using ChannelPointer = std::shared_ptr<Channel>;

void Leave(Channel& channel) {
    channel.ending = true;
    if (channel.joined) {
        channel.joined = false;
        ForgetClient(channel.server, channel.client);
    }
}

void CutOff(const ChannelPointer& channel) {
    Leave(*channel);
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
        channel->client.queuedBytes -= channel->queue.front().bytes->size();
        channel->queue.pop_front();
        channel->client.queuedMessages = channel->queue.size();
        WriteNext(channel);
    });
}

void Enqueue(SocketClient& client, bool binary, std::shared_ptr<const std::string> bytes) {
    Channel& channel = *client.channel;
    if (channel.ending || !bytes) {
        return;
    }
    if (client.queuedBytes + bytes->size() > kMaxQueuedBytes ||
        channel.queue.size() >= kMaxQueuedMessages) {
        // Closing from here would change the list of clients under its reader's feet.
        net::post(channel.server.io, [pointer = channel.shared_from_this()] { CutOff(pointer); });
        return;
    }
    client.queuedBytes += bytes->size();
    channel.queue.push_back({binary, std::move(bytes)});
    client.queuedMessages = channel.queue.size();
    if (channel.queue.size() == 1) {
        WriteNext(channel.shared_from_this());
    }
}

// Says what was wrong once, then closes when that is written. Nothing more is read.
void End(const ChannelPointer& channel, const std::string& problem) {
    SendText(channel->client, std::make_shared<const std::string>(ProblemMessage(problem)));
    Leave(*channel);
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
    if (!TakeToken(channel->bucket, SteadyNowS())) {
        End(channel, "too many messages");
        return;
    }
    const ClientMessage message =
        ParseClientMessage(beast::buffers_to_string(channel->buffer.data()));
    channel->buffer.clear();
    if (message.action == ClientAction::Bad) {
        End(channel, message.problem);
        return;
    }
    if (!ObeyMessage(channel->server, channel->client, message)) {
        End(channel, "no such window");
        return;
    }
    ReadNext(channel);
}

void ReadNext(const ChannelPointer& channel) {
    channel->stream.async_read(
        channel->buffer, [channel](ErrorCode error, std::size_t) { OnMessage(channel, error); });
}

void Join(const ChannelPointer& channel, ErrorCode error) {
    if (error) {
        return;
    }
    Server& server = channel->server;
    channel->client.windows.resize(server.feeds.size());
    server.clients.push_back(&channel->client);
    channel->joined = true;
    SendText(channel->client, std::make_shared<const std::string>(HelloMessage(*server.session)));
    SendText(channel->client,
             std::make_shared<const std::string>(StatusMessage(server.session->Status())));
    ReadNext(channel);
}

}  // namespace

void SendText(SocketClient& client, std::shared_ptr<const std::string> text) {
    Enqueue(client, false, std::move(text));
}

void SendBinary(SocketClient& client, std::shared_ptr<const std::string> bytes) {
    Enqueue(client, true, std::move(bytes));
}

void StartSocket(Server& server, beast::tcp_stream stream, const UpgradeRequest& request,
                 std::unique_ptr<ConnectionCount> count) {
    stream.expires_never();  // the WebSocket watches the time from here on
    const auto channel = std::make_shared<Channel>(server, std::move(stream), std::move(count));
    websocket::stream_base::timeout times{};
    times.handshake_timeout = std::chrono::seconds(10);
    times.idle_timeout = std::chrono::seconds(40);
    times.keep_alive_pings = true;
    channel->stream.set_option(times);
    channel->stream.read_message_max(kMaxClientMessageBytes);
    channel->stream.auto_fragment(false);
    channel->stream.async_accept(request, [channel](ErrorCode error) { Join(channel, error); });
}

}  // namespace panelhost
