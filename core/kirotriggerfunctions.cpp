// Trigger data objects behind plain functions, for the host.

#include "core/base/ckirotriggerclasses.h"
#include "core/ckirocorefactory.h"

namespace
{

TavoPtr<CKIRODataXML> CreateDataObject(KIROMLDataType xmlType)
{
    switch (xmlType)
    {
    case KIROMLConvBaseDataType:
        return TavoNew<CKIROConvBase>();
    case KIROMLConvStretchDataType:
        return TavoNew<CKIROConvStretch>();
    case KIROMLConvSettleType:
        return TavoNew<CKIROConvSettle>();
    case KIROMLTwoFloatsDataType:
        return TavoNew<CKIROTwoFloatsXML>();
    case KIROMLSCDDataType:
        return TavoNew<CKIROSCD>();
    case KIROMLOneFloatDataType:
        return TavoNew<CKIROOneFloatXML>();
    case KIROMLStartUpExtSensType:
        return TavoNew<CKIROStartUpExtSens>();
    case KIROMLFloatArrayDataType:
        return TavoNew<CKIROFloatArrayXML>();
    default:
        return TavoNew<CKIRODataXML>(KIROMLBaseDataType);
    }
}

}  // namespace

CKIROTriggerDataXML* KIROCreateTriggerDataInst(IKIROCoreAlgo*, KIROMLDataType xmlType)
{
    TavoPtr<CKIROTriggerDataXML> pObj = TavoNew<CKIROTriggerDataXML>();
    if (pObj == nullptr)
    {
        return nullptr;
    }
    pObj->SetData         = KIROTriggerSetData;
    pObj->GetData         = KIROTriggerGetData;
    pObj->DestoryInstance = KIROTriggerDestory;
    pObj->pData           = CreateDataObject(xmlType).release();
    return pObj.release();
}

VOID KIROTriggerSetData(CKIROTriggerDataXML* pObj, VOID* pData, KIROMLDataType xmlDataType)
{
    if (pObj != nullptr && pObj->pData != nullptr)
    {
        pObj->pData->SetData(pData, xmlDataType);
    }
}

VOID* KIROTriggerGetData(CKIROTriggerDataXML* pObj, FLOAT pTrigger1D, FLOAT pTrigger2D, FLOAT pTrigger3D)
{
    if (pObj == nullptr || pObj->pData == nullptr)
    {
        return nullptr;
    }
    return pObj->pData->GetData(pTrigger1D, pTrigger2D, pTrigger3D);
}

VOID KIROTriggerDestory(CKIROTriggerDataXML* pObj)
{
    if (pObj != nullptr)
    {
        // The data object goes first.
        TavoPtr<CKIROTriggerDataXML> pOwned(pObj);
        TavoPtr<CKIRODataXML>        pData(pObj->pData);
    }
}

CKIRODataXML* LIBCreateTriggerData(IKIROCoreAlgo* pAlgo)
{
    return (pAlgo == nullptr) ? nullptr : TavoNew<CKIRODataXML>(KIROMLBaseDataType).release();
}
