#include "parameters/lookupmemo.h"

#include <algorithm>

LookupMemo& LookupMemo::OfThread()
{
    static thread_local LookupMemo memo;
    return memo;
}

VOID LookupMemo::Note(const Path& rPath, UINT64 nameHash, ParameterModule* pModule)
{
    Answers* pKnown   = FindPath(rPath);
    Answers& rAnswers = (pKnown != nullptr) ? *pKnown : BeginPath(rPath);
    Slot*    pPlace   = &SlotOf(rAnswers, nameHash, 0);
    for (UINT32 probe = 0; probe < ProbeCount && pPlace->pModule != nullptr; ++probe)
    {
        pPlace = &SlotOf(rAnswers, nameHash, probe);
    }
    *pPlace = {nameHash, pModule};
}

LookupMemo::Answers* LookupMemo::FindOlderPath(Path path)
{
    const auto found =
        std::find_if(m_paths.begin(), m_paths.end(), [&](const Answers& rAnswers) { return rAnswers.path == path; });
    if (found == m_paths.end())
    {
        return nullptr;
    }
    m_latest = static_cast<UINT32>(found - m_paths.begin());
    return &*found;
}

LookupMemo::Answers& LookupMemo::BeginPath(const Path& rPath)
{
    m_latest          = (m_latest + PathCount - 1) % PathCount;  // any but the latest
    Answers& rAnswers = m_paths[m_latest];
    rAnswers.slots    = {};
    std::copy_n(rPath.pBranch, rPath.count, rAnswers.branch.begin());
    rAnswers.path         = rPath;
    rAnswers.path.pBranch = rAnswers.branch.data();
    return rAnswers;
}
