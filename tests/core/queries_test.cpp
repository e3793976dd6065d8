// Typed queries through the function table.

#include <cstring>

#include "interface/aecalgogetparam.h"
#include "interface/kiromulticam.h"
#include "tests/core/framefixture.h"

namespace
{

constexpr UINT32 Untouched    = 77;
constexpr UINT8  FilledByHost = 0xA5;

class Queries : public Frames
{
protected:
    Queries() : Frames("      kirosync: {}\n")
    {
    }

    KiroResult Ask(AECAlgoGetParamType type, std::vector<AECAlgoGetParamOutput>& rOutputs)
    {
        AECAlgoGetParam query = {type,
                                 {m_inputs.data(), static_cast<UINT32>(m_inputs.size())},
                                 {rOutputs.data(), static_cast<UINT32>(rOutputs.size())}};
        return m_pAlgo->queryMetaData(m_pAlgo, &query);
    }

    std::vector<AECAlgoGetParamInput> m_inputs;
};

template <typename T> AECAlgoGetParamOutput Output(AECAlgoGetParamOutputType type, T& rData)
{
    return {&rData, sizeof(rData), Untouched, type};
}

TEST_F(Queries, AQueryWithoutOutputsOrOfAnotherTypeIsRefused)
{
    EXPECT_EQ(m_pAlgo->queryMetaData(m_pAlgo, nullptr), 4);
    for (INT32 type = AECAlgoGetParamInvalid; type <= AECAlgoGetParamMax; ++type)
    {
        SCOPED_TRACE(type);
        const auto                         asked = static_cast<AECAlgoGetParamType>(type);
        std::vector<AECAlgoGetParamOutput> none;
        m_log.Clear();
        EXPECT_EQ(Ask(asked, none), 4);
        EXPECT_TRUE(m_log.Has(LevelError, "empty output"));

        if (asked != AECAlgoGetParamSnapshotExposure && asked != AECAlgoGetParamEVCapabilities &&
            asked != AECAlgoGetParamPeerInfo)
        {
            UINT64                             data    = Untouched;
            std::vector<AECAlgoGetParamOutput> outputs = {Output(AECAlgoGetParamOutputPeerInfo, data)};
            EXPECT_EQ(Ask(asked, outputs), 2);
            EXPECT_TRUE(m_log.Has(LevelError, "Query not supported yet for type: " + std::to_string(type) + "!"));
            EXPECT_EQ(data, Untouched);
            EXPECT_EQ(outputs[0].sizeOfWrittenOutputData, Untouched);
        }
    }
}

TEST_F(Queries, EVCapabilitiesGoIntoTheFirstOutputWithRoom)
{
    AECAlgoEVCapabilities              first{}, second{};
    std::vector<AECAlgoGetParamOutput> outputs = {{nullptr, 3, Untouched, AECAlgoGetParamOutputEVCapabilities},
                                                  {&second, 2, Untouched, AECAlgoGetParamOutputEVCapabilities},
                                                  {&second, 3, Untouched, AECAlgoGetParamOutputPeerInfo}};
    EXPECT_EQ(Ask(AECAlgoGetParamEVCapabilities, outputs), 4);
    outputs.push_back(Output(AECAlgoGetParamOutputEVCapabilities, first));
    outputs.push_back(Output(AECAlgoGetParamOutputEVCapabilities, second));
    EXPECT_EQ(Ask(AECAlgoGetParamEVCapabilities, outputs), 0);
    EXPECT_EQ(first.minEV, -1);
    EXPECT_EQ(first.maxEV, 1);
    EXPECT_EQ(first.stepsPerEV, 1);
    EXPECT_EQ(outputs[3].sizeOfWrittenOutputData, 3u);
    EXPECT_EQ(second.stepsPerEV, 0);
    EXPECT_EQ(outputs[4].sizeOfWrittenOutputData, Untouched);
}

TEST_F(Queries, PeerInfoIsTheAddressOfTheLiveRecord)
{
    const AECMultiCamInfo*             pInfo   = nullptr;
    std::vector<AECAlgoGetParamOutput> outputs = {{&pInfo, 7, Untouched, AECAlgoGetParamOutputPeerInfo},
                                                  {nullptr, 8, Untouched, AECAlgoGetParamOutputPeerInfo}};
    EXPECT_EQ(Ask(AECAlgoGetParamPeerInfo, outputs), 0);
    EXPECT_EQ(pInfo, nullptr);
    EXPECT_EQ(outputs[0].sizeOfWrittenOutputData, Untouched);
    EXPECT_EQ(outputs[1].sizeOfWrittenOutputData, Untouched);

    outputs.push_back(Output(AECAlgoGetParamOutputPeerInfo, pInfo));
    EXPECT_EQ(Ask(AECAlgoGetParamPeerInfo, outputs), 0);
    EXPECT_EQ(outputs[2].sizeOfWrittenOutputData, 8u);
    ASSERT_NE(pInfo, nullptr);
    EXPECT_EQ(pInfo->statsFrameId, 0u);
    RunStartup();
    RunFrame(50.0f);
    EXPECT_EQ(pInfo->statsFrameId, 1u);
    EXPECT_EQ(pInfo->exposureInfo.origExp[AECAlgoExposureSafe], static_cast<FLOAT>(Safe()));
}

/// A query of a snapshot's exposure with all that it needs; tests break one part each.
struct SnapshotQuery
{
    SnapshotQuery()
    {
        std::memset(static_cast<VOID*>(&control), FilledByHost, sizeof(control));
        std::memset(static_cast<VOID*>(exposures), FilledByHost, sizeof(exposures));
        std::memset(static_cast<VOID*>(&LEDs), FilledByHost, sizeof(LEDs));
        std::memset(static_cast<VOID*>(&APEX), FilledByHost, sizeof(APEX));
        std::memset(static_cast<VOID*>(&additional), FilledByHost, sizeof(additional));
    }

