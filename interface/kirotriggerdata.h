/// @file
/// Trigger-interpolated tuning data, as a host uses it through createDataXml.
#pragma once

#include "platform/tavotypes.h"

/// Selects the core record that a tree of zones holds.
enum KIROMLDataType : INT32
{
    KIROMLBaseDataType        = 0,  ///< one float
    KIROMLConvBaseDataType    = 1,
    KIROMLConvStretchDataType = 2,
    KIROMLConvSettleType      = 3,
    KIROMLTwoFloatsDataType   = 4,
    KIROMLSCDDataType         = 5,
    KIROMLOneFloatDataType    = 6,
    KIROMLStartUpExtSensType  = 7,
    KIROMLFloatArrayDataType  = 8,  ///< ten floats
    KIROMLDataMax             = 9
};

struct AECDataConfigXML
{
    INT32 triggerLevel;  ///< levels of the tree, 1 to 3
    INT32 coreDataSize;  ///< bytes of the core record
};

/// A tree of zones, as SetData takes it. The tree belongs to the tuning store.
struct AECTriggerXMLData
{
    VOID*            pData;
    AECDataConfigXML config;
    INT32            subLevelTriggerCnt;  ///< zones of the first level, at least 1
};

class CKIRODataXML;

/// A trigger data object behind plain functions.
struct CKIROTriggerDataXML
{
    VOID (*SetData)(CKIROTriggerDataXML* pObj, VOID* pData, KIROMLDataType xmlDataType);
    /// @return a core record, valid until the next GetData or SetData; null for a null object
    VOID* (*GetData)(CKIROTriggerDataXML* pObj, FLOAT trigger1D, FLOAT trigger2D, FLOAT trigger3D);
    VOID (*DestoryInstance)(CKIROTriggerDataXML* pObj);  // misspelled; hosts use the name as it stands
    CKIRODataXML* pData;
};

/// What a host asks of a general trigger system.
struct KIROGeneralizedTriggerSystemInput
{
    FLOAT  data[3];     ///< trigger values
    INT32  numOfInput;  ///< entries of data in use
    UINT32 dataID;      ///< entry of the bank that holds the system; 0 for the one that the context selects
};

struct KIROGeneralizedTriggerSystemOutput
{
    FLOAT data[5];
    INT32 numOfOutput;  ///< entries of data in use
};
