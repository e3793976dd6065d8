#include "tools/page/token.h"

#include <array>
#include <cerrno>
#include <system_error>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <sys/random.h>

#include "platform/tavotypes.h"

namespace page
{

std::string MakeToken()
{
    std::array<BYTE, 16> bytes{};
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
    {
        throw std::system_error(errno, std::generic_category(), "no random numbers for a token");
    }
    return fmt::format("{:02x}", fmt::join(bytes, ""));
}

}  // namespace page
