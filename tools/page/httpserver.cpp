#include "tools/page/httpserver.h"

#include <array>
#include <stdexcept>
#include <thread>

#include <fmt/format.h>
#include <httplib.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tools/page/routes.h"
#include "tools/page/token.h"

namespace page
{

namespace
{

/// A stream holds a thread as long as its browser listens; the others are for short requests.
constexpr size_t Threads = EventHub::MaxStreams + 8;

constexpr std::chrono::seconds ReadTimeout{5};
constexpr std::chrono::seconds WriteTimeout{5};

std::string NameOfThisMachine()
{
    std::array<CHAR, 256> name{};
    (VOID) gethostname(name.data(), name.size() - 1);
    return name.data();
}

/// Another program that listens there keeps its port: the library would share it.
VOID AllowQuickRestart(socket_t socket)
{
    const int yes = 1;
    (VOID) setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
}

VOID SetUp(httplib::Server& rServer)
{
    rServer.set_socket_options(AllowQuickRestart);
    rServer.set_tcp_nodelay(true);
    rServer.set_read_timeout(ReadTimeout);
    rServer.set_write_timeout(WriteTimeout);
    rServer.set_payload_max_length(MaxBody);
    rServer.set_keep_alive_max_count(1);  // a browser that thinks would hold a thread
    rServer.new_task_queue = [] { return new httplib::ThreadPool(Threads); };
}

/// @return the address with the port that was bound
/// @throws std::runtime_error
Address Bind(httplib::Server& rServer, const Address& rAddress)
{
    SetUp(rServer);
    Address bound = rAddress;
    if (rAddress.port == 0)
    {
        bound.port = static_cast<UINT16>(std::max(rServer.bind_to_any_port(rAddress.host), 0));
    }
    else if (!rServer.bind_to_port(rAddress.host, rAddress.port))
    {
        bound.port = 0;
    }
    if (bound.port == 0)
    {
        throw std::runtime_error(fmt::format(
            "cannot listen at {}: the port is taken, or it is no address of this machine", FormatAddress(rAddress)));
    }
    return bound;
}

}  // namespace

struct HttpServer::Parts
{
    Parts(const Address& rAddress, const PageOptions& rOptions)
        : rules{Bind(server, rAddress), NameOfThisMachine(), IsLoopback(rAddress.host) ? "" : MakeToken()},
          page(rOptions)
    {
    }

    httplib::Server server;
    GuardRules      rules;  ///< the address is the bound one
    Page            page;   ///< after the server: it looks for the camera, and tells of it, only once there is a port
    std::thread     thread;
};

HttpServer::HttpServer(const Address& rAddress, const PageOptions& rOptions)
    : m_pParts(std::make_unique<Parts>(rAddress, rOptions))
{
    Parts& rParts = *m_pParts;
    AddRoutes(rParts.server, rParts.page, rParts.rules);
    rParts.thread = std::thread([&rParts] { (VOID) rParts.server.listen_after_bind(); });
}

HttpServer::~HttpServer()
{
    m_pParts->page.Events().Close();
    while (!m_pParts->server.is_running())
    {
        std::this_thread::yield();  // the library forgets a stop that comes before the start
    }
    m_pParts->server.stop();
    m_pParts->thread.join();
}

std::string HttpServer::Url() const
{
    const GuardRules& rRules = m_pParts->rules;
    return fmt::format("http://{}/{}", FormatAddress(rRules.address),
                       rRules.token.empty() ? "" : "?token=" + rRules.token);
}

UINT16 HttpServer::Port() const
{
    return m_pParts->rules.address.port;
}

}  // namespace page
