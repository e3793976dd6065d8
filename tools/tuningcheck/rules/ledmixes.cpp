#include "tools/tuningcheck/rules/ledmixes.h"

#include <cmath>

#include <fmt/format.h>

#include "schema/kiroflash.h"
#include "tools/tuningcheck/recordjudge.h"

namespace tuningcheck
{

namespace
{

using namespace kiroflash;

/// Ratios nearer than this are one.
constexpr FLOAT SameRatio = 1e-7F;

INT64 PowerOf(const LEDMixType& rMix)
{
    return static_cast<INT64>(rMix.LED1Setting) + rMix.LED2Setting;
}

/// @return whether there are rows to judge
bool CheckSize(const LEDMatchTableType& rTable, const RecordJudge& rJudge)
{
    const INT64 wanted = static_cast<INT64>(rTable.countPower) * rTable.countMix;
    if (wanted != static_cast<INT64>(rTable.tableCount))
    {
        rJudge.Error(
            "table", fmt::format("has {} mixes", rTable.tableCount),
            fmt::format("{}, which is countPower {} times countMix {}", wanted, rTable.countPower, rTable.countMix),
            "rows of equal power, from preflash to full, each with all mixes");
        return false;
    }
    return rTable.countMix > 0 && rTable.countPower > 0;
}

/// @return whether a fault has been told
bool CheckPower(const LEDMatchTableType& rTable, UINT32 index, const RecordJudge& rJudge)
{
    const UINT32 columns = static_cast<UINT32>(rTable.countMix);
    const INT64  power   = PowerOf(rTable.table[index]);
    const INT64  first   = PowerOf(rTable.table[index - index % columns]);
    if (power != first)
    {
        rJudge.ErrorIn("table", index, fmt::format("has a current of {} mA with both LEDs", power),
                       fmt::format("{} mA as at the start of row {}", first, index / columns),
                       "all mixes of a row have one power");
        return true;
    }
    if (index % columns == 0 && index > 0 && power <= PowerOf(rTable.table[index - 1]))
    {
        rJudge.ErrorIn("table", index, fmt::format("starts a row of {} mA", power),
                       fmt::format("above {} mA, the power of the row before", PowerOf(rTable.table[index - 1])));
        return true;
    }
    return false;
}

VOID CheckMix(const LEDMatchTableType& rTable, UINT32 index, const RecordJudge& rJudge)
{
    const UINT32      columns = static_cast<UINT32>(rTable.countMix);
    const LEDMixType& rMix    = rTable.table[index];
    if (index % columns > 0 && std::abs(rMix.RGRatio - rTable.table[index - 1].RGRatio) <= SameRatio)
    {
        rJudge.ErrorIn("table", index, fmt::format("has an RGRatio of {}", rMix.RGRatio),
                       "another one than that of the mix before it",
                       "between mixes of one colour none can be found by colour");
    }
    else if (index >= columns && rMix.flux <= rTable.table[index - columns].flux)
    {
        rJudge.ErrorIn("table", index, fmt::format("has a flux of {}", rMix.flux),
                       fmt::format("above {}, that of the mix with less power", rTable.table[index - columns].flux));
    }
}

VOID CheckRows(const LEDMatchTableType& rTable, const RecordJudge& rJudge)
{
    if (CheckSize(rTable, rJudge))
    {
        for (UINT32 index = 0; index < rTable.tableCount; ++index)
        {
            if (CheckPower(rTable, index, rJudge))
            {
                return;  // the mixes that follow are measured by this one
            }
            CheckMix(rTable, index, rJudge);
        }
    }
}

VOID CheckCalibrated(const KIROLEDMixCalibType& rMix, const RecordJudge& rJudge)
{
    const LEDMatchTableType& rTable = *rJudge.Around<LEDMatchTableType>();
    if (rMix.indexMix >= rTable.countMix)
    {
        const INT64 place  = INT64{rTable.countMix} * rMix.indexPower + rMix.indexMix;
        const bool  isNext = place < static_cast<INT64>(rTable.tableCount);
        rJudge.Error("indexMix", fmt::format("is {}", rMix.indexMix),
                     fmt::format("below {}, the countMix", rTable.countMix),
                     isNext ? "it calibrates a mix of a later row"
                            : "an index outside the table refuses the whole factory calibration");
    }
    if (rMix.indexPower >= rTable.countPower)
    {
        rJudge.Error("indexPower", fmt::format("is {}", rMix.indexPower),
                     fmt::format("below {}, the countPower", rTable.countPower),
                     "an index outside the table refuses the whole factory calibration");
    }
}

}  // namespace

VOID CheckLEDMixes(const ModulePlace& rModule, Findings& rFindings)
{
    JudgeEach<LEDMatchTableType>(rModule, rFindings, CheckRows);
    JudgeEach<KIROLEDMixCalibType>(rModule, rFindings, CheckCalibrated);
}

}  // namespace tuningcheck
