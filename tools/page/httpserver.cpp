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

}  // namespace

struct HttpServer::Parts
{
    explicit Parts(const PageOptions& rOptions) : page(rOptions)
    {
    }

    Page            page;
    GuardRules      rules;
    httplib::Server server;
    std::thread     thread;
};

HttpServer::HttpServer(const Address& rAddress, const PageOptions& rOptions)
{
    m_pParts      = std::make_unique<Parts>(rOptions);
    Parts& rParts = *m_pParts;
    rParts.rules  = {rAddress, NameOfThisMachine(), IsLoopback(rAddress.host) ? "" : MakeToken()};
    rParts.server.set_socket_options(AllowQuickRestart);
    rParts.server.set_tcp_nodelay(true);
    rParts.server.set_read_timeout(ReadTimeout);
    rParts.server.set_write_timeout(WriteTimeout);
    rParts.server.set_payload_max_length(MaxBody);
    rParts.server.set_keep_alive_max_count(1);  // a browser that thinks would hold a thread
    rParts.server.new_task_queue = [] { return new httplib::ThreadPool(Threads); };
    if (rAddress.port == 0)
    {
        rParts.rules.address.port = static_cast<UINT16>(std::max(rParts.server.bind_to_any_port(rAddress.host), 0));
    }
    else if (!rParts.server.bind_to_port(rAddress.host, rAddress.port))
    {
        rParts.rules.address.port = 0;
    }
    if (rParts.rules.address.port == 0)
    {
        throw std::runtime_error(fmt::format(
            "cannot listen at {}: the port is taken, or it is no address of this machine", FormatAddress(rAddress)));
    }
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