    AECAlgoFrameControl   control;
    AECAlgoExposureInfo   exposures[4];
    AECAlgoExposureSet    set = {exposures, 3, sizeof(AECAlgoExposureData), Untouched, Untouched};
    AECAlgoLEDCurrents    LEDs;
    AECAlgoAPEXData       APEX;
    AECAlgoAdditionalInfo additional;

    std::vector<AECAlgoGetParamOutput> outputs = {
        Output(AECAlgoGetParamOutputFrameControl, control), Output(AECAlgoGetParamOutputExposureSets, set),
        Output(AECAlgoGetParamOutputLEDCurrents, LEDs), Output(AECAlgoGetParamOutputEXIFApex, APEX),
        Output(AECAlgoGetParamOutputAdditionalInfo, additional)};

    bool IsUntouched() const
    {
        return LEDs.LED1Current == 0xA5A5A5A5u && outputs[0].sizeOfWrittenOutputData == Untouched;
    }
};

VOID ExpectCleared(const SnapshotQuery& rQuery)
{
    EXPECT_EQ(rQuery.control.ISOValue == 0 || rQuery.control.ISOValue == 100, true);
    EXPECT_EQ(rQuery.control.IRLedIntensity, 0.0f) << "the last member";
    EXPECT_EQ(rQuery.exposures[2].exposureData.fnumber, 0.0f);
    EXPECT_NE(rQuery.exposures[3].exposureData.exposureTime, 0u) << "beyond the count";
    EXPECT_EQ(rQuery.set.exposureInfoOutputCount, Untouched);
    EXPECT_EQ(rQuery.LEDs.LED1Current, 0u);
    EXPECT_EQ(rQuery.LEDs.LED2Current, 0xA5A5A5A5u) << "the host's";
    EXPECT_EQ(rQuery.APEX.exposureValue, 0.0f);
    EXPECT_EQ(rQuery.additional.sensorControl.registerData, 0u);
    for (const AECAlgoGetParamOutput& rOutput : rQuery.outputs)
    {
        EXPECT_EQ(rOutput.sizeOfWrittenOutputData, 0u) << rOutput.outputType;
    }
}

TEST_F(Queries, ASnapshotIsAnsweredWithClearedRecordsAndNeutralGains)
{
    RunStartup();
    RunFrame(50.0f);
    m_log.Clear();
    AECAlgoSnapshotConfig config = {KIROCoreSnapshotType::Normal};
    // Without a fitting input the records are cleared only.
    m_inputs = {{AECAlgoGetParamInputInvalid, &config, sizeof(config)},
                {AECAlgoGetParamInputSnapshotType, &config, sizeof(config) - 1}};
    SnapshotQuery cleared;
    EXPECT_EQ(Ask(AECAlgoGetParamSnapshotExposure, cleared.outputs), 0);
    ExpectCleared(cleared);
    EXPECT_EQ(cleared.control.ISOValue, 0u);
    EXPECT_EQ(cleared.control.predictiveGain, 0.0f);
    EXPECT_EQ(cleared.control.stretchControl.scaling, 0.0f);

    m_inputs.push_back({AECAlgoGetParamInputSnapshotType, &config, sizeof(config)});
    SnapshotQuery answered;
    EXPECT_EQ(Ask(AECAlgoGetParamSnapshotExposure, answered.outputs), 0);
    ExpectCleared(answered);
    EXPECT_EQ(answered.control.luxIndex, 0.0f);
    EXPECT_EQ(answered.control.ISOValue, 100u);
    EXPECT_EQ(answered.control.predictiveGain, 1.0f);
    EXPECT_EQ(answered.control.digitalGainForSimulation, 1.0f);
    EXPECT_EQ(answered.control.stretchControl.scaling, 1.0f) << "the extension's";
    EXPECT_EQ(m_log.CountLevel(LevelError), 0u);
}

TEST_F(Queries, ASnapshotQueryWithAMissingPartIsRefusedUntouched)
{
    for (size_t kind = 0; kind < 5; ++kind)
    {
        SCOPED_TRACE(kind);
        SnapshotQuery small, null, other;
        --small.outputs[kind].sizeOfOutputData;
        null.outputs[kind].pOutputData = nullptr;
        other.outputs[kind].outputType = AECAlgoGetParamOutputEVCapabilities;
        for (SnapshotQuery* pQuery : {&small, &null, &other})
        {
            m_log.Clear();
            EXPECT_EQ(Ask(AECAlgoGetParamSnapshotExposure, pQuery->outputs), 4);
            EXPECT_TRUE(m_log.HasPart(LevelError, "Invalid param "));
            EXPECT_TRUE(pQuery->IsUntouched());
        }
    }
    SnapshotQuery few, none, narrow;
    few.set.exposureInfoCount   = 2;
    none.set.pExposureInfo      = nullptr;
    narrow.set.exposureInfoSize = sizeof(AECAlgoExposureData) - 1;
    for (SnapshotQuery* pQuery : {&few, &none, &narrow})
    {
        EXPECT_EQ(Ask(AECAlgoGetParamSnapshotExposure, pQuery->outputs), 4);
        EXPECT_TRUE(pQuery->IsUntouched());
    }
}

TEST_F(Queries, AnotherNumberOfOutputsIsLoggedButKindsDecide)
{
    SnapshotQuery four;
    four.outputs.pop_back();
    EXPECT_EQ(Ask(AECAlgoGetParamSnapshotExposure, four.outputs), 4);
    EXPECT_TRUE(m_log.Has(LevelError, "warning: output count: expected 5 received 4 needs to be addressed"));

    SnapshotQuery six;
    UINT64        unused = 0;
    six.outputs.insert(six.outputs.begin(), Output(AECAlgoGetParamOutputPeerInfo, unused));
    EXPECT_EQ(Ask(AECAlgoGetParamSnapshotExposure, six.outputs), 0);
    EXPECT_TRUE(m_log.Has(LevelError, "warning: output count: expected 5 received 6 needs to be addressed"));
    EXPECT_EQ(six.LEDs.LED1Current, 0u);
    EXPECT_EQ(six.outputs[0].sizeOfWrittenOutputData, Untouched);
}

}  // namespace
