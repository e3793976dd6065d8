/// @file
/// Makes one 16 x 16 table of metering weights per frame: a base table times a tuned weight, which depends on the lux
/// index and, region by region, on a statistics channel or on another table.
#pragma once

#include "core/base/ckirotrigger.h"
#include "core/ikirocontextmanager.h"
#include "schema/kiromtrtablegen.h"

class TableGenerator
{
public:
    using Tuning = kiromtrtablegen::TableGeneratorType;

    TableGenerator();

    /// Must precede Run. @param pTuning stays the tuning's; it and the context outlive the generator
    VOID SetGeneratorTuning(const Tuning* pTuning, IKIROContextManager& rContextManager);

    /// One frame. The bank keeps a pointer to the table: it is valid until the generator is destroyed.
    /// @return 0; 1 without a table for an unknown method, 1 with the table as it stood for a channel that is not there
    KiroResult Run();

    /// Loads a tree of lux index and value into an interpolator of KIROMLBaseDataType.
    static VOID LoadWeights(const kiromtrtablegen::DataDrivenTriggerSystemType& rTree, CKIRODataXML& rInterpolator);

private:
    KiroResult RunStatsDrivenMethod();
    KiroResult RunExternalDataDrivenMethod();
    VOID       StoreEqualWeights();
    VOID       PublishWeightAverage();

    /// Fills the table: base weights times what the tuning makes of values in 8 bits, or of external weights.
    /// @param nextValue is called for each cell in order
    template <typename Next> VOID WeighCells(const DBMeter2DWeightPayload& rBase, Next nextValue);

    CKIROBankManager& Banks() const
    {
        return *m_pContextManager->m_pBankManager;
    }

    IKIROContextManager*   m_pContextManager;
    DBMeter2DWeightPayload m_meteringTableOut;
    const Tuning*          m_pTuning;
    CKIRODataXML           m_dataDrivenTriggerSystem;  ///< weight by lux index and value
};
