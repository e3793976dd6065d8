#include "parameters/branchwalk.h"

#include "parameters/parameterstore.h"

bool BranchWalk::Next()
{
    if (m_index >= m_count)
    {
        return false;
    }
    if (!m_rStore.ValidateMode(m_pCaller, m_pBranch, m_index))
    {
        m_count = m_index;
        return false;
    }
    UINT32 run = 1;
    while (m_index + run < m_count && m_pBranch[m_index + run].mode == m_pBranch[m_index].mode)
    {
        ++run;
    }
    ModeEntry* pNext = m_pMode->FindMode(m_pBranch + m_index, run);
    if (pNext == nullptr)
    {
        m_lost  = true;
        m_count = m_index;
        return false;
    }
    m_pMode = pNext;
    m_index += run;
    return true;
}

ModeEntry* BranchWalk::End()
{
    while (Next())
    {
    }
    return m_lost ? nullptr : m_pMode;
}
