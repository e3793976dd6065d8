/// Requests of whatever is not a browser, at the server of the page: raw bytes as they come from a connection, through
/// the HTTP library, the guard and all that is behind it, but for the camera, which is not there.
#include <algorithm>
#include <cstring>
#include <string>

#include <httplib.h>

#include "tools/page/page.h"
#include "tools/page/routes.h"

namespace
{

/// A connection that holds the bytes of an input, and takes answers without an end.
class InputStream : public httplib::Stream
{
public:
    InputStream(const BYTE* pData, size_t size) : m_pData(pData), m_left(size)
    {
    }

    bool is_readable() const override
    {
        return m_left > 0;
    }

    bool is_writable() const override
    {
        return true;
    }

    ssize_t read(char* pBytes, size_t size) override
    {
        const size_t count = std::min(size, m_left);
        std::copy_n(m_pData, count, pBytes);
        m_pData += count;
        m_left -= count;
        return static_cast<ssize_t>(count);
    }

    ssize_t write(const char*, size_t size) override
    {
        return static_cast<ssize_t>(size);
    }

    void get_remote_ip_and_port(std::string& rHost, int& rPort) const override
    {
        rHost = "127.0.0.1";
        rPort = 1;
    }

    void get_local_ip_and_port(std::string& rHost, int& rPort) const override
    {
        rHost = "127.0.0.1";
        rPort = 8080;
    }

    socket_t socket() const override
    {
        return -1;
    }

private:
    const BYTE* m_pData;
    size_t      m_left;
};

page::PageOptions NoCamera()
{
    page::PageOptions options;
    options.camera.port = 1;  // nobody listens there
    return options;
}

class RequestServer : public httplib::Server
{
public:
    RequestServer() : m_page(NoCamera())
    {
        m_page.Events().Close();  // a stream would hold the fuzzer
        set_payload_max_length(page::MaxBody);
        page::AddRoutes(*this, m_page, {{"127.0.0.1", 8080}, "desk", ""});
    }

    VOID Serve(const BYTE* pData, size_t size)
    {
        InputStream stream(pData, size);
        bool        isClosed = false;
        (VOID) process_request(stream, true, isClosed, nullptr);
    }

private:
    page::Page m_page;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const BYTE* pData, size_t size)
{
    static RequestServer server;
    server.Serve(pData, size);
    return 0;
}
