/// @file
/// The cameras of a group: what a host tells each instance about the others.
#pragma once

#include <array>

#include "host/kirohost.h"

class CameraGroup
{
public:
    /// Adds a camera, with the lowest ID from 1 that is free. At most StatsPeerCountMax.
    /// @param rHost leaves before it ends, or outlives both the last frame of every camera that has been with it in the
    /// group and the last call here: each Join, Leave and SetRole calls the hosts of all members
    /// @throws std::length_error
    VOID Join(KiroHost& rHost, StatsAlgoRole role);

    /// Takes a camera out, between frames. No camera knows its record from then on, nor does it know another's; it is
    /// without a role. The cameras behind it move up in the order. Unknown cameras are passed over.
    VOID Leave(KiroHost& rHost);

    /// @param camera in the order of joining
    VOID SetRole(size_t camera, StatsAlgoRole role);

    StatsAlgoRole Role(size_t camera) const
    {
        return m_members.at(camera).info.algoRole;
    }

private:
    struct Member
    {
        KiroHost*       pHost = nullptr;
        StatsCameraInfo info{};
    };

    UINT32 FreeID() const;
    bool   HasPartner(const Member& rMember) const;
    VOID   Announce();

    static VOID ForgetPeer(const Member& rMember);

    std::array<Member, StatsPeerCountMax> m_members;
    size_t                                m_count = 0;
};
