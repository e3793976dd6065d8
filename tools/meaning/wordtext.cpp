#include "tools/meaning/wordtext.h"

#include <cctype>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "schema/kiroglobalelements.h"

namespace meaning
{

namespace
{

using tuning::Acts;
using tuning::Range;
using tuning::Reference;
using tuning::Thing;
using tuning::Unit;
using tuning::Verb;

constexpr std::string_view BankPrefix = "BankID";

std::vector<std::string> BankNames(UINT32 banks)
{
    std::vector<std::string> names;
    for (INT32 bank = 0; bank < BankIDMax; ++bank)
    {
        if ((banks >> bank & 1) != 0)
        {
            names.push_back(BankName(bank));
        }
    }
    return names;
}

}  // namespace

std::string UnitText(Unit unit)
{
    switch (unit)
    {
    case Unit::None:
        return "";
    case Unit::Nanoseconds:
        return "ns";
    case Unit::Microseconds:
        return "us";
    case Unit::Milliseconds:
        return "ms";
    case Unit::Seconds:
        return "s";
    case Unit::LogStep:
        return "log steps of 3 percent";
    case Unit::EV:
        return "EV";
    case Unit::EVStep:
        return "EV steps";
    case Unit::Gain:
        return "linear gain";
    case Unit::Factor:
        return "factor";
    case Unit::GainTimesNs:
        return "gain times ns";
    case Unit::Luma:
        return "luma";
    case Unit::Share:
        return "share";
    case Unit::Percent:
        return "percent";
    case Unit::Frames:
        return "frames";
    case Unit::FramesPerSecond:
        return "frames per second";
    case Unit::Hertz:
        return "Hz";
    case Unit::Lux:
        return "lux";
    case Unit::LuxIndex:
        return "lux index";
    case Unit::Kelvin:
        return "K";
    case Unit::Milliampere:
        return "mA";
    case Unit::Millimetre:
        return "mm";
    case Unit::Pixels:
        return "pixels";
    case Unit::Degrees:
        return "degrees";
    case Unit::RadPerSecond:
        return "rad/s";
    case Unit::ColourRatio:
        return "colour ratio";
    case Unit::Count:
        return "count";
    case Unit::Index:
        return "index";
    case Unit::ID:
        return "ID";
    case Unit::ChannelUnits:
        return "units of the channel";
    case Unit::Varies:
        return "varies";
    }
    return "";
}

std::string NumberText(DOUBLE value)
{
    return (value == std::floor(value) && std::fabs(value) < 1e15) ? fmt::format("{:.0f}", value)
                                                                   : fmt::format("{}", value);
}

std::string RangeText(const Range& rRange)
{
    if (!rRange.IsGiven())
    {
        return "";
    }
    const bool hasLow  = rRange.low != -Range::Unlimited;
    const bool hasHigh = rRange.high != Range::Unlimited;
    if (!hasLow && !hasHigh)
    {
        return "any number";
    }
    const std::string low = fmt::format("{}{}", rRange.lowOut ? "above " : "", NumberText(rRange.low));
    if (!hasHigh)
    {
        return rRange.lowOut ? low : low + " or more";
    }
    const std::string high = NumberText(rRange.high);
    if (!hasLow)
    {
        return (rRange.highOut ? "below " + high : high + " or less");
    }
    return fmt::format("{} to {}{}", low, rRange.highOut ? "below " : "", high);
}

std::string ExpectedText(const Range& rRange, Unit unit)
{
    const std::string text = (unit == Unit::Varies) ? "" : UnitText(unit);
    return text.empty() ? RangeText(rRange) : fmt::format("{} ({})", RangeText(rRange), text);
}

std::string ActsText(Acts acts)
{
    switch (acts)
    {
    case Acts::NextFrame:
        return "in the next frame";
    case Acts::Rebuilt:
        return "in the next frame, and what is made from the module starts anew";
    case Acts::NextAnalysis:
        return "in the next analysis";
    case Acts::NewTuning:
        return "once the host hands over a tuning or a mode anew";
    case Acts::NextStart:
        return "at the next start";
    case Acts::RoleChange:
        return "at the next change of the camera's role";
    case Acts::EVChange:
        return "when the user's EV changes";
    case Acts::Creation:
        return "when the core is created";
    case Acts::Never:
        return "never";
    }
    return "";
}

std::string BankName(INT32 bank)
{
    const CHAR* pName = TuningEnumOf(KIROBankIDType{})->NameOf(bank);
    return (pName != nullptr) ? std::string(pName).substr(BankPrefix.size()) : std::to_string(bank);
}

std::string ThingName(Thing thing)
{
    switch (thing)
    {
    case Thing::Calculator:
        return "calculator";
    case Thing::Analyzer:
        return "analyzer";
    case Thing::Algorithm:
        return "algorithm";
    case Thing::VectorProcessor:
        return "vector processor";
    case Thing::MapProcessor:
        return "map processor";
    case Thing::TableGenerator:
        return "table generator";
    case Thing::Detector:
        return "scene change detector";
    case Thing::Channel:
        return "channel of statistics";
    case Thing::Control:
        return "control";
    case Thing::HistoryReference:
        return "reference of the control history";
    case Thing::Mode:
        return "mode";
    default:
        return "";
    }
}

std::string ThingText(const Reference& rReference)
{
    switch (rReference.thing)
    {
    case Thing::Nothing:
        return "";
    case Thing::Bank:
    {
        const std::vector<std::string> names = BankNames(rReference.banks);
        return fmt::format("an entry of bank{} {}", (names.size() > 1) ? "s" : "", fmt::join(names, ", "));
    }
    case Thing::SiblingBank:
        return "an entry of the bank beside it";
    case Thing::OwnBank:
        return "an entry of the module's bank";
    default:
    {
        const std::string name    = ThingName(rReference.thing);
        const bool        isVowel = std::string_view("aeiou").find(name[0]) != std::string_view::npos;
        return fmt::format("{} {}", isVowel ? "an" : "a", name);
    }
    }
}

std::string ReferenceText(const Reference& rReference)
{
    if (rReference.thing == Thing::Nothing)
    {
        return "";
    }
    const std::string_view verb = (rReference.verb == Verb::Reads)    ? "reads"
                                  : (rReference.verb == Verb::Writes) ? "writes"
                                                                      : "defines";
    return fmt::format("{} {}", verb, ThingText(rReference));
}

std::string ConditionText(const CHAR* pWhen)
{
    if (pWhen == nullptr)
    {
        return "";
    }
    std::string text(pWhen);
    for (const auto& [from, to] :
         {std::pair("=false", " off"), std::pair("=", " "), std::pair("|", " or "), std::pair(" & ", " and ")})
    {
        for (size_t at = text.find(from); at != text.npos; at = text.find(from, at + std::string_view(to).size()))
        {
            text.replace(at, std::string_view(from).size(), to);
        }
    }
    return fmt::format("Read with {}.", text);
}

std::string FullText(const tuning::Words& rWords)
{
    std::string text = rWords.meaning;
    if (rWords.when != nullptr)
    {
        text += ' ' + ConditionText(rWords.when);
    }
    for (const Reference& rReference : rWords.refers)
    {
        if (rReference.thing != Thing::Nothing)
        {
            std::string reference = ReferenceText(rReference);
            reference[0]          = static_cast<CHAR>(std::toupper(reference[0]));
            text += fmt::format(" {}.", reference);
        }
    }
    if (rWords.acts != Acts::NextFrame)
    {
        text += fmt::format(" A live edit acts {}.", ActsText(rWords.acts));
    }
    return text;
}

}  // namespace meaning
