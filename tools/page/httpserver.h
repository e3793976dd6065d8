/// @file
/// Serves the page over HTTP.
#pragma once

#include <memory>
#include <string>

#include "tools/page/address.h"
#include "tools/page/page.h"

namespace page
{

/// Serves from when it is made until it is destroyed, by threads of its own. The end does not wait for browsers.
class HttpServer
{
public:
    /// @param rAddress port 0 for one of the system's choice
    /// @throws std::runtime_error if nobody can listen there
    HttpServer(const Address& rAddress, const PageOptions& rOptions);
    ~HttpServer();
    HttpServer(const HttpServer&)            = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// What a person opens, with the token if one is needed.
    std::string Url() const;

    UINT16 Port() const;

private:
    struct Parts;  // keeps the HTTP library's headers out of here

    std::unique_ptr<Parts> m_pParts;
};

}  // namespace page
