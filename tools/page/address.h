/// @file
/// Where something listens.
#pragma once

#include <string>

#include "platform/tavotypes.h"

namespace page
{

struct Address
{
    std::string host;  ///< name or number; of IPv6 without brackets
    UINT16      port = 0;
};

/// Reads "HOST:PORT"; of IPv6, "[::1]:8080".
/// @return false if it is none
bool ParseAddress(const std::string& rText, Address& rAddress);

/// What ParseAddress reads.
std::string FormatAddress(const Address& rAddress);

/// Whether only this machine reaches it.
bool IsLoopback(const std::string& rHost);

/// Whether it is a number, not a name.
bool IsNumericHost(const std::string& rHost);

}  // namespace page
