/// @file
/// Trigger-interpolated tuning data, as a host uses it through createDataXml.
///
/// A tuned value is a tree of up to three levels, one for each trigger. A level is an array of zones sorted by rising
/// trigger, as tuning records hold them; an inner zone points at the array of the next level, a zone of the last level
/// holds a core record. Inside a zone the value is flat; between two zones it is interpolated linearly from the end of
/// the lower to the start of the upper one; below the first and above the last zone it is theirs. On the border of a
/// zone of the first level the zone counts that the trigger comes from.
#pragma once

#include "platform/tavotypes.h"

/// Selects the core record that a tree of zones holds, and how it is interpolated: floats linearly, integers in single
/// precision and then as said.
enum KIROMLDataType : INT32
{
    KIROMLBaseDataType        = 0,  ///< one float
    KIROMLConvBaseDataType    = 1,  ///< kirodbconvbase::ConvBaseCoreDataType, three floats
    KIROMLConvStretchDataType = 2,  ///< kirodbconvstretch::ConvStretchCoreDataType, four floats
    KIROMLConvSettleType      = 3,  ///< kirodbconvsettle::BaseSettleType; the count of frames is rounded up
    KIROMLTwoFloatsDataType   = 4,  ///< two floats
    KIROMLSCDDataType         = 5,  ///< kiroscenechangedetector::SCThresCoreDataType; the count of frames is truncated
    KIROMLOneFloatDataType    = 6,  ///< one float
    KIROMLStartUpExtSensType  = 7,  ///< kirostartup::LightDataTriggerDataType; exposures are truncated
    KIROMLFloatArrayDataType  = 8,  ///< ten floats
    KIROMLDataMax             = 9   ///< no type; createDataXml takes it for KIROMLBaseDataType
};

/// The shape of a tree.
struct AECDataConfigXML
{
    INT32 triggerLevel;  ///< levels of the tree, 1 to 3; more are refused, less count as 1
    INT32 coreDataSize;  ///< bytes of the core record, at least the type's, and not more than at the first SetData
};

/// A tree of zones, as SetData takes it. The record is needed for the call alone; the zones stay the tuning store's and
/// must live until the next SetData or the object's end: behind another tuning the host sets them anew.
struct AECTriggerXMLData
{
    VOID*            pData;               ///< zones of the first level; null counts as no tree
    AECDataConfigXML config;              ///< levels and core record
    INT32            subLevelTriggerCnt;  ///< zones of the first level; below 1 counts as no tree
};

class CKIRODataXML;

/// A trigger data object behind plain functions, made by createDataXml. It needs no instance and serves one caller at a
/// time.
struct CKIROTriggerDataXML
{
    /// Takes a tree, before the first GetData. A tree of more than three levels, or with core records smaller than the
    /// type's, is logged and counts as none; null data, or a type that is not the object's, is logged and leaves the
    /// tree before. Nothing happens for a null object.
    /// @param pData       an AECTriggerXMLData
    /// @param xmlDataType as given to createDataXml; KIROMLBaseDataType for a type that it did not know
    VOID (*SetData)(CKIROTriggerDataXML* pObj, VOID* pData, KIROMLDataType xmlDataType);

    /// Evaluates the tree. Triggers beyond its levels are not read; one that is no number counts as 0.
    /// @return a core record, read-only, in the tuning or in the object, valid until the next GetData or SetData; one
    ///         of zeros without a tree, with a log; null for a null object
    VOID* (*GetData)(CKIROTriggerDataXML* pObj, FLOAT trigger1D, FLOAT trigger2D, FLOAT trigger3D);

    /// Ends the object, whose address and results are not to be used any more. Null is allowed. The name is spelled so.
    VOID (*DestoryInstance)(CKIROTriggerDataXML* pObj);

    CKIRODataXML* pData;  ///< for the library alone; null if there was no memory for it: GetData then yields null
};

/// What a host asks of a general trigger system.
struct KIROGeneralizedTriggerSystemInput
{
    FLOAT  data[3];     ///< trigger values; the queries of snapshots read the lux index in data[0]
    INT32  numOfInput;  ///< entries of data in use; not read
    UINT32 dataID;      ///< entry of the bank that holds the system; 0 for the one that the context selects
};

/// What it answers, into the host's memory.
struct KIROGeneralizedTriggerSystemOutput
{
    FLOAT data[5];      ///< values; the queries of snapshots write ADRC and dark boost gain, and leave the others
    INT32 numOfOutput;  ///< entries of data in use: 2
};
