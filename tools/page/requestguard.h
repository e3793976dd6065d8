/// @file
/// Which requests are served at all. Any page that a browser shows can send requests to this server, too: what tells
/// the server's own page from others are the headers Host and Origin, which no script can forge, and a token.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/page/address.h"

namespace page
{

/// Bytes of a body.
constexpr UINT64 MaxBody = UINT64{64} * 1024;

/// What requests must show.
struct GuardRules
{
    Address     address;  ///< at which the server listens
    std::string ownName;  ///< of this machine, may be empty
    std::string token;    ///< empty: none is asked for
};

/// What a request shows. Headers may come more than once.
struct RequestFacts
{
    std::string              method;
    std::string              path;
    std::vector<std::string> hosts         = {};
    std::vector<std::string> origins       = {};
    std::vector<std::string> contentTypes  = {};
    std::vector<std::string> lengths       = {};     ///< of the body, as the header states it
    bool                     isEncoded     = false;  ///< the body is compressed, or comes in chunks of any number
    bool                     asksForRanges = false;
    std::string              token         = {};  ///< empty without one
};

struct Refusal
{
    int         status;  ///< of HTTP
    std::string error;
};

/// @return why the request is not served, nothing if it is
std::optional<Refusal> RefusalOf(const GuardRules& rRules, const RequestFacts& rFacts);

}  // namespace page
