/// @file
/// A tuning of whole frames in versions that answers tell apart, and the file and store that hold one of them.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "parameters/tuningsetmanager.h"
#include "tests/core/framefixture.h"
#include "tests/support/temporaryfile.h"
#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/textinput.h"

namespace reloadtuning
{

inline constexpr const CHAR* SafeTarget = "triggerData: {rangeStart: 50.0, rangeEnd: 50.0}";
inline constexpr const CHAR* TargetBank = "dataBank: {bankID: BankIDSceneAnalyzer, dataID: 2}";
inline constexpr const CHAR* SettleRule = "triggerData: {settleCountTh: 2, settleExpTh: 3.0}";
inline constexpr const CHAR* BaseSpeed  = "triggerData: {baseSpeed: 0.5,";

// Data IDs of a version's outputs: these and the version.
inline constexpr INT32 TargetID     = 100;
inline constexpr INT32 CalculatorID = 10;
inline constexpr INT32 FilterID     = 80;
inline constexpr INT32 DetectorID   = 10;
inline constexpr INT32 GeneratorID  = 60;
inline constexpr INT32 MapID        = 40;

/// The version that counts as settled after one frame.
inline constexpr UINT32 QuickVersion = 9;

/// A tuning of whole frames. Each module has something that tells the versions apart.
inline std::string TextOfTuning(UINT32 version)
{
    const auto id = [version](INT32 first) { return std::to_string(first + static_cast<INT32>(version)); };

    std::string text = FrameTuning;
    Replace(text, SafeTarget, "triggerData: {rangeStart: " + id(50) + ", rangeEnd: " + id(50) + "}");
    Replace(text, TargetBank, "dataBank: {bankID: BankIDSceneAnalyzer, dataID: " + id(TargetID) + "}");
    Replace(text, BaseSpeed, "triggerData: {baseSpeed: 0." + id(1) + ",");
    Replace(text, SettleRule,
            "triggerData: {settleCountTh: " + std::string((version == QuickVersion) ? "0" : "50") +
                ", settleExpTh: 3.0}");
    Replace(text, "start: 5, end: 6", "start: " + id(CalculatorID) + ", end: " + id(CalculatorID));
    Replace(text, "dataID: 80}", "dataID: " + id(FilterID) + "}");
    return text + R"(
      kiromtrtablegen:
        tableGenerator:
          - enable: true
            method: StatsDrivenMethod
            input: {base2DWeightID: 1, statsChannel: fine}
            output: {output2DWeightID: )" +
           id(GeneratorID) + R"(}
            triggerSystem: {trigger1Data: [{trigger1Lux: *everywhere, trigger2Data: [{trigger2: *everywhere, triggerData: 3.0}]}]}
      kiroexternalmapprocessor:
        externalMapProcessor:
          - enable: true
            input: {mapType: selectionMap, dataIDWeight2D: 1}
            output: {dataIDWeight2D: )" +
           id(MapID) + R"(}
            validGridRatio: 0.1
            validStateConsecutiveFrameCount: 1
      kiroscenechangedetector:
        scdBank:
          - enable: true
            priority: ConvergenceStart
            SCDId: )" +
           id(DetectorID) + R"(
            SCDName: Jump
            SCDetectionConfig:
              inputDataConfig: {inputDataSource: *none, windowSize: 1, filterType: Disable}
              thresConfig:
                thresData:
                  trigger1DataBank: *none
                  trigger2DataBank: *none
                  trigger3DataBank: *none
                  trigger1: [{trigger: *everywhere, trigger2: [{trigger: *everywhere, trigger3: [{trigger: *everywhere, triggerData: {valueThres: 1.0, countThres: 1}}]}]}]
                baselineType: UseRebasedData
    children:
      Usecase.Video: {modules: {kiro1dvectorprocessor: {vectorProcessors: []}}}
)";
}

/// Where modules begin in the text, and their names.
inline std::vector<std::pair<size_t, std::string>> ModulesOf(const std::string& rText)
{
    const std::string                           indent = "\n      ";
    std::vector<std::pair<size_t, std::string>> modules;
    for (size_t at = rText.find(indent + "kiro"); at != std::string::npos; at = rText.find(indent + "kiro", at + 1))
    {
        const size_t name = at + indent.size();
        modules.emplace_back(at, rText.substr(name, rText.find(':', name) - name));
    }
    return modules;
}

inline std::string Without(const std::string& rText, const std::string& rModule)
{
    const auto modules = ModulesOf(rText);
    for (size_t index = 0; index < modules.size(); ++index)
    {
        if (modules[index].second == rModule)
        {
            const size_t end = (index + 1 < modules.size()) ? modules[index + 1].first : rText.size();
            return rText.substr(0, modules[index].first) + rText.substr(end);
        }
    }
    ADD_FAILURE() << "no module " << rModule;
    return rText;
}

/// What a tuning file holds next.
struct Content
{
    UINT32      version;
    std::string without{};  ///< a module that the file lacks
    bool        isRefused = false;
};

/// A store that reads a file, and the file.
class StoredTuning
{
public:
    explicit StoredTuning(const Content& rContent)
    {
        Write(rContent);
        m_store.SetLiveTuningAutostart(false);
        EXPECT_TRUE(m_store.LoadBinaryParameters(m_file.path.c_str())) << m_store.GetErrorText();
    }

    VOID Reload(const Content& rContent)
    {
        Write(rContent);
        EXPECT_EQ(m_store.ReloadBinaryParameters(false), !rContent.isRefused);
    }

    StatsTuningData Handle()
    {
        return {&m_store, &m_mode, 1};
    }

    UINT32 References()
    {
        return m_store.GetModeEntry(0, &m_mode, 1)->GetReferenceCount();
    }

    VOID Write(const Content& rContent)
    {
        std::string text = TextOfTuning(rContent.version);
        text             = rContent.without.empty() ? text : Without(text, rContent.without);
        std::vector<BYTE> bytes =
            tuningfile::WriteBinary(tuningfile::ParseText(text, "reload.yaml"), tuningfile::NewestVersion);
        bytes.back() ^= rContent.isRefused ? 1 : 0;
        m_file.Write(bytes);
        // Two writes within a tick of the clock would have the same time.
        const auto now = std::filesystem::file_time_type::clock::now();
        std::filesystem::last_write_time(m_file.path, now + std::chrono::seconds(++m_writes));
    }

private:
    INT32               m_writes = 0;
    const TemporaryFile m_file{"reload.bin"};
    TuningSetManager    m_store{"reload"};
    TuningMode          m_mode{ModeType::Default, {0}};
};

}  // namespace reloadtuning
