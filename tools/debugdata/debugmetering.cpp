// The metering part of a debug record as text: what was measured, and how the analyzers judged it.

#include <algorithm>

#include <fmt/format.h>

#include "tools/debugdata/debugtext.h"

namespace debugdata
{

namespace
{

/// Of a KIROExposureSelection, which counts in another order than the exposures.
std::string SelectionName(UINT8 selection)
{
    constexpr std::string_view names[] = {"short", "safe", "long"};
    return (selection < std::size(names)) ? std::string(names[selection]) : fmt::format("none ({})", selection);
}

std::string FormatBank(const AECDebugBank& rBank)
{
    constexpr UINT8 none   = 255;
    const UINT8     bank   = rBank.bankID;
    const INT16     dataID = rBank.dataID;
    return (bank == none || dataID < 0) ? std::string("nowhere") : fmt::format("bank {} entry {}", bank, dataID);
}

std::string FormatRange(FLOAT start, FLOAT end)
{
    return (start == end) ? fmt::format("{:.3f}", start) : fmt::format("{:.3f} to {:.3f}", start, end);
}

std::string FormatCalculator(const AECDebugCalculatorType& rCalculator)
{
    const FLOAT results[] = {rCalculator.results[0], rCalculator.results[1]};
    const INT32 id        = rCalculator.calculatorID;
    const INT16 start     = rCalculator.outputStart;
    const INT16 end       = rCalculator.outputEnd;
    return fmt::format("  calculator {} '{}': method {}, results {:.3f} {:.3f} in entries {} to {}\n", id,
                       NameOf(rCalculator.description), rCalculator.APISelection, results[0], results[1], start, end);
}

std::string FormatComponent(const CHAR* pWhat, const std::string& rValue, const AECDebugComponentType& rOrigin)
{
    return fmt::format("    {} {} by method {} '{}' to {}\n", pWhat, rValue, rOrigin.method,
                       NameOf(rOrigin.description), FormatBank(rOrigin.output));
}

std::string FormatOperation(const AECDebugOperationType& rOperation)
{
    constexpr UINT8 nibble = 0xF;
    const FLOAT     a = rOperation.operands[0], b = rOperation.operands[1], c = rOperation.operands[2],
                d = rOperation.operands[3];
    return fmt::format("    operation '{}': priority {}, method {} on {:.3f} {:.3f} {:.3f} {:.3f}, result {} to {}\n",
                       NameOf(rOperation.description), rOperation.priorityAndDataType & nibble, rOperation.method, a, b,
                       c, d, FormatRange(rOperation.result.start, rOperation.result.end),
                       FormatBank(rOperation.output));
}

std::string FormatAnalyzer(const AECDebugAnalyzerType& rAnalyzer)
{
    const UINT16 id         = rAnalyzer.analyzerID;
    const FLOAT  luma       = rAnalyzer.luma;
    const FLOAT  confidence = rAnalyzer.confidence;
    const FLOAT  ratio      = rAnalyzer.adjustmentRatio;

    std::string text =
        fmt::format("  analyzer {} '{}': {} exposure, measured with {}, adjustment ratio {:.3f}\n", id,
                    NameOf(rAnalyzer.name), SelectionName(rAnalyzer.type), SelectionName(rAnalyzer.refType), ratio);
    text += FormatComponent("luma", fmt::format("{:.3f}", luma), rAnalyzer.lumaOrigin);
    text +=
        FormatComponent("target", FormatRange(rAnalyzer.target.start, rAnalyzer.target.end), rAnalyzer.targetOrigin);
    text += FormatComponent("confidence", fmt::format("{:.3f}", confidence), rAnalyzer.confidenceOrigin);
    const UINT32 kept = std::min<UINT32>(rAnalyzer.operationCount, AECDebugOperationCount);
    for (UINT32 index = 0; index < kept; ++index)
    {
        text += FormatOperation(rAnalyzer.operations[index]);
    }
    return text;
}

}  // namespace

std::string FormatMetering(const AECDebugDataMeteringType& rMetering)
{
    const FLOAT  luma        = rMetering.luma;
    const FLOAT  luxIndex    = rMetering.luxIndex;
    const FLOAT  dark        = rMetering.darkRatio;
    const FLOAT  bright      = rMetering.brightRatio;
    const UINT16 calculators = rMetering.calculatorCount;
    const UINT16 analyzers   = rMetering.analyzerCount;

    std::string text = fmt::format("metering{}\n  luma {:.2f}, lux index {:.2f}, dark ratio {:.3f}, bright ratio "
                                   "{:.3f}\n",
                                   rMetering.bIsMeteringSkipped != 0 ? " (skipped)" : "", luma, luxIndex, dark, bright);
    for (UINT32 type = 0; type < ExposureCount; ++type)
    {
        const UINT64 metered = rMetering.mtrExposures[type];
        const UINT64 handed  = rMetering.exposures[type];
        text += fmt::format("  {:5} target {} ns, handed on {} ns\n", ExposureName(type), metered, handed);
    }
    for (UINT32 index = 0; index < std::min<UINT32>(calculators, AECDebugCalculatorCount); ++index)
    {
        text += FormatCalculator(rMetering.calculators[index]);
    }
    for (UINT32 index = 0; index < std::min<UINT32>(analyzers, AECDebugAnalyzerCount); ++index)
    {
        text += FormatAnalyzer(rMetering.analyzers[index]);
    }
    return text;
}

}  // namespace debugdata
