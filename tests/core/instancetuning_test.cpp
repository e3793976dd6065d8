// Records that an instance remembers: never a stale one, however the host or a tool changes the tuning.

#include "core/base/instancetuning.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "core/base/tuningaccess.h"
#include "schema/kiroconvergence.h"
#include "schema/kirosync.h"
#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/textinput.h"

namespace
{

/// A tuning in memory whose unit step is one in general and another one for video.
std::unique_ptr<TuningSetManager> Store(FLOAT step, FLOAT videoStep, const std::string& rFurther = "")
{
    const std::string text =
        "tuning: {createdBy: kirotune, binaryTag: records}\n"
        "modes:\n"
        "  Default:\n"
        "    modules: {kiroconvergence: {unitStepSize: " +
        std::to_string(step) + "}" + rFurther +
        "}\n"
        "    children: {Sensor.0: {children: {Usecase.Video: {modules: {kiroconvergence: {unitStepSize: " +
        std::to_string(videoStep) + "}}}}}}\n";
    const std::vector<BYTE> bytes =
        tuningfile::WriteBinary(tuningfile::ParseText(text, "records.yaml"), tuningfile::NewestVersion);
    auto pStore = std::make_unique<TuningSetManager>("records");
    pStore->SetLiveTuningAutostart(false);
    EXPECT_TRUE(pStore->LoadBinaryParameters(bytes.data(), bytes.size())) << pStore->GetErrorText();
    return pStore;
}

class InstanceTuningTest : public testing::Test
{
protected:
    InstanceTuningTest()
    {
        for (UINT32 level = 0; level < 7; ++level)
        {
            m_path[level] = {static_cast<ModeType>(level), {0}};
        }
    }

    VOID Set(TuningSetManager& rStore)
    {
        m_tuning = StatsTuningData{&rStore, m_path, 7};
    }

    /// As often as it takes to be remembered, and once more.
    FLOAT Step()
    {
        FLOAT step = 0.0f;
        for (int time = 0; time < 3; ++time)
        {
            step = tuningaccess::Require_kiroconvergence(m_tuning).unitStepSize;
        }
        return step;
    }

    VOID SelectVideo(bool isVideo)
    {
        m_path[static_cast<UINT32>(ModeType::Usecase)].subMode.usecase =
            isVideo ? ModeUsecaseSubModeType::Video : ModeUsecaseSubModeType{};
    }

    TuningMode     m_path[7] = {};
    InstanceTuning m_tuning;
};

}  // namespace

TEST_F(InstanceTuningTest, APathThatTheHostChangesInPlaceIsFollowedAtOnce)
{
    const auto pStore = Store(0.25f, 0.5f);
    Set(*pStore);
    for (int round = 0; round < 3; ++round)
    {
        SelectVideo(false);
        EXPECT_FLOAT_EQ(Step(), 0.25f);
        SelectVideo(true);
        EXPECT_FLOAT_EQ(tuningaccess::Require_kiroconvergence(m_tuning).unitStepSize, 0.5f);
        EXPECT_FLOAT_EQ(Step(), 0.5f);
    }
}

TEST_F(InstanceTuningTest, EditsUpdatesAndOtherStoresAreSeenAtTheNextUse)
{
    const auto pStore = Store(0.25f, 0.5f);
    Set(*pStore);
    EXPECT_FLOAT_EQ(Step(), 0.25f);
    ASSERT_TRUE(pStore->SetValue(0, m_path, 1, "kiroconvergence", "unitStepSize", "0.75"));
    EXPECT_FLOAT_EQ(tuningaccess::Require_kiroconvergence(m_tuning).unitStepSize, 0.75f);

    EXPECT_EQ(tuningaccess::Get_kirosync(m_tuning), nullptr);
    ASSERT_TRUE(pStore->UpdateParameters(Store(0.125f, 0.5f, ", kirosync: {}")));
    EXPECT_FLOAT_EQ(tuningaccess::Require_kiroconvergence(m_tuning).unitStepSize, 0.125f);
    EXPECT_NE(tuningaccess::Get_kirosync(m_tuning), nullptr) << "which the store had not before";
    EXPECT_FLOAT_EQ(Step(), 0.125f);

    const auto pOther = Store(0.0625f, 0.5f);
    Set(*pOther);
    EXPECT_FLOAT_EQ(tuningaccess::Require_kiroconvergence(m_tuning).unitStepSize, 0.0625f);
    EXPECT_EQ(tuningaccess::Get_kirosync(m_tuning), nullptr);
    EXPECT_FLOAT_EQ(Step(), 0.0625f);
    m_tuning = StatsTuningData{pStore.get(), m_path, 1};
    EXPECT_FLOAT_EQ(Step(), 0.125f) << "on a path that is not remembered";
}
