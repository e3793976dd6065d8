#include "tools/newtuning/questions.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

#include <fmt/format.h>

namespace newtuning
{

namespace
{

/// @param rValue keeps its value if the text is no number from least to most
/// @return what was expected, empty if the text was
std::string TakeNumber(std::string_view text, DOUBLE least, DOUBLE most, std::string_view what, DOUBLE& rValue)
{
    DOUBLE value               = 0;
    const auto [pEnd, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure != std::errc() || pEnd != text.data() + text.size() || !(value >= least && value <= most))
    {
        return fmt::format("{:g} to {:g}{}", least, most, what);
    }
    rValue = value;
    return {};
}

std::string TakeTime(std::string_view text, DOUBLE least, DOUBLE most, DOUBLE unit, std::string_view what,
                     UINT64& rTime)
{
    DOUBLE            value    = 0;
    const std::string expected = TakeNumber(text, least, most, what, value);
    if (expected.empty())
    {
        rTime = static_cast<UINT64>(std::llround(value * unit));
    }
    return expected;
}

template <typename T> struct Choice
{
    std::string_view name;
    T                value;
};

template <typename T, size_t count>
std::string TakeChoice(std::string_view text, const Choice<T> (&rChoices)[count], T& rValue)
{
    std::string expected;
    for (const Choice<T>& rChoice : rChoices)
    {
        if (rChoice.name == text)
        {
            rValue = rChoice.value;
            return {};
        }
        expected += (expected.empty() ? "" : ", ") + std::string(rChoice.name);
    }
    return "one of " + expected;
}

template <const CHAR* pText> std::string Always(const Answers& /*rAnswers*/)
{
    return pText;
}

std::string TakeGainMin(std::string_view text, Answers& rAnswers)
{
    return TakeNumber(text, 0.01, 1000, "", rAnswers.gainMin);
}

std::string TakeGainMax(std::string_view text, Answers& rAnswers)
{
    return TakeNumber(text, rAnswers.gainMin, 10000, ", the lowest gain or more", rAnswers.gainMax);
}

std::string TakeLineTime(std::string_view text, Answers& rAnswers)
{
    return TakeTime(text, 0.1, 1000, NsPerUs, " us", rAnswers.lineTime);
}

/// Within fewer an exposure cannot be controlled.
constexpr DOUBLE LinesMin = 10;

std::string TakeTimeMax(std::string_view text, Answers& rAnswers)
{
    const DOUBLE least = LinesMin * static_cast<DOUBLE>(rAnswers.lineTime) / NsPerMs;
    return TakeTime(text, std::max(1.0, least), 1000, NsPerMs, " ms, ten lines or more", rAnswers.timeMax);
}

std::string TakeFPS(std::string_view text, Answers& rAnswers)
{
    const DOUBLE most = NsPerSecond / (static_cast<DOUBLE>(rAnswers.lineTime) * LinesMin);
    return TakeNumber(text, 1, std::floor(std::min(most, 1000.0)), ", a frame lasting ten lines or more", rAnswers.FPS);
}

std::string TakeMains(std::string_view text, Answers& rAnswers)
{
    constexpr Choice<Mains> choices[] = {{"50", Mains::Hz50}, {"60", Mains::Hz60}, {"off", Mains::Off}};
    return TakeChoice(text, choices, rAnswers.mains);
}

/// Noise beyond makes a picture that few want.
std::string DefaultTopGain(const Answers& rAnswers)
{
    constexpr DOUBLE noisy = 32;
    return fmt::format("{:g}", std::clamp(noisy, rAnswers.gainMin, rAnswers.gainMax));
}

std::string TakeTopGain(std::string_view text, Answers& rAnswers)
{
    return TakeNumber(text, rAnswers.gainMin, rAnswers.gainMax, ", the sensor's gains", rAnswers.topGain);
}

std::string TakeMetering(std::string_view text, Answers& rAnswers)
{
    constexpr Choice<Metering> choices[] = {{"average", Metering::Average},
                                            {"centre", Metering::Centre},
                                            {"spot", Metering::Spot},
                                            {"faces", Metering::Faces}};
    return TakeChoice(text, choices, rAnswers.metering);
}

std::string TakeHDR(std::string_view text, Answers& rAnswers)
{
    constexpr Choice<bool> choices[] = {{"yes", true}, {"no", false}};
    return TakeChoice(text, choices, rAnswers.isHDR);
}

constexpr CHAR One[] = "1", Gain64[] = "64", Line10[] = "10", Time100[] = "100", Rate30[] = "30", Europe[] = "50",
               Average[] = "average", No[] = "no";

constexpr Question All[] = {
    {"gain-min", "the sensor's lowest gain", Always<One>, TakeGainMin},
    {"gain-max", "the sensor's highest gain", Always<Gain64>, TakeGainMax},
    {"line-time", "the time of a line in us, which is the shortest exposure time", Always<Line10>, TakeLineTime},
    {"time-max", "the longest exposure time in ms", Always<Time100>, TakeTimeMax},
    {"fps", "frames per second", Always<Rate30>, TakeFPS},
    {"mains", "mains frequency whose lamps must not show bands: 50, 60 or off", Always<Europe>, TakeMains},
    {"top-gain", "the highest gain that you allow", DefaultTopGain, TakeTopGain},
    {"metering", "what is metered: average, centre, spot or faces", Always<Average>, TakeMetering},
    {"hdr", "whether the sensor takes two exposures one after the other for HDR: yes or no", Always<No>, TakeHDR},
};

}  // namespace

std::span<const Question> Questions()
{
    return All;
}

}  // namespace newtuning
