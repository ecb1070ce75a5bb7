#include "panelhost/web/http_connection.h"

#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/string.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/write.hpp>
#include <boost/beast/websocket/rfc6455.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>

#include "panelhost/base/png.h"
#include "panelhost/web/http_rules.h"
#include "panelhost/web/paired_file.h"

namespace panelhost {
namespace {

namespace beast = boost::beast;
namespace http = beast::http;

constexpr std::uint32_t kMaxHeaderBytes = 8192;
constexpr std::uint64_t kMaxBodyBytes = 1024;
constexpr std::size_t kMaxBufferBytes = 16384;
constexpr auto kFirstWordTime = std::chrono::seconds(8);  // a new connection says what it wants
constexpr auto kIdleTime = std::chrono::seconds(20);
constexpr auto kKeptOpenTime = std::chrono::seconds(5);  // between two requests
constexpr auto kLingerTime = std::chrono::seconds(2);
constexpr double kPictureRequests = 10;  // a picture of a window counts as so many

struct HttpConnection {
    HttpConnection(Server& owner, net::ip::tcp::socket socket, std::string from)
        : server(owner), peer(std::move(from)), id(++owner.lastGuest), stream(std::move(socket)) {
        server.guests.push_back({id, peer});
        server.closers[id] = [this] { stream.close(); };
    }
    ~HttpConnection() { Leave(); }
    HttpConnection(const HttpConnection&) = delete;
    HttpConnection& operator=(const HttpConnection&) = delete;

    void Leave() {
        std::erase_if(server.guests, [this](const Guest& guest) { return guest.id == id; });
        server.closers.erase(id);
    }
    void SetWaits(bool waits) {
        for (Guest& guest : server.guests) {
            guest.waits = guest.id == id ? waits : guest.waits;
        }
    }

