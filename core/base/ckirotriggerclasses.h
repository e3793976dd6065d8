/// @file
/// The family of trigger-interpolated data: one class per core record. KIROMLDataType says what each record holds, and
/// how its integers are rounded, which happens at each level of the interpolation.
#pragma once

#include "core/base/ckirotrigger.h"

/// KIROMLConvBaseDataType
class CKIROConvBase : public CKIRODataXML
{
public:
    CKIROConvBase();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// KIROMLConvStretchDataType
class CKIROConvStretch : public CKIRODataXML
{
public:
    CKIROConvStretch();

    /// Released by DestroyInstance. @return 0, or 8 with a null instance when no memory is left
    static KiroResult CreateInstance(CKIROConvStretch*& rpInstance);

    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// KIROMLConvSettleType
class CKIROConvSettle : public CKIRODataXML
{
public:
    CKIROConvSettle();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// KIROMLTwoFloatsDataType
class CKIROTwoFloatsXML : public CKIRODataXML
{
public:
    CKIROTwoFloatsXML();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// KIROMLSCDDataType
class CKIROSCD : public CKIRODataXML
{
public:
    CKIROSCD();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// KIROMLOneFloatDataType
class CKIROOneFloatXML : public CKIRODataXML
{
public:
    CKIROOneFloatXML();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// KIROMLStartUpExtSensType
class CKIROStartUpExtSens : public CKIRODataXML
{
public:
    CKIROStartUpExtSens();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};

/// KIROMLFloatArrayDataType
class CKIROFloatArrayXML : public CKIRODataXML
{
public:
    CKIROFloatArrayXML();
    VOID* InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData) override;
};
