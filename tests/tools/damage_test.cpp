#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <ctime>

#include "parameters/parametersetmanager.h"
#include "platform/tavodesk.h"
#include "tests/support/allforms.h"
#include "tests/support/refusal.h"
#include "tools/hostilefiles/damage.h"
#include "tools/kirodamage/campaign.h"
#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/storelog.h"
#include "tools/tuningfile/textinput.h"
#include "tools/tuningfile/textoutput.h"

namespace
{

using hostilefiles::DamageKind;
using hostilefiles::DamageKinds;
using hostilefiles::Specimen;
using kirodamage::CampaignResult;
using kirodamage::TrialResult;

Specimen MakeSpecimen()
{
    const tuningfile::Tuning tuning = tuningfile::ParseText(R"(
modes:
  Default:
    modules:
      kirodb2dmeterweight:
        data: [{dataID: 1, description: A, weights: {fill: 1.0}}, {dataID: 2, description: B}]
    children:
      Usecase.Video: {modules: {}}
      Usecase.Snapshot: {modules: {}}
)",
                                                            "test.yaml");
    return Specimen("test", tuningfile::WriteBinary(tuning, tuningfile::NewestVersion));
}

/// Three modes with a record of all forms.
Specimen MakeSpecimenOfAllForms()
{
    const allforms::Everything original;
    tuningfile::Tuning         tuning =
        tuningfile::ParseText("modes: {Default: {children: {Sensor.0: {}, Sensor.1: {}}}}", "t");
    for (tuningfile::Mode& rMode : tuning.tables[0].modes)
    {
        rMode.modules.push_back({&allforms::Module, &original.record});
    }
    return Specimen("all forms", tuningfile::WriteBinary(tuning, tuningfile::NewestVersion));
}

/// Loads a file with records of all forms, or is refused. @return allocations that are left
INT64 LoadAllForms(const std::vector<BYTE>& rBytes)
{
    const auto live = []
    {
        const TavoDesk::AllocationCounters counters = TavoDesk::GetAllocationCounters();
        return static_cast<INT64>(counters.allocations - counters.releases);
    };
    const INT64                  before = live();
    ParameterSetManager::Options options;
    options.fileMode = false;
    {
        ParameterSetManager store(nullptr, {&allforms::Module, 1}, options);
        (VOID) store.LoadBinaryParameters(rBytes.data(), rBytes.size());
    }
    return live() - before;
}

/// Whether the header of a file, and the checksum with it, is accepted.
bool GetsPastTheDoor(const std::vector<BYTE>& rBytes)
{
    BinaryFileHeader header;
    std::string      error;
    UINT64           position = 0;
    return BinaryFileFormat::ReadHeader(rBytes.data(), rBytes.size(), position, header, error, nullptr);
}

}  // namespace

TEST(DamageTest, GetsPastTheChecksumComesAgainFromItsSeedAndDoesNoHarm)
{
    const Specimen             specimens[] = {MakeSpecimen(), MakeSpecimenOfAllForms()};
    const tuningfile::StoreLog log;
    for (size_t index = 0; index < DamageKinds; ++index)
    {
        const auto kind = static_cast<DamageKind>(index);
        SCOPED_TRACE(NameOf(kind));
        UINT32 changed = 0;
        UINT32 past    = 0;
        for (UINT64 seed = 0; seed < 200; ++seed)
        {
            const Specimen&         specimen = specimens[seed % 2];
            std::mt19937_64         random(seed);
            std::mt19937_64         again(seed);
            const std::vector<BYTE> bytes = Damage(specimen, kind, random);
            ASSERT_EQ(bytes, Damage(specimen, kind, again));
            changed += (bytes != specimen.bytes) ? 1 : 0;
            past += GetsPastTheDoor(bytes) ? 1 : 0;
            (VOID) RefusalOf([&] { (VOID) tuningfile::WriteText(tuningfile::ReadBinary(bytes, "t.bin").tuning); });
            EXPECT_EQ(LoadAllForms(bytes), 0) << seed;
        }
        EXPECT_GT(changed, 160U);
        const bool isAboutTheDoor = kind == DamageKind::Length || kind == DamageKind::Mixed || kind == DamageKind::Bits;
        EXPECT_GE(past, isAboutTheDoor ? 80U : 200U);
    }
    EXPECT_TRUE(GetsPastTheDoor(specimens[0].WithoutDefinitions().bytes));
}

TEST(DamageTest, CampaignNamesTheTrialThatCrashesHangsOrComplains)
{
    const auto run = [](const kirodamage::Trial& rTrial) { return kirodamage::RunCampaign({9, 2, 1}, rTrial); };

    const CampaignResult clean = run(
        [](UINT64 number)
        {
            TrialResult result;
            result.kind     = 2;
            result.isUsable = number % 3 == 0;
            result.withheld = number;
            result.largest  = 100 - number;
            return result;
        });
    EXPECT_FALSE(clean.fault.has_value());
    EXPECT_EQ(clean.tally.kinds[2].usable, 3U);
    EXPECT_EQ(clean.tally.kinds[2].refused, 6U);
    EXPECT_EQ(clean.tally.kinds[2].withheld, 36U);
    EXPECT_EQ(clean.tally.largest.value, 100U);

    for (const CHAR* pWhat : {"Killed", "takes too long", "too large"})
    {
        SCOPED_TRACE(pWhat);
        const CampaignResult result = run(
            [kind = std::string(pWhat)](UINT64 number)
            {
                TrialResult trial;
                if (number == 5 && kind == "Killed")
                {
                    (VOID) std::raise(SIGKILL);
                }
                for (volatile bool isHung = number == 5 && kind == "takes too long"; isHung;)
                {
                }
                std::strncpy(trial.fault, (number == 5) ? kind.c_str() : "", sizeof(trial.fault) - 1);
                return trial;
            });
        ASSERT_TRUE(result.fault.has_value());
        EXPECT_EQ(result.fault->number, 5U);
        EXPECT_NE(result.fault->what.find(pWhat), std::string::npos) << result.fault->what;
    }
}
