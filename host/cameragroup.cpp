#include "host/cameragroup.h"

#include <algorithm>
#include <stdexcept>

#include "host/queries.h"

VOID CameraGroup::Join(KiroHost& rHost, StatsAlgoRole role)
{
    if (m_count == m_members.size())
    {
        throw std::length_error("a group has room for four cameras");
    }
    m_members[m_count] = {&rHost, {role, FreeID()}};
    ++m_count;
    Announce();
}

VOID CameraGroup::Leave(KiroHost& rHost)
{
    const auto end     = m_members.begin() + static_cast<ptrdiff_t>(m_count);
    const auto leaving = std::find_if(m_members.begin(), end, [&](const Member& r) { return r.pHost == &rHost; });
    if (leaving == end)
    {
        return;
    }
    std::for_each(m_members.begin(), end, ForgetPeer);
    rHost.SetCameraInfo({StatsAlgoRoleDefault, leaving->info.cameraId});
    std::move(leaving + 1, end, leaving);
    --m_count;
    Announce();
}

/// A core keeps its peer until it is given another one. Null stands for one here; a slave takes it from any master,
/// while a master goes by its tuning and a camera without a role takes none. Its own role comes back with the
/// announcement.
VOID CameraGroup::ForgetPeer(const Member& rMember)
{
    StatsPeerInfoCombo none{};
    none.needSync    = TRUE;
    none.isActive[0] = TRUE;
    none.algoRole[0] = StatsAlgoRoleMaster;
    rMember.pHost->SetCameraInfo({StatsAlgoRoleSlave, rMember.info.cameraId});
    (VOID) rMember.pHost->SetParam(AECAlgoSetParamPeerInfo, none);
}

UINT32 CameraGroup::FreeID() const
{
    const auto end = m_members.begin() + static_cast<ptrdiff_t>(m_count);
    UINT32     id  = 1;
    while (std::any_of(m_members.begin(), end, [id](const Member& r) { return r.info.cameraId == id; }))
    {
        ++id;
    }
    return id;
}

VOID CameraGroup::SetRole(size_t camera, StatsAlgoRole role)
{
    m_members.at(camera).info.algoRole = role;
    Announce();
}

/// Whether a member can be a peer of the camera: a slave follows a master, any other goes by its tuning.
bool CameraGroup::HasPartner(const Member& rMember) const
{
    const auto end = m_members.begin() + static_cast<ptrdiff_t>(m_count);
    return std::any_of(m_members.begin(), end,
                       [&](const Member& r)
                       {
                           return r.pHost != rMember.pHost && (rMember.info.algoRole != StatsAlgoRoleSlave ||
                                                               r.info.algoRole == StatsAlgoRoleMaster);
                       });
}

/// Roles first: a camera picks its peer by its own role. A camera without a partner for now keeps the one that it has;
/// a core that is told of peers and finds none of use takes it for a fault.
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
        if (HasPartner(m_members[camera]))
        {
            (VOID) m_members[camera].pHost->SetParam(AECAlgoSetParamPeerInfo, peers);
        }
    }
}
