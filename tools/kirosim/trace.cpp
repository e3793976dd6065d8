#include "tools/kirosim/trace.h"

#include <iterator>

#include <fmt/format.h>

namespace kirosim
{

namespace
{

/// A column of the trace.
struct TraceColumnForm
{
    const CHAR* pName;
    bool        isOfScene;  ///< rather than what the core has decided
    VOID (*append)(const FrameRecord& rRecord, std::string& rLine);
};

/// Appends a number so that it reads back exactly.
template <typename Number> VOID AppendNumber(Number value, std::string& rLine)
{
    fmt::format_to(std::back_inserter(rLine), "{}", value);
}

/// Appends what an expression of a record yields.
template <auto Read> VOID AppendOf(const FrameRecord& rRecord, std::string& rLine)
{
    AppendNumber(Read(rRecord), rLine);
}

template <AECAlgoExposureType type> const KIROExposureSetType& SetOf(const FrameRecord& rRecord)
{
    return rRecord.decided.arbitration[type].exposureSet;
}

template <AECAlgoExposureType type>
constexpr auto TargetOf = [](const FrameRecord& rRecord) { return rRecord.decided.metering.exposures[type]; };
template <AECAlgoExposureType type>
constexpr auto ExposureOf = [](const FrameRecord& rRecord) { return SetOf<type>(rRecord).exposure; };
template <AECAlgoExposureType type>
constexpr auto GainOf = [](const FrameRecord& rRecord) { return SetOf<type>(rRecord).gain; };
template <AECAlgoExposureType type>
constexpr auto TimeOf = [](const FrameRecord& rRecord) { return SetOf<type>(rRecord).time; };
template <auto Member>
constexpr auto ConvergedOf = [](const FrameRecord& rRecord) { return rRecord.decided.convergence.*Member; };
template <auto Member> constexpr auto TrueOf = [](const FrameRecord& rRecord) { return rRecord.truth.*Member; };

constexpr auto FrameOf    = [](const FrameRecord& rRecord) { return rRecord.frame; };
constexpr auto StartOf    = [](const FrameRecord& rRecord) { return rRecord.time; };
constexpr auto LuxIndexOf = [](const FrameRecord& rRecord) { return rRecord.decided.luxIndex; };
constexpr auto LumaOf     = [](const FrameRecord& rRecord) { return rRecord.decided.luma; };
constexpr auto SkippedOf  = [](const FrameRecord& rRecord) { return rRecord.decided.metering.bIsMeteringSkipped; };
constexpr auto FPSOf = [](const FrameRecord& rRecord) { return rRecord.decided.arbitration[AECAlgoExposureShort].FPS; };

constexpr TraceColumnForm TraceColumnForms[] = {
    {"frame", false, AppendOf<FrameOf>},
    {"time_s", false, AppendOf<StartOf>},
    {"scene_lux", true, AppendOf<TrueOf<&FrameTruth::lux>>},
    {"lux_index", false, AppendOf<LuxIndexOf>},
    {"luma", false, AppendOf<LumaOf>},
    {"target_short", false, AppendOf<TargetOf<AECAlgoExposureShort>>},
    {"target_safe", false, AppendOf<TargetOf<AECAlgoExposureSafe>>},
    {"target_long", false, AppendOf<TargetOf<AECAlgoExposureLong>>},
    {"exposure_short", false, AppendOf<ExposureOf<AECAlgoExposureShort>>},
    {"exposure_safe", false, AppendOf<ExposureOf<AECAlgoExposureSafe>>},
    {"exposure_long", false, AppendOf<ExposureOf<AECAlgoExposureLong>>},
    {"gain_short", false, AppendOf<GainOf<AECAlgoExposureShort>>},
    {"time_ns_short", false, AppendOf<TimeOf<AECAlgoExposureShort>>},
    {"gain_safe", false, AppendOf<GainOf<AECAlgoExposureSafe>>},
    {"time_ns_safe", false, AppendOf<TimeOf<AECAlgoExposureSafe>>},
    {"gain_long", false, AppendOf<GainOf<AECAlgoExposureLong>>},
    {"time_ns_long", false, AppendOf<TimeOf<AECAlgoExposureLong>>},
    {"adrc_gain", false, AppendOf<ConvergedOf<&KIROConvergenceOutput::compensationADRC>>},
    {"dark_boost", false, AppendOf<ConvergedOf<&KIROConvergenceOutput::compensationDarkBoost>>},
    {"predictive_gain", false, AppendOf<ConvergedOf<&KIROConvergenceOutput::predictiveGain>>},
    {"brightness_settled", false, AppendOf<ConvergedOf<&KIROConvergenceOutput::bBrightnessSettle>>},
    {"settled", false, AppendOf<ConvergedOf<&KIROConvergenceOutput::bSettle>>},
    {"fps", false, AppendOf<FPSOf>},
    {"metering_skipped", false, AppendOf<SkippedOf>},
    {"picture_ev", true, AppendOf<TrueOf<&FrameTruth::pictureEV>>},
    {"banding", true, AppendOf<TrueOf<&FrameTruth::banding>>}};

/// Appends a line whose fields come from the columns.
template <typename AppendField> std::string LineOf(TraceColumns columns, const AppendField& appendField)
{
    std::string line;
    for (const TraceColumnForm& rForm : TraceColumnForms)
    {
        if (columns == TraceColumns::All || !rForm.isOfScene)
        {
            line += line.empty() ? "" : ",";
            appendField(rForm, line);
        }
    }
    return line + '\n';
}

}  // namespace

std::string CsvHeader(TraceColumns columns)
{
    return LineOf(columns, [](const TraceColumnForm& rForm, std::string& rLine) { rLine += rForm.pName; });
}

std::string CsvLine(const FrameRecord& rRecord, TraceColumns columns)
{
    return LineOf(columns,
                  [&rRecord](const TraceColumnForm& rForm, std::string& rLine) { rForm.append(rRecord, rLine); });
}

std::string TableHeader()
{
    return fmt::format("{:>6} {:>7} {:>10} {:>8} {:>8} {:>11} {:>7} {:>9} {:>6} {:>6} {:>7}\n", "frame", "time s",
                       "scene lux", "lux idx", "luma", "exposure us", "gain", "time us", "adrc", "dark", "settled");
}

std::string TableLine(const FrameRecord& rRecord)
{
    constexpr DOUBLE             nsPerUs = 1000.0;
    const KiroHostFrame&         rFrame  = rRecord.decided;
    const KIROConvergenceOutput& rConv   = rFrame.convergence;
    const KIROExposureSetType&   rSafe   = rFrame.arbitration[AECAlgoExposureSafe].exposureSet;
    return fmt::format(
        "{:>6} {:>7.2f} {:>10.1f} {:>8.1f} {:>8.1f} {:>11.0f} {:>7.2f} {:>9.0f} {:>6.2f} {:>6.2f} {:>7}\n",
        rRecord.frame, rRecord.time, rRecord.truth.lux, rFrame.luxIndex, rFrame.luma,
        static_cast<DOUBLE>(rSafe.exposure) / nsPerUs, rSafe.gain, static_cast<DOUBLE>(rSafe.time) / nsPerUs,
        rConv.compensationADRC, rConv.compensationDarkBoost,
        (rConv.bSettle == TRUE)             ? "yes"
        : (rConv.bBrightnessSettle == TRUE) ? "bright"
                                            : "");
}

}  // namespace kirosim
