#include "core/base/ckirotriggerclasses.h"

#include <cmath>

#include "core/base/exposurearithmetic.h"
#include "interface/kiroresults.h"
#include "schema/kirodbconvbase.h"
#include "schema/kirodbconvsettle.h"
#include "schema/kirodbconvstretch.h"
#include "schema/kiroscenechangedetector.h"
#include "schema/kirostartup.h"

using exposurearithmetic::SaturateToUINT32;
using exposurearithmetic::SaturateToUINT64;
using kirodbconvbase::ConvBaseCoreDataType;
using kirodbconvsettle::BaseSettleType;
using kirodbconvstretch::ConvStretchCoreDataType;
using kiroscenechangedetector::SCThresCoreDataType;
using kirostartup::LightDataTriggerDataType;

namespace
{

constexpr INT FloatArrayCount = 10;
constexpr INT OneFloatSize    = sizeof(FLOAT);
constexpr INT TwoFloatsSize   = 2 * sizeof(FLOAT);
constexpr INT FloatArraySize  = FloatArrayCount * sizeof(FLOAT);

constexpr INT ConvBaseFloatCount    = 3;
constexpr INT ConvStretchFloatCount = 4;
static_assert(sizeof(ConvBaseCoreDataType) == ConvBaseFloatCount * sizeof(FLOAT) &&
              sizeof(ConvStretchCoreDataType) == ConvStretchFloatCount * sizeof(FLOAT));

}  // namespace

CKIROConvBase::CKIROConvBase() : CKIRODataXML(KIROMLConvBaseDataType, sizeof(ConvBaseCoreDataType))
{
}

VOID* CKIROConvBase::InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData)
{
    return InterpFloats(pInterpRatio, pStartData, pEndData, ConvBaseFloatCount, m_coreDataSize);
}

CKIROConvStretch::CKIROConvStretch() : CKIRODataXML(KIROMLConvStretchDataType, sizeof(ConvStretchCoreDataType))
{
}

KiroResult CKIROConvStretch::CreateInstance(CKIROConvStretch*& rpInstance)
{
    rpInstance = TavoNew<CKIROConvStretch>().release();
    return (rpInstance != nullptr) ? 0 : ResultOutOfMemory;
}

VOID* CKIROConvStretch::InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData)
{
    return InterpFloats(pInterpRatio, pStartData, pEndData, ConvStretchFloatCount, m_coreDataSize);
}

CKIROConvSettle::CKIROConvSettle() : CKIRODataXML(KIROMLConvSettleType, sizeof(BaseSettleType))
{
}

VOID* CKIROConvSettle::InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData)
{
    if (!AreRecordsValid(pStartData, pEndData))
    {
        return nullptr;
    }
    BaseSettleType* pSlot = static_cast<BaseSettleType*>(NextSlot(m_coreDataSize));
    if (pSlot != nullptr)
    {
        const BaseSettleType& rStart = *static_cast<const BaseSettleType*>(pStartData);
        const BaseSettleType& rEnd   = *static_cast<const BaseSettleType*>(pEndData);
        const FLOAT           count =
            Interp(pInterpRatio, static_cast<FLOAT>(rStart.settleCountTh), static_cast<FLOAT>(rEnd.settleCountTh));
        pSlot->settleCountTh = SaturateToUINT32(std::ceil(count));
        pSlot->settleExpTh   = Interp(pInterpRatio, rStart.settleExpTh, rEnd.settleExpTh);
    }
    return pSlot;
}

CKIROTwoFloatsXML::CKIROTwoFloatsXML() : CKIRODataXML(KIROMLTwoFloatsDataType, TwoFloatsSize)
{
}

VOID* CKIROTwoFloatsXML::InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData)
{
    return InterpFloats(pInterpRatio, pStartData, pEndData, 2, TwoFloatsSize);
}

CKIROSCD::CKIROSCD() : CKIRODataXML(KIROMLSCDDataType, sizeof(SCThresCoreDataType))
{
}

VOID* CKIROSCD::InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData)
{
    if (!AreRecordsValid(pStartData, pEndData))
    {
        return nullptr;
    }
    SCThresCoreDataType* pSlot = static_cast<SCThresCoreDataType*>(NextSlot(sizeof(SCThresCoreDataType)));
    if (pSlot != nullptr)
    {
        const SCThresCoreDataType& rStart = *static_cast<const SCThresCoreDataType*>(pStartData);
        const SCThresCoreDataType& rEnd   = *static_cast<const SCThresCoreDataType*>(pEndData);
        pSlot->valueThres                 = Interp(pInterpRatio, rStart.valueThres, rEnd.valueThres);
        pSlot->countThres                 = SaturateToUINT32(
                            Interp(pInterpRatio, static_cast<FLOAT>(rStart.countThres), static_cast<FLOAT>(rEnd.countThres)));
    }
    return pSlot;
}

CKIROOneFloatXML::CKIROOneFloatXML() : CKIRODataXML(KIROMLOneFloatDataType, OneFloatSize)
{
}

VOID* CKIROOneFloatXML::InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData)
{
    return InterpFloats(pInterpRatio, pStartData, pEndData, 1, OneFloatSize);
}

CKIROStartUpExtSens::CKIROStartUpExtSens() : CKIRODataXML(KIROMLStartUpExtSensType, sizeof(LightDataTriggerDataType))
{
}

VOID* CKIROStartUpExtSens::InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData)
{
    if (!AreRecordsValid(pStartData, pEndData))
    {
        return nullptr;
    }
    LightDataTriggerDataType* pSlot = static_cast<LightDataTriggerDataType*>(NextSlot(m_coreDataSize));
    if (pSlot != nullptr)
    {
        const LightDataTriggerDataType& rStart = *static_cast<const LightDataTriggerDataType*>(pStartData);
        const LightDataTriggerDataType& rEnd   = *static_cast<const LightDataTriggerDataType*>(pEndData);
        pSlot->exposureZone.start = Interp(pInterpRatio, rStart.exposureZone.start, rEnd.exposureZone.start);
        pSlot->exposureZone.end   = Interp(pInterpRatio, rStart.exposureZone.end, rEnd.exposureZone.end);
        for (INT type = 0; type < AECAlgoExposureCount; ++type)
        {
            pSlot->initialExposure[type] =
                SaturateToUINT64(Interp(pInterpRatio, static_cast<FLOAT>(rStart.initialExposure[type]),
                                        static_cast<FLOAT>(rEnd.initialExposure[type])));
        }
    }
    return pSlot;
}

CKIROFloatArrayXML::CKIROFloatArrayXML() : CKIRODataXML(KIROMLFloatArrayDataType, FloatArraySize)
{
}

VOID* CKIROFloatArrayXML::InterpCoreData(FLOAT pInterpRatio, VOID* pStartData, VOID* pEndData)
{
    return InterpFloats(pInterpRatio, pStartData, pEndData, FloatArrayCount, FloatArraySize);
}
