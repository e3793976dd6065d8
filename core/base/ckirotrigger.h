/// @file
/// Tuned values that vary with up to three measured quantities; interface/kirotriggerdata.h says what a tree of zones
/// is. Between two zones the records of the neighbours are interpolated level by level. The search at the first level
/// starts from the zone of the last call and follows the direction of the trigger, so a trigger on the border of a zone
/// is inside the zone that it came from.
#pragma once

#include "core/base/tavomemory.h"
#include "interface/kiroframe.h"
#include "interface/kirotriggerdata.h"

/// A zone of an inner level.
struct AECTriggerNodeXML
{
    StartEnd triggerPoint;
    INT32    subLevelTriggerCnt;  ///< zones of the sub-array, at least 1
    INT32    subLevelTriggerId;
    VOID*    pData;  ///< array of zones of the next level
};
static_assert(sizeof(AECTriggerNodeXML) == 24, "inner zones are read with this stride");

/// A zone of the last level as declared. In the tree the core record stands in the place of the pointer.
struct AECTriggerNodeLDXML
{
    StartEnd triggerPoint;
    VOID*    pData;
};

/// One float; the base of the family. Not for concurrent use: results aim into the object.
class CKIRODataXML
{
public:
    /// @param type fixed for the object's life
    explicit CKIRODataXML(KIROMLDataType type);
    CKIRODataXML(const CKIRODataXML&)            = delete;
    CKIRODataXML& operator=(const CKIRODataXML&) = delete;

    /// Allocates a bare CKIRODataXML of the type. @return 0, or 8 with a null instance when no memory is left
    static KiroResult CreateInstance(CKIRODataXML*& rpInstance, KIROMLDataType type);

    /// Frees the working buffer and the object itself, which must have come from CreateInstance.
    virtual VOID DestroyInstance();
    virtual ~CKIRODataXML();

    /// Weighs two core records: start * ratio + end * (1 - ratio) for floats, one fused multiply-add each.
    /// @return a slot of the working buffer, valid until the next GetData; null if a record is null or no slot is left
    virtual VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData);

    /// Takes a tree.
    /// @param pData an AECTriggerXMLData; its core size must not grow between calls on one object. A tree of more than
    ///              three levels or with core records too small for the type is logged and counts as no tree.
    /// @param type  must be the object's type, otherwise the call is logged and ignored
    VOID SetData(VOID* pData, KIROMLDataType type);

    /// Evaluates the tree; a NaN trigger counts as 0.
    /// @return a core record in the tree or in the object, read-only, valid until the next GetData or SetData;
    ///         without a tree, or without zones in it, a record of zeros
    VOID* GetData(FLOAT trigger1D, FLOAT trigger2D, FLOAT trigger3D);

    /// One level of the evaluation; see the file comment.
    /// @param curDimension from 0
    /// @param prevValue of the last call; counts at the first level alone
    /// @param pTData    zoneCount zones
    /// @return null, with a log, if there are no zones
    VOID* GetInterpData(INT curDimension, FLOAT currValue, FLOAT prevValue, INT zoneCount, VOID* pTData);

protected:
    static constexpr INT LevelCountMax = 3;
    static constexpr INT SlotCount     = 16;

    /// @param recordSize bytes that InterpCoreData reads and writes
    CKIRODataXML(KIROMLDataType type, INT recordSize);

    /// @return the next slot of the working buffer, slots being stride bytes apart; null, with a log, past its end
    VOID* NextSlot(INT stride)
    {
        ++m_interpDataIdx;
        const size_t offset = static_cast<size_t>(m_interpDataIdx) * static_cast<size_t>(stride);
        if (m_pInterpData == nullptr || offset + static_cast<size_t>(stride) > m_interpDataSize)
        {
            LogFull(stride);
            return nullptr;
        }
        return m_pInterpData.get() + offset;
    }
    /// Logs and answers false if a record is null.
    bool AreRecordsValid(const VOID* pStartData, const VOID* pEndData) const
    {
        if (pStartData == nullptr || pEndData == nullptr)
        {
            LogNull(pStartData, pEndData);
            return false;
        }
        return true;
    }
    /// Interpolates count floats into the next slot.
    VOID* InterpFloats(FLOAT interpRatio, const VOID* pStartData, const VOID* pEndData, INT count, INT stride);

    /// start * ratio + end * (1 - ratio)
    static FLOAT Interp(FLOAT interpRatio, FLOAT start, FLOAT end);

    TavoArray<BYTE> m_pInterpData;  ///< sixteen result slots; the first stays unused
    INT             m_interpDataIdx;
    INT             m_coreDataSize;

private:
    static constexpr INT ZeroRecordSize = 1024;

    /// What GetData yields when there is nothing to evaluate; larger than any core record, and never written.
    alignas(8) static BYTE s_buffer[ZeroRecordSize];

    static constexpr INT m_nodeSize   = sizeof(AECTriggerNodeXML);
    static constexpr INT m_ldNodeSize = sizeof(AECTriggerNodeLDXML);

    // Apart from what calls them, which needs no stack frame then.
    [[gnu::cold, gnu::noinline]] VOID LogFull(INT stride) const;
    [[gnu::cold, gnu::noinline]] VOID LogNull(const VOID* pStartData, const VOID* pEndData) const;

    /// Which level zones are of, as far as a compiler can know.
    enum class Level
    {
        Any,
        Last,  ///< whose zones hold the core records
    };

    bool                          IsLastLevel(INT dimension) const;
    template <Level At> ptrdiff_t StrideOf(INT dimension) const;

    // Apart from GetInterpData(), whose trees mostly have a single zone.
    [[gnu::noinline]] VOID*           SearchFirstLevel(FLOAT currValue, FLOAT prevValue, INT zoneCount, BYTE* pZones);
    template <bool LeftToRight> VOID* WalkFirstLevel(FLOAT currValue, INT start, INT zoneCount, BYTE* pZones);
    VOID*                             SearchLevelBelow(INT dimension, FLOAT currValue, INT zoneCount, BYTE* pZones);

    template <Level At>
    [[gnu::noinline]] VOID*   SearchZones(INT dimension, FLOAT currValue, INT zoneCount, BYTE* pZones);
    template <Level At> VOID* EvaluateZone(INT dimension, BYTE* pZone);
    template <Level At, bool LeftToRight>
    VOID* EvaluateGap(INT dimension, FLOAT currValue, BYTE* pVisited, BYTE* pReached);

    const KIROMLDataType m_myDataType;
    const INT            m_recordSize;
    size_t               m_interpDataSize;  ///< bytes of m_pInterpData
    INT                  m_selectedZone;    ///< of the first level, where the next search begins
    FLOAT                m_dimTriggerPoint[LevelCountMax];
    FLOAT                m_prevTriggerPoint;  ///< of the first level, in the last call
    INT                  m_subLevelTriggerCnt;
    INT                  m_triggerDimension;
    BYTE*                m_pXMLNodeData;  ///< not owned
};
