/// @file
/// What has been set and not taken back, as the server knows it without asking: it outlives a camera that goes away.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "tools/kirotune/livecamera.h"

namespace page
{

/// A module of a mode of a mode table.
struct ModulePlace
{
    auto operator<=>(const ModulePlace&) const = default;

    UINT32      table;
    std::string mode;
    std::string module;
};

struct KeptNumber
{
    std::string start;  ///< as the camera told it before the first edit
    std::string sent;   ///< by the last
};

/// By member.
using KeptNumbers = std::map<std::string, KeptNumber>;

/// May be used by any thread.
class KeptEdits
{
public:
    /// @param rCommand what the camera has taken over
    VOID Keep(kirotune::LiveCamera& rCamera, const kirotune::EditCommand& rCommand);

    /// Another camera has answered, or the same one has been started anew: it holds none of the edits.
    VOID Lose();

    /// Edits of the camera that answers, or did so last. Those that were taken back are among them.
    std::map<ModulePlace, KeptNumbers> Present() const;

    /// Edits of cameras before, but for those that were taken back.
    std::map<ModulePlace, KeptNumbers> Lost() const;

    /// @return how many numbers are lost
    size_t LostCount() const;

    VOID ForgetLost();
    VOID ForgetLost(const ModulePlace& rPlace);

    /// @return a patch with the lost edits, empty if there are none
    std::string LostPatch() const;

    /// @return a patch with all edits, the lost ones as well; empty if there are none
    std::string Patch() const;

private:
    using Kept = std::map<ModulePlace, KeptNumbers>;

    std::string PatchOf(const Kept& rKept) const;

    mutable std::mutex     m_mutex;
    Kept                   m_present;
    Kept                   m_lost;
    std::string            m_camera;     ///< host and port
    liveclient::DeviceInfo m_device;     ///< that the last edit went to
    UINT32                 m_table = 0;  ///< of the last edit
};

}  // namespace page
