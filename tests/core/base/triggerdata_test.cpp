#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

#include "core/base/ckirotriggerclasses.h"
#include "platform/tavodesk.h"
#include "schema/kirodbconvbase.h"
#include "schema/kirodbconvsettle.h"
#include "schema/kirodbconvstretch.h"
#include "schema/kiroglobalelements.h"
#include "schema/kiroscenechangedetector.h"
#include "schema/kirostartup.h"
#include "tests/support/statslogcapture.h"

using kirodbconvsettle::BaseSettleType;
using kiroscenechangedetector::SCThresCoreDataType;
using kirostartup::LightDataTriggerDataType;

namespace
{

/// A zone of the last level.
template <typename Core> struct Leaf
{
    StartEnd range;
    Core     core;
};

typedef Leaf<FLOAT>                       FloatLeaf;
typedef ThreeLevelTriggerSystemLevel1Type Level1;
typedef ThreeLevelTriggerSystemLevel2Type Level2;

VOID SetTree(CKIRODataXML& rData, KIROMLDataType type, VOID* pZones, INT zoneCount, INT levels, INT coreSize)
{
    AECTriggerXMLData data{pZones, {levels, coreSize}, zoneCount};
    rData.SetData(&data, type);
}

/// One level of floats.
class FloatTree
{
public:
    explicit FloatTree(std::vector<FloatLeaf> zones) : m_zones(std::move(zones))
    {
        SetTree(m_data, KIROMLOneFloatDataType, m_zones.data(), static_cast<INT>(m_zones.size()), 1, sizeof(FLOAT));
    }

    FLOAT At(FLOAT trigger)
    {
        return *static_cast<FLOAT*>(m_data.GetData(trigger, 0.0f, 0.0f));
    }

