/// @file
/// Which request leads to what.
#pragma once

#include "tools/page/requestguard.h"

namespace httplib
{
class Server;
}

namespace page
{

class Page;

/// @param rServer, rPage must outlive the requests that are served
VOID AddRoutes(httplib::Server& rServer, Page& rPage, const GuardRules& rRules);

}  // namespace page
