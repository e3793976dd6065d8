#include "tools/tuningcheck/rules/arbitrationranges.h"

#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

using namespace kirodbarbitrationorder;
using namespace kirodbarbitrationrange;

bool IsRangeControl(ArbitrationControl control)
{
    const tuning::EnumWords& rWords = *TuningEnumWordsOf(control);
    for (UINT32 index = 0; index < rWords.pEnum->count; ++index)
    {
        if (rWords.pEnum->pEnumerators[index].value == control)
        {
            return rWords.pEnumerators[index].refers.banks == tuning::RowTerms::BitsOf(BankIDArbitrationRange);
        }
    }
    return false;
}

bool IsSetByHost(ArbitrationControl control)
{
    return control == ArbCtrlFPS || control == ArbCtrlManualGain || control == ArbCtrlManualISO ||
           control == ArbCtrlManualTime;
}

const RangeType* RangesByID::Find(INT32 dataID) const
{
    const RangeType* pFound = nullptr;
    if (m_pRanges != nullptr && dataID != 0)
    {
        for (const DBArbitrationRangePayload& rPayload : ListOf(m_pRanges->data, m_pRanges->dataCount))
        {
            pFound = (rPayload.dataID == dataID) ? &rPayload.value : pFound;  // of equal ones the last applies
        }
    }
    return pFound;
}

}  // namespace tuningcheck