    bool IsZoneItself(FLOAT trigger, size_t zone)
    {
        return m_data.GetData(trigger, 0.0f, 0.0f) == &m_zones[zone].core;
    }

private:
    StatsLogCapture        m_log;
    std::vector<FloatLeaf> m_zones;
    CKIROOneFloatXML       m_data;
};

TEST(TriggerData, ZonesAreFlatAndGapsAreInterpolated)
{
    FloatTree tree({{{10, 20}, 1.0f}, {{30, 40}, 3.0f}});
    EXPECT_TRUE(tree.IsZoneItself(15, 0));
    EXPECT_EQ(tree.At(25), 2.0f);
    EXPECT_EQ(tree.At(27.5f), 2.5f);
    EXPECT_EQ(tree.At(22.5f), 1.5f);
    EXPECT_TRUE(tree.IsZoneItself(5, 0));
    EXPECT_TRUE(tree.IsZoneItself(35, 1));
    EXPECT_TRUE(tree.IsZoneItself(1e30f, 1));
    EXPECT_TRUE(tree.IsZoneItself(std::numeric_limits<FLOAT>::quiet_NaN(), 0)) << "no number counts as 0";
    EXPECT_TRUE(tree.IsZoneItself(-std::numeric_limits<FLOAT>::infinity(), 0));

    FloatTree rounded({{{0, 10}, 1.1f}, {{20, 30}, 4.1f}});
    EXPECT_EQ(rounded.At(12), 0x1.b33332p+0f) << "with one rounding; unfused it would be 0x1.b33334p+0";
}

TEST(TriggerData, BorderBelongsToTheSideThatTheTriggerComesFrom)
{
    FloatTree tree({{{10, 20}, 1.0f}, {{20, 30}, 5.0f}, {{40, 50}, 7.0f}});
    EXPECT_EQ(tree.At(20), 5.0f) << "upward: out of the zone that ends, into the one that starts";
    EXPECT_EQ(tree.At(25), 5.0f);
    EXPECT_EQ(tree.At(20), 1.0f) << "downward: the other way about";
    EXPECT_EQ(tree.At(20), 5.0f) << "a trigger that stays counts as rising";
    EXPECT_EQ(tree.At(45), 7.0f);
    EXPECT_FALSE(tree.IsZoneItself(40, 2)) << "downward onto a start: the far end of the gap";
    EXPECT_TRUE(tree.IsZoneItself(40, 2)) << "and now inside";
    EXPECT_TRUE(tree.IsZoneItself(30, 1));
    EXPECT_TRUE(tree.IsZoneItself(50, 2));
    EXPECT_TRUE(tree.IsZoneItself(10, 0));
}

TEST(TriggerData, SearchResumesInsideAGap)
{
    FloatTree   tree({{{0, 10}, 1.0f}, {{20, 30}, 2.0f}, {{40, 50}, 3.0f}});
    const FLOAT walk[][2] = {{45, 3.0f}, {35, 2.5f},     {32.5f, 2.25f}, {35, 2.5f},     {37.5f, 2.75f}, {35, 2.5f},
                             {15, 1.5f}, {12.5f, 1.25f}, {15, 1.5f},     {37.5f, 2.75f}, {5, 1.0f},      {15, 1.5f},
                             {45, 3.0f}, {-9, 1.0f},     {99, 3.0f},     {25, 2.0f},     {35, 2.5f}};
    for (const auto& rStep : walk)
    {
        EXPECT_EQ(tree.At(rStep[0]), rStep[1]) << rStep[0];
    }
}

TEST(TriggerData, ThreeLevelsInterpolateInEachDirection)
{
    StatsLogCapture log;
    // Zones end at 0 and start at 1 on each level; the value of a leaf is 1, 10 and 100 for the upper zone of the
    // first, second and third level, so the tree is linear between them.
    TriggerSystemEndLevelType leaves[2][2][2];
    Level2                    middle[2][2];
    Level1                    top[2];
    const StartEnd            ranges[2] = {{-1, 0}, {1, 2}};
    for (INT first = 0; first < 2; ++first)
    {
        for (INT second = 0; second < 2; ++second)
        {
            for (INT third = 0; third < 2; ++third)
            {
                leaves[first][second][third] = {ranges[third], first + 10.0f * second + 100.0f * third};
            }
            middle[first][second] = {ranges[second], 2, 0, leaves[first][second]};
        }
        top[first] = {ranges[first], 2, 0, middle[first]};
    }
    CKIRODataXML data(KIROMLBaseDataType);
    SetTree(data, KIROMLBaseDataType, top, 2, 3, sizeof(FLOAT));
    const auto at = [&](FLOAT first, FLOAT second, FLOAT third)
    { return *static_cast<FLOAT*>(data.GetData(first, second, third)); };

    EXPECT_EQ(at(0.25f, 0.5f, 0.75f), 80.25f);
    EXPECT_EQ(at(0.75f, 0.25f, 0.5f), 53.25f);
    EXPECT_EQ(at(0.5f, 0.75f, 0.25f), 33.0f) << "downward on the first level";
    EXPECT_EQ(at(1.5f, 0.5f, 1.5f), 106.0f);
    EXPECT_EQ(data.GetData(-5, 9, -5), &leaves[0][1][0].triggerData);

    // Nothing is allocated on the way.
    const UINT64 allocations = TavoDesk::GetAllocationCounters().allocations;
    at(0.5f, 0.5f, 0.5f);
    EXPECT_EQ(TavoDesk::GetAllocationCounters().allocations, allocations);
    EXPECT_TRUE(log.Lines().empty());
}

TEST(TriggerData, LowerLevelsHaveNoMemory)
{
    TriggerSystemEndLevelType leaves[] = {{{10, 20}, 1.0f}, {{20, 30}, 5.0f}};
    Level2                    top[]    = {{{0, 10}, 2, 0, leaves}};
    CKIROOneFloatXML          data;
    SetTree(data, KIROMLOneFloatDataType, top, 1, 2, sizeof(FLOAT));
    EXPECT_EQ(*static_cast<FLOAT*>(data.GetData(99, 25, 0)), 5.0f) << "one zone serves any trigger";
    EXPECT_EQ(*static_cast<FLOAT*>(data.GetData(99, 20, 0)), 5.0f) << "falling, and still searched upward";
}

/// Evaluates two zones 0-10 and 20-30 at a trigger between them.
template <typename Data, typename Core>
Core Between(KIROMLDataType type, const Core& rLow, const Core& rHigh, FLOAT trigger)
{
    StatsLogCapture log;
    Leaf<Core>      zones[] = {{{0, 10}, rLow}, {{20, 30}, rHigh}};
    Data            data;
    SetTree(data, type, zones, 2, 1, sizeof(Core));
    const Core result = *static_cast<const Core*>(data.GetData(trigger, 0, 0));
    EXPECT_TRUE(log.Lines().empty());
    return result;
}

template <typename Data, size_t Count> VOID ExpectAllFloatsInterpolated(KIROMLDataType type)
{
    std::array<FLOAT, Count> low;
    std::array<FLOAT, Count> high;
    std::array<FLOAT, Count> expected;
    for (size_t index = 0; index < Count; ++index)
    {
        low[index]      = static_cast<FLOAT>(index);
        high[index]     = static_cast<FLOAT>(index * 5 + 4);
        expected[index] = static_cast<FLOAT>(index * 2 + 1);  // a quarter of the way
    }
    EXPECT_EQ((Between<Data>(type, low, high, 12.5f)), expected) << "type " << type;
}

TEST(TriggerData, EveryFloatOfARecordIsInterpolated)
{
    ExpectAllFloatsInterpolated<CKIROConvBase, 3>(KIROMLConvBaseDataType);
    ExpectAllFloatsInterpolated<CKIROConvStretch, 4>(KIROMLConvStretchDataType);
    ExpectAllFloatsInterpolated<CKIROTwoFloatsXML, 2>(KIROMLTwoFloatsDataType);
    ExpectAllFloatsInterpolated<CKIROOneFloatXML, 1>(KIROMLOneFloatDataType);
    ExpectAllFloatsInterpolated<CKIROFloatArrayXML, 10>(KIROMLFloatArrayDataType);
}

TEST(TriggerData, CountsAreRoundedAsEachRecordSays)
{
    const BaseSettleType settle =
        Between<CKIROConvSettle>(KIROMLConvSettleType, BaseSettleType{4, 1.0f}, BaseSettleType{5, 2.0f}, 11);
    EXPECT_EQ(settle.settleCountTh, 5u) << "4.1 frames";
    EXPECT_FLOAT_EQ(settle.settleExpTh, 1.1f);

    const SCThresCoreDataType threshold =
        Between<CKIROSCD>(KIROMLSCDDataType, SCThresCoreDataType{1.0f, 4}, SCThresCoreDataType{2.0f, 5}, 19);
    EXPECT_EQ(threshold.countThres, 4u) << "4.9 frames";
    EXPECT_FLOAT_EQ(threshold.valueThres, 1.9f);

    const LightDataTriggerDataType light =
        Between<CKIROStartUpExtSens>(KIROMLStartUpExtSensType, LightDataTriggerDataType{{1, 2}, {16777217, 1, ~0ULL}},
                                     LightDataTriggerDataType{{3, 6}, {16777217, 4, ~0ULL}}, 15);
    EXPECT_EQ(light.exposureZone.start, 2.0f);
    EXPECT_EQ(light.exposureZone.end, 4.0f);
    EXPECT_EQ(light.initialExposure[0], 16777216u) << "in single precision";
    EXPECT_EQ(light.initialExposure[1], 2u) << "2.5 truncated";
    EXPECT_EQ(light.initialExposure[2], ~0ULL) << "2 to the power of 64 saturates";
}

/// Two levels of counts {1, 2} and {2, 3}, evaluated in the middle of both gaps.
template <typename Data, typename Core>
Core MiddleOfTwoLevels(KIROMLDataType type, const Core& rOne, const Core& rTwo, const Core& rThree)
{
    Leaf<Core>        lower[] = {{{0, 10}, rOne}, {{20, 30}, rTwo}};
    Leaf<Core>        upper[] = {{{0, 10}, rTwo}, {{20, 30}, rThree}};
    AECTriggerNodeXML top[]   = {{{0, 10}, 2, 0, lower}, {{20, 30}, 2, 0, upper}};
    Data              data;
    SetTree(data, type, top, 2, 2, sizeof(Core));
    return *static_cast<const Core*>(data.GetData(15, 15, 0));
}

TEST(TriggerData, CountsAreRoundedOnEachLevel)
{
    const auto settle =
        MiddleOfTwoLevels<CKIROConvSettle, BaseSettleType>(KIROMLConvSettleType, {1, 0}, {2, 0}, {3, 0});
    EXPECT_EQ(settle.settleCountTh, 3u) << "up: 1.5 to 2 and 2.5 to 3, then 2.5 to 3";
    const auto threshold = MiddleOfTwoLevels<CKIROSCD, SCThresCoreDataType>(KIROMLSCDDataType, {0, 1}, {0, 2}, {0, 3});
    EXPECT_EQ(threshold.countThres, 1u) << "down: 1.5 to 1 and 2.5 to 2, then 1.5 to 1";
}

TEST(TriggerData, RefusesWhatItCannotRead)
{
    StatsLogCapture  log;
    FloatLeaf        zones[] = {{{0, 10}, 1.0f}, {{20, 30}, 3.0f}};
    CKIROOneFloatXML data;
    const auto       at = [&](FLOAT trigger) { return *static_cast<FLOAT*>(data.GetData(trigger, 0, 0)); };

    EXPECT_EQ(at(5), 0.0f);
    EXPECT_TRUE(log.Has(LevelError, "m_pXMLNodeData is NULL. Verify set data"));
    SetTree(data, KIROMLOneFloatDataType, zones, 2, 1, sizeof(FLOAT));
    SetTree(data, KIROMLSCDDataType, nullptr, 0, 1, sizeof(FLOAT));
    EXPECT_TRUE(log.Has(LevelError, "expected 6 received 5"));
    data.SetData(nullptr, KIROMLOneFloatDataType);
    EXPECT_EQ(at(15), 2.0f) << "the tree stays";

    SetTree(data, KIROMLOneFloatDataType, zones, 2, 4, sizeof(FLOAT));
    EXPECT_EQ(at(15), 0.0f) << "four levels";
    SetTree(data, KIROMLOneFloatDataType, zones, 2, 1, 2);
    EXPECT_EQ(at(15), 0.0f) << "records smaller than a float";
    SetTree(data, KIROMLOneFloatDataType, zones, 0, 1, sizeof(FLOAT));
    EXPECT_EQ(at(15), 0.0f) << "no zones";

    Level2 top[] = {{{0, 10}, 2, 0, reinterpret_cast<TriggerSystemEndLevelType*>(zones)}, {{20, 30}, 7, 0, nullptr}};
    SetTree(data, KIROMLOneFloatDataType, top, 2, 2, sizeof(FLOAT));
    EXPECT_EQ(*static_cast<FLOAT*>(data.GetData(15, 25, 0)), 3.0f) << "the neighbour that can be read";
    EXPECT_TRUE(log.HasPart(LevelError, "Failed! pStartData = "));
    EXPECT_EQ(*static_cast<FLOAT*>(data.GetData(25, 25, 0)), 0.0f);
}

TEST(TriggerData, GrownCoreRecordsStayInsideTheFirstBuffer)
{
    StatsLogCapture              log;
    Leaf<FLOAT>                  small[] = {{{0, 10}, 1.0f}, {{20, 30}, 3.0f}};
    Leaf<std::array<FLOAT, 100>> large[] = {{{0, 10}, {4.0f}}, {{20, 30}, {5.0f}}};
    CKIRODataXML                 data(KIROMLBaseDataType);
    SetTree(data, KIROMLBaseDataType, small, 2, 1, sizeof(FLOAT));
    EXPECT_EQ(*static_cast<FLOAT*>(data.GetData(15, 0, 0)), 2.0f);
    SetTree(data, KIROMLBaseDataType, large, 2, 1, sizeof(large[0].core));
    EXPECT_EQ(*static_cast<FLOAT*>(data.GetData(15, 0, 0)), 4.0f) << "the zone before the gap";
}

TEST(TriggerData, InstancesAreGivenBackWhole)
{
    StatsLogCapture   log;
    CKIRODataXML*     pData    = nullptr;
    CKIROConvStretch* pStretch = nullptr;
    ASSERT_EQ(CKIRODataXML::CreateInstance(pData, KIROMLBaseDataType), 0);
    EXPECT_TRUE(log.Has(LevelError, "CKIRODataXML::CreateInstance result = 0"));
    ASSERT_EQ(CKIROConvStretch::CreateInstance(pStretch), 0);
    pData->DestroyInstance();
    pStretch->DestroyInstance();
}

}  // namespace
