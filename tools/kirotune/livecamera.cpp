// Who a camera is, and what it answers when it is asked for members.

#include "tools/kirotune/livecamera.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "schema/modules.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/liveclient/texts.h"
#include "tools/tuningfile/names.h"

namespace kirotune
{

using liveclient::Error;
using liveclient::Value;

LiveCamera::LiveCamera(const liveclient::Options& rOptions)
    : m_client(rOptions), m_place(fmt::format("{}:{}", rOptions.host, rOptions.port))
{
}

const liveclient::DeviceInfo& LiveCamera::Device()
{
    if (!m_device)
    {
        m_device = m_client.Device();
    }
    return *m_device;
}

UINT32 LiveCamera::TableInUse()
{
    return Device().tables.empty() ? 0 : m_client.TableIndex();
}

/// For a path that the tuning does not have, the service lists what is below the root.
VOID LiveCamera::RequireMode(const std::string& rPath)
{
    const std::vector<std::string> items = liveclient::Split(rPath, '|');
    std::string                    above = items[0];
    for (size_t index = 1; index < items.size(); ++index)
    {
        const std::vector<std::string> children = m_client.ChildModes(above);
        if (std::find(children.begin(), children.end(), items[index]) == children.end())
        {
            throw Error(
                fmt::format("the tuning has no mode '{}' below '{}', there {}", items[index], above,
                            children.empty() ? "are none" : Clean(fmt::format("are {}", fmt::join(children, ", ")))));
        }
        above += '|' + items[index];
    }
}

Error NothingThere(const std::string& rPath, const std::string& rModule, const std::vector<std::string>& rMembers)
{
    const std::string             name = rModule.substr(0, rModule.find('.'));
    std::vector<std::string_view> names;
    for (const tuning::ModuleDescription& rKnown : tuning::TuningModules)
    {
        if (rKnown.pRecord != nullptr)
        {
            names.push_back(rKnown.pName);
        }
    }
    std::string text = "no such mode path, module or member";
    text += rMembers.empty() ? ", or no values right below it" : "";
    text += fmt::format(": '{}' {}", rPath, rModule);
    text += rMembers.empty() ? "" : fmt::format(" {}", fmt::join(rMembers, ","));
    if (std::find(names.begin(), names.end(), name) == names.end())
    {
        text += "; for the module, " + tuningfile::Advice(name, names);
    }
    return Error(text);
}

std::vector<Value> LiveCamera::GetAll(const std::string& rPath, const std::string& rModule,
                                      const std::vector<std::string>& rMembers)
{
    std::vector<Value> values = m_client.Get(rPath, rModule, rMembers);
    std::vector<Value> left   = values;

    std::vector<std::string> missing;
    for (const std::string& rMember : rMembers)
    {
        Value value;
        if (!liveclient::Take(rMember, left, value))
        {
            missing.push_back(rMember);
        }
    }
    if (values.empty() || !missing.empty())
    {
        throw NothingThere(rPath, rModule, missing);
    }
    return values;
}

}  // namespace kirotune
