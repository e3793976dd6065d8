#include "tools/page/address.h"

#include <charconv>

#include <arpa/inet.h>
#include <fmt/format.h>

namespace page
{

namespace
{

bool IsIPv4(const std::string& rHost)
{
    in_addr number{};
    return inet_pton(AF_INET, rHost.c_str(), &number) == 1;
}

bool IsIPv6(const std::string& rHost)
{
    in6_addr number{};
    return inet_pton(AF_INET6, rHost.c_str(), &number) == 1;
}

}  // namespace

bool ParseAddress(const std::string& rText, Address& rAddress)
{
    const size_t colon = rText.rfind(':');
    if (colon == std::string::npos || colon == 0)
    {
        return false;
    }
    const CHAR* const pEnd  = rText.data() + rText.size();
    const auto        read  = std::from_chars(rText.data() + colon + 1, pEnd, rAddress.port);
    const bool        isIn6 = rText.front() == '[' && rText[colon - 1] == ']';
    rAddress.host           = isIn6 ? rText.substr(1, colon - 2) : rText.substr(0, colon);
    const bool isHost       = isIn6 ? IsIPv6(rAddress.host) : rAddress.host.find_first_of(":[] /") == std::string::npos;
    return isHost && read.ec == std::errc() && read.ptr == pEnd && rAddress.port != 0;
}

std::string FormatAddress(const Address& rAddress)
{
    const std::string host = IsIPv6(rAddress.host) ? '[' + rAddress.host + ']' : rAddress.host;
    return fmt::format("{}:{}", host, rAddress.port);
}

bool IsLoopback(const std::string& rHost)
{
    return rHost == "localhost" || rHost == "::1" || (IsIPv4(rHost) && rHost.starts_with("127."));
}

bool IsNumericHost(const std::string& rHost)
{
    return IsIPv4(rHost) || IsIPv6(rHost);
}

}  // namespace page
