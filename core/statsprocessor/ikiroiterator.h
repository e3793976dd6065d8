/// @file
/// Walks a statistics channel as a sequence of regions.
#pragma once

#include "interface/kirostats.h"

/// A tile laid over the grid; a cell equal to 1 is active.
struct KIROSubsamplingInfo
{
    const UINT32* pSSPattern;  ///< width * height cells, row-major
    UINT32        width;
    UINT32        height;
};

/// What to visit. Null pointers stand for every region of the full frame.
struct KIROItrConfig
{
    const KIROSubsamplingInfo* pSSInfo;
    const AECAlgoROI*          pROIInfo;

    VOID Set(const KIROSubsamplingInfo* pSS, const AECAlgoROI* pROI)
    {
        pSSInfo  = pSS;
        pROIInfo = pROI;
    }

    VOID Reset()
    {
        Set(nullptr, nullptr);
    }
};

/// Type and shape of the channel that a walk is for.
struct KIROItrInfo
{
    kiroglobalelements::KIROStatsType   type;
    kirocorestatsconfig::ResolutionType resolution;
};

struct KIROHistData
{
    UINT32 binCount;
    FLOAT  binValue;
};

constexpr AECAlgoROI FullFrameROI = {0.0f, 0.0f, 1.0f, 1.0f, 0.0f};

class IKIROIterator
{
public:
    virtual BOOL          HasNext()              = 0;
    virtual FLOAT         NextGridData()         = 0;
    virtual KIROHistData* NextHistData()         = 0;
    virtual UINT32        GetTotalNumOfRegions() = 0;

protected:
    ~IKIROIterator() = default;
};
