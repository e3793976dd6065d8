/// @file
/// The family of trigger-interpolated data: one class per core record. They differ in what a record holds, and in how
/// its integers are rounded at each level of the interpolation.
#pragma once

#include "core/base/ckirotrigger.h"

/// kirodbconvbase::ConvBaseCoreDataType
class CKIROConvBase : public CKIRODataXML
{
public:
    CKIROConvBase();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// kirodbconvstretch::ConvStretchCoreDataType
class CKIROConvStretch : public CKIRODataXML
{
public:
    CKIROConvStretch();

    /// Released by DestroyInstance. @return 0, or 8 with a null instance when no memory is left
    static KiroResult CreateInstance(CKIROConvStretch*& rpInstance);

    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// kirodbconvsettle::BaseSettleType; the count of frames is rounded up.
class CKIROConvSettle : public CKIRODataXML
{
public:
    CKIROConvSettle();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// Two floats.
class CKIROTwoFloatsXML : public CKIRODataXML
{
public:
    CKIROTwoFloatsXML();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// kiroscenechangedetector::SCThresCoreDataType; the count of frames is truncated.
class CKIROSCD : public CKIRODataXML
{
public:
    CKIROSCD();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// One float.
class CKIROOneFloatXML : public CKIRODataXML
{
public:
    CKIROOneFloatXML();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// kirostartup::LightDataTriggerDataType; exposures are interpolated in single precision and truncated.
class CKIROStartUpExtSens : public CKIRODataXML
{
public:
    CKIROStartUpExtSens();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// Ten floats.
class CKIROFloatArrayXML : public CKIRODataXML
{
public:
    CKIROFloatArrayXML();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};
