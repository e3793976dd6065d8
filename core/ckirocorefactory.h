/// @file
/// Creation of instances and of their function tables.
#pragma once

#include "core/ikirocore.h"

class CKIROCoreFactory
{
public:
    /// @return 0; rpCore is null when no memory is left
    static INT CreateKiroCoreInstance(StatsTuningData& rTuningData, IKIRODebugData& rDebugData, IKIROCore*& rpCore);

    /// Same contract as CreateKiroCoreAlgo.
    static MNKResult FactoryCreateKiroCoreAlgo(StatsTuningData& rTuningData, IKIRODebugData& rDebugData,
                                               const AECAlgoCreateParamList& rCreateParamList, IKIROCoreAlgo*& rpCore);
};

class CKIRODataXML;

/// A bare trigger data object of type 0, without the function-pointer wrapper.
/// @return null for a null pAlgo
CKIRODataXML* LIBCreateTriggerData(IKIROCoreAlgo* pAlgo);

/// Stores the thirty-six functions of the table.
VOID SetCoreFunctions(IKIROCoreAlgo& rAlgo);

/// Behind createDataXml and the functions of its objects.
CKIROTriggerDataXML* KIROCreateTriggerDataInst(IKIROCoreAlgo* pAlgo, KIROMLDataType xmlType);
VOID                 KIROTriggerSetData(CKIROTriggerDataXML* pObj, VOID* pData, KIROMLDataType xmlDataType);
VOID* KIROTriggerGetData(CKIROTriggerDataXML* pObj, FLOAT pTrigger1D, FLOAT pTrigger2D, FLOAT pTrigger3D);
VOID  KIROTriggerDestory(CKIROTriggerDataXML* pObj);
