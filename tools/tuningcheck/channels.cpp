#include "tools/tuningcheck/channels.h"

#include <sstream>

#include <fmt/format.h>

#include "host/channelnames.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"

namespace tuningcheck
{

std::vector<std::string> HostChannels()
{
    using namespace channelnames;
    std::vector<std::string> names = {GridRG,    GridBG,          Luma16,    Saturation16,
                                      Luma16Off, Saturation16Off, Luma16Low, Saturation16Low};
    for (const OfExposure& rNames : Exposures)
    {
        names.insert(names.end(), {rNames.pLuma, rNames.pSaturation, rNames.pRG, rNames.pBG, rNames.pHistogram});
    }
    return names;
}

std::vector<std::string> ReadChannels(const std::string& rPath)
{
    constexpr const char*    blanks = " \t\r";
    std::vector<std::string> names;
    std::istringstream       lines(tuningfile::ReadText(rPath));
    for (std::string line; std::getline(lines, line);)
    {
        const size_t begin = line.find_first_not_of(blanks);
        if (begin != line.npos && line[begin] != '#')
        {
            names.push_back(line.substr(begin, line.find_last_not_of(blanks) - begin + 1));
        }
    }
    if (names.empty())
    {
        throw tuningfile::InputError(fmt::format("{}: names no channel, expected a name on each line", rPath));
    }
    return names;
}

}  // namespace tuningcheck
