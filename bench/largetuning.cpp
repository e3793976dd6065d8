#include "bench/largetuning.h"

#include <fmt/format.h>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>

#include "parameters/tuningmode.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/textinput.h"

namespace largetuning
{

namespace
{

/// Gives every number with decimals a few more of them, and every module a revision.
std::string Vary(const std::string& rText, UINT32 mode)
{
    static const std::regex number("[0-9]+\\.[0-9]+");
    static const std::regex openModule("^(      kiro[a-z0-9]+:)$");
    static const std::regex inlineModule("^(      kiro[a-z0-9]+: \\{)");
    const std::string       revision = fmt::format("parameter_version: {{revision: Mode{}}}", mode);

    std::istringstream lines(rText);
    std::string        line;
    std::string        varied;
    while (std::getline(lines, line))
    {
        line = std::regex_replace(line, number, fmt::format("$&0{:02}", mode));
        line = std::regex_replace(line, openModule, "$1\n        " + revision);
        line = std::regex_replace(line, inlineModule, "$1" + revision + ", ");
        varied += line + "\n";
    }
    return varied;
}

}  // namespace

std::vector<BYTE> Compile()
{
    const std::string       name  = KIRO_BENCH_TUNINGS "largetuning.yaml";
    const std::vector<BYTE> bytes = tuningfile::ReadBytes(name);
    const std::string       text(bytes.begin(), bytes.end());

    tuningfile::Tuning              large = tuningfile::ParseText(text, name);
    std::vector<tuningfile::Tuning> sources;  // own the modules
    large.tables.at(0).modes.resize(1);
    for (UINT32 mode = 1; mode < ModeCount; ++mode)
    {
        sources.push_back(tuningfile::ParseText(Vary(text, mode), name));
        tuningfile::Mode sensor = sources.back().tables.at(0).modes.at(0);
        sensor.mode             = static_cast<UINT16>(ModeType::Sensor);
        sensor.subMode          = static_cast<UINT16>(mode - 1);
        sensor.parent           = 0;
        large.tables[0].modes.push_back(std::move(sensor));
    }
    for (const tuningfile::Mode& rMode : large.tables[0].modes)
    {
        if (rMode.modules.size() != ModuleCount)
        {
            throw std::runtime_error(name + ": the Default mode has another number of modules than the bar is for");
        }
    }
    return tuningfile::WriteBinary(large, tuningfile::NewestVersion);
}

}  // namespace largetuning
