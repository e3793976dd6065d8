#include "tools/tuningcheck/rules/blendparameters.h"

#include <fmt/format.h>

#include "schema/kiroparamextension.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using kiroparamextension::statsExtensionParamType;

constexpr std::string_view BlendName = "AECExtParamMFHDRADRCControl";

constexpr UINT32 LeastNumbers = 3;  ///< step, ratio, trigger
constexpr UINT32 MostNumbers  = 4;
constexpr UINT32 Trees        = 3;  ///< most over short, most over long, whether to blend

VOID CheckBlend(const statsExtensionParamType& rParameter, const RecordJudge& rJudge)
{
    if (rParameter.enableFlag == FALSE || tuning::TextAt(&rParameter.Name) != BlendName)
    {
        return;
    }
    const auto numbers = ListOf(rParameter.data, rParameter.dataCount);
    if (numbers.size() < LeastNumbers || numbers.size() > MostNumbers)
    {
        rJudge.Error("data", fmt::format("has {} numbers", numbers.size()),
                     fmt::format("{} or {}", LeastNumbers, MostNumbers),
                     "step per frame, ratio that counts as one, trigger of the blend, value of trigger 65");
        return;
    }
    if (numbers[0] <= 0.0F || numbers[0] > 1.0F)
    {
        rJudge.ErrorIn("data", 0, fmt::format("is {}", numbers[0]), "above 0 to 1 (step of the blend per frame)");
    }
    if (numbers[1] < 1.0F)
    {
        rJudge.ErrorIn("data", 1, fmt::format("is {}", numbers[1]), "1 or more (ratio of long to short)");
    }
    if (rParameter.triggerCount < Trees)
    {
        rJudge.Error("trigger", fmt::format("has {} trees", rParameter.triggerCount), fmt::format("{} trees", Trees),
                     "the most over short, the most over long, and whether to blend");
    }
}

}  // namespace

VOID CheckBlendParameters(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<statsExtensionParamType>(rModule, rFindings, CheckBlend);
}

}  // namespace tuningcheck
