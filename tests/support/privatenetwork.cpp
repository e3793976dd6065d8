#include "tests/support/privatenetwork.h"

#include <cstring>
#include <fstream>
#include <string>

#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

bool RaiseLoopback()
{
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq     request    = {};
    std::strcpy(request.ifr_name, "lo");
    request.ifr_flags = IFF_UP | IFF_RUNNING;
    const bool raised = descriptor >= 0 && ioctl(descriptor, SIOCSIFFLAGS, &request) == 0;
    close(descriptor);
    return raised;
}

/// Without root's rights a network comes with a user namespace, in which the user keeps its ID so that files stay its
/// own.
bool LeaveAsUser()
{
    const std::string user = std::to_string(getuid());
    if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
    {
        return false;
    }
    std::ofstream("/proc/self/uid_map") << user << " " << user << " 1";
    return true;
}

}  // namespace

bool PrivateNetwork::Enter()
{
    static const bool entered = (unshare(CLONE_NEWNET) == 0 || LeaveAsUser()) && RaiseLoopback();
    return entered;
}