    Server& server;
    std::string peer;
    std::uint64_t id;
    beast::tcp_stream stream;
    beast::flat_buffer buffer{kMaxBufferBytes};
    std::optional<http::request_parser<http::string_body>> parser;
    http::response<http::string_body> response;
    http::response<http::empty_body> headResponse;
};

using Connection = std::shared_ptr<HttpConnection>;

void ReadRequest(const Connection& connection, std::chrono::seconds patience);

std::string_view View(beast::string_view text) {
    return {text.data(), text.size()};
}

void Linger(const Connection& connection) {
    // What the browser still sends is read and dropped, so that it gets to see the answer.
    connection->stream.expires_after(kLingerTime);
    connection->buffer.clear();
    connection->stream.async_read_some(connection->buffer.prepare(4096),
                                       [connection](ErrorCode, std::size_t) {});
}

void AfterWrite(const Connection& connection, ErrorCode error, bool keeps) {
    if (error) {
        return;
    }
    if (keeps) {
        ReadRequest(connection, kKeptOpenTime);
        return;
    }
    ErrorCode ignored;
    connection->stream.socket().shutdown(net::ip::tcp::socket::shutdown_send, ignored);
    Linger(connection);
}

template <typename Response>
void Write(const Connection& connection, Response& response, bool keeps) {
    connection->stream.expires_after(kIdleTime);
    http::async_write(connection->stream, response,
                      [connection, keeps](ErrorCode error, std::size_t) {
                          AfterWrite(connection, error, keeps);
                      });
}

template <typename Response>
void FillHeaders(const PageReply& reply, bool keeps, Response& response) {
    response.version(11);
    response.result(reply.status);
    response.set(http::field::server, "avqpanel");
    response.set(http::field::content_type, reply.contentType);
    for (const PageHeader& header : reply.headers) {
        response.set(header.name, header.value);
    }
    response.keep_alive(keeps);
    response.content_length(reply.body.size());
}

void Reply(const Connection& connection, PageReply reply, bool isHead, bool keeps) {
    if (isHead) {
        connection->headResponse = {};
        FillHeaders(reply, keeps, connection->headResponse);
        Write(connection, connection->headResponse, keeps);
        return;
    }
    connection->response = {};
    FillHeaders(reply, keeps, connection->response);
    connection->response.body() = std::move(reply.body);
    Write(connection, connection->response, keeps);
}

void FillPicture(Server& server, PageReply& reply) {
    Session& session = *server.audience.session;
    session.Look(reply.pictureWindow);
    const WindowPicture picture = session.Picture(reply.pictureWindow);
    if (picture.pixels == nullptr) {
        reply.status = 404;
        reply.contentType = "text/plain; charset=utf-8";
        reply.body = "no such window\n";
        return;
    }
    const auto png = EncodePng(picture.width, picture.height, picture.pixels, true);
    reply.body.assign(png.begin(), png.end());
}

void Refuse(const Connection& connection, ErrorCode error) {
    if (error == http::error::end_of_stream || error == beast::error::timeout ||
        error.category() != make_error_code(http::error::bad_method).category()) {
        return;  // gone, silent or broken off: nobody to answer
    }
    PageReply reply;
    reply.status = error == http::error::header_limit ? 431
                   : error == http::error::body_limit ? 413
                                                      : 400;
    reply.body = "not a request this server reads\n";
    Reply(connection, std::move(reply), false, false);
}

void Hush(PageReply& reply) {
    reply.status = 429;
    reply.contentType = "text/plain; charset=utf-8";
    reply.body = "too many requests\n";
}

// What was given out outlives this program, and new codes are told.
void KeepPairing(Server& server, const PageReply& reply, std::size_t pairedBefore) {
    const bool isNew = server.pairing.tokens.size() != pairedBefore || reply.status == 303;
    if (isNew && !server.pairedFile.empty() && !SavePaired(server.pairedFile, server.pairing)) {
        std::fprintf(stderr, "avqpanel: cannot keep the pairing in %s: %s\n",
                     server.pairedFile.c_str(), std::strerror(errno));
    }
    AnnounceCodes(server);
}

void AnswerParsed(const Connection& connection) {
    const auto& request = connection->parser->get();
    const std::string method(View(request.method_string()));
    PageRequest page;
    page.method = method;
    page.target = View(request.target());
    page.host = View(request[http::field::host]);
    page.origin = View(request[http::field::origin]);
    page.cookie = View(request[http::field::cookie]);
    page.body = request.body();
    page.isUpgrade = beast::websocket::is_upgrade(request);
    page.authorization = View(request[http::field::authorization]);
    page.hostHeaders = static_cast<int>(request.count(http::field::host));
    page.peer = connection->peer;
    Server& server = connection->server;
    const double nowS = SteadyNowS();
    connection->SetWaits(false);
    TokenBucket& requests = BucketOf(server.requests, connection->peer, nowS);
    if (!TakeToken(requests, nowS)) {
        PageReply reply;
        Hush(reply);
        Reply(connection, std::move(reply), method == "HEAD", false);
        return;
    }
    const std::size_t pairedBefore = server.pairing.tokens.size();
    PageReply reply = AnswerRequest(page, server.port, server.pairing, nowS);
    KeepPairing(server, reply, pairedBefore);
    if (reply.acceptsSocket && AdmitSocket(server.socketPeers, connection->peer)) {
        connection->Leave();
        StartSocket(server, std::move(connection->stream), request, connection->peer,
                    reply.mayTouch);
        return;
    }
    if (reply.acceptsSocket) {
        reply.status = 503;
        reply.body = "too many pages of this address are open\n";
    }
    if (!reply.apiPath.empty()) {
        ApiReply answer = AnswerApi(server.audience, method == "HEAD" ? "GET" : method,
                                    reply.apiPath, page.body, reply.mayTouch, nowS);
        reply.status = answer.status;
        reply.body = std::move(answer.json) + "\n";
        GlanceSoon(server);
    }
    if (reply.pictureWindow >= 0 && TakeToken(requests, nowS, kPictureRequests)) {
        FillPicture(server, reply);
    } else if (reply.pictureWindow >= 0) {
        Hush(reply);
    }
    const bool keeps = request.keep_alive() && reply.status < 400;
    Reply(connection, std::move(reply), method == "HEAD", keeps);
}

void ReadBody(const Connection& connection) {
    http::async_read(connection->stream, connection->buffer, *connection->parser,
                     [connection](ErrorCode error, std::size_t) {
                         if (error) {
                             Refuse(connection, error);
                         } else {
                             AnswerParsed(connection);
                         }
                     });
}

// A client that asks first whether its body is wanted is told to go on: what is too long is refused
// while it is read.
void AfterHeader(const Connection& connection) {
    const auto& request = connection->parser->get();
    if (!beast::iequals(request[http::field::expect], "100-continue")) {
        ReadBody(connection);
        return;
    }
    static constexpr std::string_view kGoOn = "HTTP/1.1 100 Continue\r\n\r\n";
    net::async_write(connection->stream, net::buffer(kGoOn.data(), kGoOn.size()),
                     [connection](ErrorCode error, std::size_t) {
                         if (!error) {
                             ReadBody(connection);
                         }
                     });
}

void ReadRequest(const Connection& connection, std::chrono::seconds patience) {
    connection->SetWaits(true);
    connection->parser.emplace();
    connection->parser->header_limit(kMaxHeaderBytes);
    connection->parser->body_limit(kMaxBodyBytes);
    connection->stream.expires_after(patience);
    http::async_read_header(connection->stream, connection->buffer, *connection->parser,
                            [connection](ErrorCode error, std::size_t) {
                                if (error) {
                                    Refuse(connection, error);
                                } else {
                                    AfterHeader(connection);
                                }
                            });
}

}  // namespace

void StartHttp(Server& server, net::ip::tcp::socket socket, std::string peer) {
    ReadRequest(std::make_shared<HttpConnection>(server, std::move(socket), std::move(peer)),
                kFirstWordTime);
}

}  // namespace panelhost
