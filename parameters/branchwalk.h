/// @file
/// The walk down a tree of modes along a caller's selectors.
#pragma once

#include "parameters/modeentry.h"

class ParameterStore;

/// Goes from the root down, one step per level that the branch names. Selectors of one level form a run, and a step
/// takes a run as a whole.
class BranchWalk
{
public:
    /// @param pCaller for the error about a selector that is not valid
    /// @param pRoot   where the first selector, which is Default, leads
    /// @param pBranch may be null, which leads to the root
    BranchWalk(ParameterStore& rStore, const CHAR* pCaller, ModeEntry* pRoot, const TuningMode* pBranch, UINT32 count)
        : m_rStore(rStore), m_pCaller(pCaller), m_pMode(pRoot), m_pBranch(pBranch),
          m_count((pBranch != nullptr) ? count : 0)
    {
    }

    /// Takes one step. @return false at the end of the branch, at a selector that is not valid, and at a run that
    ///         leads nowhere
    bool Next();

    /// Walks to the end of the branch, or to a selector that is not valid. @return the mode there, null if the walk
    /// got lost
    ModeEntry* End();

    /// The mode reached so far.
    ModeEntry* Mode() const
    {
        return m_pMode;
    }

    /// @return whether the walk ended at a run that leads nowhere
    bool IsLost() const
    {
        return m_lost;
    }

private:
    ParameterStore&   m_rStore;
    const CHAR*       m_pCaller;
    ModeEntry*        m_pMode;
    const TuningMode* m_pBranch;
    UINT32            m_count;
    UINT32            m_index = 1;
    bool              m_lost  = false;
};
