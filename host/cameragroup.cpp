#include "host/cameragroup.h"

#include <stdexcept>

#include "host/queries.h"

VOID CameraGroup::Join(KiroHost& rHost, StatsAlgoRole role)
{
    if (m_count == m_members.size())
    {
        throw std::length_error("a group has room for four cameras");
    }
    m_members[m_count] = {&rHost, {role, static_cast<UINT32>(m_count + 1)}};
    ++m_count;
    Announce();
}

VOID CameraGroup::SetRole(size_t camera, StatsAlgoRole role)
{
    m_members.at(camera).info.algoRole = role;
    Announce();
}

/// Roles first: a camera picks its peer by its own role. A camera without a partner for now keeps the one that it has.
VOID CameraGroup::Announce()
{
    StatsPeerInfoCombo peers{};
    peers.needSync = TRUE;
    for (size_t camera = 0; camera < m_count; ++camera)
    {
        const Member& rMember = m_members[camera];
        rMember.pHost->SetCameraInfo(rMember.info);
        peers.isActive[camera] = TRUE;
        peers.cameraId[camera] = rMember.info.cameraId;
        peers.algoRole[camera] = rMember.info.algoRole;
        peers.peerInfo[camera] = const_cast<AECMultiCamInfo*>(QueryPeerInfo(rMember.pHost->Algo()));
    }
    for (size_t camera = 0; camera < m_count; ++camera)
    {
        (VOID) m_members[camera].pHost->SetParam(AECAlgoSetParamPeerInfo, peers);
    }
}
