#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <ctime>

#include "tests/support/refusal.h"
#include "tools/kirodamage/campaign.h"
#include "tools/kirodamage/damage.h"
#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/storelog.h"
#include "tools/tuningfile/textinput.h"
#include "tools/tuningfile/textoutput.h"

namespace
{

using kirodamage::CampaignResult;
using kirodamage::DamageKind;
using kirodamage::DamageKinds;
using kirodamage::Specimen;
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

/// Whether the header of a file, and the checksum with it, is accepted.
bool GetsPastTheDoor(const std::vector<BYTE>& rBytes)
{
    BinaryFileHeader header;
    std::string      error;
    UINT64           position = 0;
    return BinaryFileFormat::ReadHeader(rBytes.data(), rBytes.size(), position, header, error, nullptr);
}

}  // namespace

TEST(DamageTest, GetsPastTheChecksumAndComesAgainFromItsSeed)
{
    const Specimen             specimen = MakeSpecimen();
    const tuningfile::StoreLog log;
    for (size_t index = 0; index < DamageKinds; ++index)
    {
        const auto kind = static_cast<DamageKind>(index);
        SCOPED_TRACE(NameOf(kind));
        UINT32 changed = 0;
        UINT32 past    = 0;
        for (UINT64 seed = 0; seed < 50; ++seed)
        {
            std::mt19937_64         random(seed);
            std::mt19937_64         again(seed);
            const std::vector<BYTE> bytes = Damage(specimen, kind, random);
            ASSERT_EQ(bytes, Damage(specimen, kind, again));
            changed += (bytes != specimen.bytes) ? 1 : 0;
            past += GetsPastTheDoor(bytes) ? 1 : 0;
            // What a tool makes of it: a text or a refusal.
            (VOID) RefusalOf([&] { (VOID) tuningfile::WriteText(tuningfile::ReadBinary(bytes, "t.bin").tuning); });
        }
        EXPECT_GT(changed, 40U);
        const bool isAboutTheDoor = kind == DamageKind::Length || kind == DamageKind::Mixed || kind == DamageKind::Bits;
        EXPECT_GE(past, isAboutTheDoor ? 20U : 50U);
    }
    EXPECT_TRUE(GetsPastTheDoor(specimen.WithoutDefinitions().bytes));
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

    const struct
    {
        const CHAR*       pWhat;
        kirodamage::Trial trial;
    } cases[] = {
        {"Killed",
         [](UINT64 number)
         {
             (VOID) std::raise((number == 5) ? SIGKILL : 0);
             return TrialResult();
         }},
        {"takes too long",
         [](UINT64 number)
         {
             for (volatile bool isHung = number == 5; isHung;)
             {
             }
             return TrialResult();
         }},
        {"too large",
         [](UINT64 number)
         {
             TrialResult result;
             std::strncpy(result.fault, (number == 5) ? "too large" : "", sizeof(result.fault) - 1);
             return result;
         }},
    };
    for (const auto& rCase : cases)
    {
        SCOPED_TRACE(rCase.pWhat);
        const CampaignResult result = run(rCase.trial);
        ASSERT_TRUE(result.fault.has_value());
        EXPECT_EQ(result.fault->number, 5U);
        EXPECT_NE(result.fault->what.find(rCase.pWhat), std::string::npos) << result.fault->what;
    }
}
