#include "bench/leasttuning.h"

#include "bench/exampletuning.h"
#include "tools/tuningfile/files.h"

namespace
{

/// In the place of the example's: no lux index and no confidence. Short and long exposures are as safe is.
constexpr const CHAR* LeastModules = R"(
tuning: {createdBy: kirotune, binaryTag: least}
x-everywhere: &everywhere {start: 0, end: 1}
x-one: &one
  selection: TriggerSystemMethod
  triggerSystem: {trigger1Data: [{trigger: *everywhere, trigger2Data: [{trigger: *everywhere, triggerData: 1.0}]}]}
modes:
  Default:
    modules:
      kirometeringsceneanalyzer:
        luxAnalyzer: {analyzerName: "Off", luma: &off {aggregator: {output: {dataBank: {bankID: BankIDInvalid}}}}, target: *off, confidence: *off}
        analyzers:
          - analyzerID: 0
            analyzerName: Safe
            exposureType: ExposureSafe
            refExposureType: ExposureSafe
            luma:
              calculators: [{value: {selection: DataBankMethod, dataBank: {bankID: BankIDStatsCalculator, dataID: 1}}, weight: *one}]
              aggregator: {method: Average, output: {dataBank: {bankID: BankIDSceneAnalyzer, dataID: 1}, description: Luma}}
            target:
              calculators:
                - value:
                    selection: TriggerSystemMethod
                    triggerSystem:
                      trigger1Data:
                        - {trigger: *everywhere, trigger2Data: [{trigger: *everywhere, triggerData: {rangeStart: 46.0, rangeEnd: 46.0}}]}
                  weight: *one
              aggregator: {method: Average, output: {dataBank: {bankID: BankIDSceneAnalyzer, dataID: 2}, description: Target}}
            confidence: *off
            reservedParameter: [0]
)";

}  // namespace

std::vector<BYTE> leasttuning::Compile()
{
    return tuningfile::WriteBinary(exampletuning::With("minimal.yaml", LeastModules, "least tuning"),
                                   tuningfile::NewestVersion);
}
