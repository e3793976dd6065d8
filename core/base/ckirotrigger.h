/// @file
/// Tuned values that vary with up to three measured quantities.
///
/// A value is a tree of at most three levels, each an array of zones sorted by rising trigger. Zones are ranges with
/// flat spots inside; between two zones the records of the neighbours are interpolated, level by level. The search at
/// the first level starts from the zone of the last call and follows the direction of the trigger.
///
/// The tree belongs to the tuning store. An inner zone is a StartEndType, a count, an entry ID and a pointer (24 bytes);
/// a leaf zone is a StartEndType followed by the core record.
#pragma once

#include "core/base/tavomemory.h"
#include "interface/kiroframe.h"
#include "interface/kirotriggerdata.h"

/// One float; the base of the family. Not for concurrent use: results aim into the object.
class CKIRODataXML
{
public:
    /// @param type fixed for the object's life
    explicit CKIRODataXML(KIROMLDataType type);
    CKIRODataXML(const CKIRODataXML&)            = delete;
    CKIRODataXML& operator=(const CKIRODataXML&) = delete;

    /// Allocates a bare CKIRODataXML of the type. @return 0
    static KiroResult CreateInstance(CKIRODataXML*& rpInstance, KIROMLDataType type);

    /// Frees the working buffer and the object itself, which must have come from CreateInstance.
    virtual VOID DestroyInstance();
    virtual ~CKIRODataXML();

    /// Weighs two core records: start * ratio + end * (1 - ratio) for floats, one fused multiply-add each.
    /// @return a slot of the working buffer, valid until the next GetData; null if a record is null
    virtual VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData);

    /// Takes a tree.
    /// @param pData an AECTriggerXMLData; its core size must not grow between calls on one object
    /// @param type  must be the object's type, otherwise the call is logged and ignored
    VOID SetData(VOID* pData, KIROMLDataType type);

    /// Evaluates the tree; a NaN trigger counts as 0.
    /// @return a core record in the tree or in the object, read-only, valid until the next GetData or SetData;
    ///         without a tree a record of zeros
    VOID* GetData(FLOAT trigger1D, FLOAT trigger2D, FLOAT trigger3D);

    /// One level of the evaluation; see the file comment.
    VOID* GetInterpData(INT curDimension, FLOAT currValue, FLOAT prevValue, INT zoneCount, VOID* pTData);

protected:
    static constexpr INT LevelCountMax = 3;
    static constexpr INT VisitCountMax = 4;
    static constexpr INT SlotCount     = 16;

    /// @return the next slot of the working buffer
    VOID* NextSlot(INT stride);
    /// Logs and answers false if a record is null.
    bool AreRecordsValid(const VOID* pStartData, const VOID* pEndData) const;
    /// Interpolates count floats into the next slot.
    VOID* InterpFloats(FLOAT interpRatio, const VOID* pStartData, const VOID* pEndData, INT count, INT stride);

    TavoArray<BYTE> m_pInterpData;  ///< sixteen result slots
    INT             m_interpDataIdx;
    INT             m_coreDataSize;

private:
    KIROMLDataType m_myDataType;
    INT            m_zoneIndex[LevelCountMax];
    INT            m_selectedNodeIndex[LevelCountMax][VisitCountMax];
    FLOAT          m_dimTriggerPoint[LevelCountMax];
    FLOAT          m_dimPrevTriggerPoint[LevelCountMax];
    INT            m_nodeSize;
    INT            m_ldNodeSize;
    INT            m_subLevelTriggerCnt;
    INT            m_triggerDimension;
    BYTE*          m_pXMLNodeData;  ///< not owned
};
