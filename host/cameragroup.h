/// @file
/// The cameras of a group: what a host tells each instance about the others.
#pragma once

#include <array>

#include "host/kirohost.h"

class CameraGroup
{
public:
    /// Adds a camera; the first one gets the ID 1. At most StatsPeerCountMax.
    /// @param rHost must outlive the group
    /// @throws std::length_error
    VOID Join(KiroHost& rHost, StatsAlgoRole role);

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

    VOID Announce();

    std::array<Member, StatsPeerCountMax> m_members;
    size_t                                m_count = 0;
};
