#include "tools/page/requestguard.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include <fmt/format.h>

namespace page
{

namespace
{

constexpr UINT16 UsualPort = 80;  ///< which browsers leave out

/// Names are alike in upper and lower case.
std::string Lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](CHAR letter)
                   { return (letter >= 'A' && letter <= 'Z') ? static_cast<CHAR>(letter + 32) : letter; });
    return text;
}

/// A foreign name may lead to this machine, and then its pages count as the server's own; a number cannot.
bool IsOwnHost(const GuardRules& rRules, const std::string& rHost)
{
    Address    host;
    const bool hasPort = ParseAddress(rHost, host);
    if (!hasPort && (rRules.address.port != UsualPort || !ParseAddress(rHost + ":80", host)))
    {
        return false;
    }
    const std::string name    = Lowered(host.host);
    const std::string ownName = Lowered(rRules.ownName);
    if (host.port != rRules.address.port)
    {
        return false;
    }
    if (IsLoopback(rRules.address.host))
    {
        return name == "localhost" || name == "127.0.0.1" || name == "::1" || name == rRules.address.host;
    }
    return IsNumericHost(name) || name == "localhost" || name == Lowered(rRules.address.host) ||
           (!ownName.empty() && (name == ownName || name == ownName + ".local"));
}

/// Takes the same time wherever the texts differ.
bool IsSameSecret(std::string_view one, std::string_view other)
{
    UINT32 difference = (one.size() == other.size()) ? 0 : 1;
    for (size_t index = 0; index < std::min(one.size(), other.size()); ++index)
    {
        difference |= static_cast<UINT32>(static_cast<BYTE>(one[index]) ^ static_cast<BYTE>(other[index]));
    }
    return difference == 0;
}

bool IsJson(const std::string& rContentType)
{
    const std::string type = Lowered(rContentType.substr(0, rContentType.find(';')));
    return type.substr(0, type.find_last_not_of(' ') + 1) == "application/json";
}

std::optional<Refusal> BodyRefusal(const RequestFacts& rFacts)
{
    if (rFacts.contentTypes.size() != 1 || !IsJson(rFacts.contentTypes[0]))
    {
        return Refusal{403, "expected Content-Type: application/json"};
    }
    if (rFacts.isEncoded || rFacts.lengths.size() != 1)
    {
        return Refusal{411, "expected a plain body with one Content-Length"};
    }
    const std::string& rLength = rFacts.lengths[0];
    UINT64             length  = 0;
    const auto         read    = std::from_chars(rLength.data(), rLength.data() + rLength.size(), length);
    if (read.ptr != rLength.data() + rLength.size() || rLength.empty() || length > MaxBody ||
        read.ec == std::errc::result_out_of_range)
    {
        return Refusal{413, fmt::format("expected a body of at most {} bytes", MaxBody)};
    }
    return std::nullopt;
}

}  // namespace

std::optional<Refusal> RefusalOf(const GuardRules& rRules, const RequestFacts& rFacts)
{
    if (rFacts.hosts.size() != 1 || !IsOwnHost(rRules, rFacts.hosts[0]))
    {
        return Refusal{403,
                       fmt::format("expected a Host by which this server is known, with port {}", rRules.address.port)};
    }
    if (rFacts.method != "GET" && rFacts.method != "HEAD" && rFacts.method != "POST")
    {
        return Refusal{405, "expected GET or POST"};
    }
    if (rFacts.asksForRanges)
    {
        return Refusal{400, "expected a request for the whole"};
    }
    const bool isForeign = std::any_of(rFacts.origins.begin(), rFacts.origins.end(),
                                       [&](const std::string& rOrigin)
                                       { return Lowered(rOrigin) != "http://" + Lowered(rFacts.hosts[0]); });
    if (isForeign)
    {
        return Refusal{403, "expected no other page's Origin"};
    }
    const bool isProtected = rFacts.path.starts_with("/api/") || rFacts.method == "POST";
    if (isProtected && !rRules.token.empty() && !IsSameSecret(rRules.token, rFacts.token))
    {
        return Refusal{403, "expected the token of the address that kirotune page has printed"};
    }
    return (rFacts.method == "POST") ? BodyRefusal(rFacts) : std::nullopt;
}

}  // namespace page
