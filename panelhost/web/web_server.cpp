#include "panelhost/web/web_server.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "panelhost/web/paired_file.h"
#include "panelhost/web/qr_code.h"
#include "panelhost/web/server_state.h"

namespace panelhost {
namespace {

using net::ip::tcp;

constexpr auto kAcceptPause = std::chrono::milliseconds(200);

int Refuse(const WebOptions& options, const std::string& reason) {
    std::fprintf(stderr, "avqpanel: cannot listen on %s port %d: %s\n",
                 options.listenAddress.c_str(), options.port, reason.c_str());
    return 1;
}

std::string Url(const net::ip::address& address, int port) {
    const std::string name =
        address.is_v6() ? "[" + address.to_string() + "]" : address.to_string();
    return "http://" + name + ":" + std::to_string(port) + "/";
}

ErrorCode Listen(Server& server, const tcp::endpoint& endpoint) {
    ErrorCode error;
    server.acceptor.open(endpoint.protocol(), error);
    if (!error) {
        server.acceptor.set_option(net::socket_base::reuse_address(true), error);
    }
    if (!error) {
        server.acceptor.bind(endpoint, error);
    }
    if (!error) {
        server.acceptor.listen(net::socket_base::max_listen_connections, error);
    }
    if (!error) {
        server.port = server.acceptor.local_endpoint(error).port();
    }
    return error;
}

void AcceptNext(Server& server);

// Without file handles to spare an immediate retry would spin.
void AcceptLater(Server& server) {
    server.acceptTimer.expires_after(kAcceptPause);
    server.acceptTimer.async_wait([&server](ErrorCode error) {
        if (!error) {
            AcceptNext(server);
        }
    });
}

void AcceptNext(Server& server) {
    server.acceptor.async_accept([&server](ErrorCode error, tcp::socket socket) {
        if (error == net::error::operation_aborted) {
            return;
        }
        if (error) {
            AcceptLater(server);
            return;
        }
        std::string peer = PeerOf(socket);
        const Admission admission = AdmitGuest(server.guests, peer);
        const auto leaves = server.closers.find(admission.leaves);
        if (leaves != server.closers.end()) {
            leaves->second();
            // Its own handler frees it later; it counts no more from now on.
            std::erase_if(server.guests,
                          [&](const Guest& guest) { return guest.id == admission.leaves; });
        }
        if (admission.admitted) {
            ErrorCode ignored;
            socket.set_option(tcp::no_delay(true), ignored);
            StartHttp(server, std::move(socket), std::move(peer));
        }  // else: closed unheard
        AcceptNext(server);
    });
}

std::vector<net::ip::address> OwnAddresses() {
    std::vector<net::ip::address> addresses;
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) {
        return addresses;
    }
    for (const ifaddrs* each = first; each != nullptr; each = each->ifa_next) {
        if (each->ifa_addr != nullptr && each->ifa_addr->sa_family == AF_INET &&
            (each->ifa_flags & IFF_UP) != 0 && (each->ifa_flags & IFF_LOOPBACK) == 0) {
            sockaddr_in place{};
            std::memcpy(&place, each->ifa_addr, sizeof place);
            addresses.emplace_back(net::ip::address_v4(ntohl(place.sin_addr.s_addr)));
        }
    }
    freeifaddrs(first);
    return addresses;
}

// Every address a browser can open: one that stands for all of the machine's is none.
std::vector<net::ip::address> OpenedAddresses(const net::ip::address& address) {
    std::vector<net::ip::address> opened{address};
    if (address.is_unspecified()) {
        opened = OwnAddresses();
        opened.emplace_back(net::ip::address_v4::loopback());
    }
    return opened;
}

std::string Dashed(const std::string& code) {
    return code.substr(0, code.size() / 2) + "-" + code.substr(code.size() / 2);
}

}  // namespace

std::string PeerOf(const net::ip::tcp::socket& socket) {
    ErrorCode error;
    const net::ip::address address = socket.remote_endpoint(error).address();
    return address.is_v6() ? PeerOfV6(address.to_v6().to_bytes().data()) : address.to_string();
}

void AnnounceCodes(Server& server) {
    const Pairing& pairing = server.pairing;
    if (!pairing.required || server.codesTold == pairing.codesMade) {
        return;
    }
    server.codesTold = pairing.codesMade;
    std::printf("Pairing code: %s\nTo look only: %s\n", Dashed(pairing.code).c_str(),
                Dashed(pairing.lookCode).c_str());
    // The code rides behind the mark of an address, which a browser sends to nobody.
    const std::string url = server.urls.empty() ? "" : server.urls.front();
    const std::string code = url.empty() ? "" : QrText(url + "#" + pairing.code);
    if (!code.empty()) {
        std::printf("Open and pair with a camera, %s:\n%s", url.c_str(), code.c_str());
    }
    std::fflush(stdout);
}

int ServeWeb(Session& session, const WebOptions& options) {
    ErrorCode error;
    const std::string numeric =
        options.listenAddress == "localhost" ? "127.0.0.1" : options.listenAddress;
    const net::ip::address address = net::ip::make_address(numeric, error);
    if (error) {
        return Refuse(options, "neither a numeric address nor localhost");
    }
    Server server;
    OpenAudience(session, server.audience);
    server.pairing = MakePairing(!address.is_loopback());
    server.pairedFile = server.pairing.required ? PairedFilePath() : "";
    if (options.forgetPaired) {
        std::remove(PairedFilePath().c_str());
    }
    LoadPaired(server.pairedFile, server.pairing);
    error = Listen(server, {address, static_cast<unsigned short>(options.port)});
    if (error) {
        return Refuse(options, error.message());
    }
    server.signals.add(SIGINT, error);
    server.signals.add(SIGTERM, error);
    server.signals.async_wait([&server](ErrorCode ended, int) {
        if (!ended) {
            server.io.stop();
        }
    });
    StartFrames(server);
    AcceptNext(server);
    for (const net::ip::address& each : OpenedAddresses(address)) {
        server.urls.push_back(Url(each, server.port));
        std::printf("AVQ1 panel: %s\n", server.urls.back().c_str());
    }
    std::fflush(stdout);
    AnnounceCodes(server);
    server.io.run();
    session.Close();
    return 0;
}

}  // namespace panelhost
