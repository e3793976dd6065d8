// Where a camera differs from the tuning that it was given.

#include "tools/kirotune/livecamera.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "tools/kirotune/livenumbers.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/liveclient/texts.h"
#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/modepath.h"

namespace kirotune
{

namespace
{

using liveclient::Error;
using liveclient::Value;

bool IsAtOrBelow(const std::string& rPath, const std::string& rUpper)
{
    return rPath == rUpper || rPath.starts_with(rUpper + '|');
}

/// Another tuning with lists of the same lengths looks like edits.
VOID CompareTags(const tuningfile::Tuning& rTuning, const std::string& rCamera, const RemarkTaker& rTake)
{
    constexpr std::string_view Key = "BinaryTag=";
    const size_t               at  = rCamera.find(Key);
    if (at != std::string::npos && rCamera.substr(at + Key.size()) != rTuning.binaryTag)
    {
        rTake(fmt::format("{}: its binary tag is '{}', but the camera is {}", rTuning.source, rTuning.binaryTag,
                          Clean(rCamera)));
    }
}

}  // namespace

tuningfile::Tuning ReadTuning(const std::string& rFile)
{
    return tuningfile::IsText(rFile) ? tuningfile::ReadTextFile(rFile)
                                     : tuningfile::ReadBinary(tuningfile::ReadBytes(rFile), rFile).tuning;
}

/// @throws Error if lists of the camera are not as long
VOID LiveCamera::AddChanges(const std::string& rFile, const std::string& rPath, const tuningfile::Module& rModule,
                            std::vector<Change>& rChanges)
{
    const tuning::RecordDescription& rRecord = *rModule.pDescription->pRecord;
    const std::string                name    = rModule.pDescription->pName;
    const NumberPaths                paths   = PathsOf(rRecord, rModule.pRecord);
    const auto                       fail    = [&](const std::string& rMember, const char* pWhat)
    {
        throw Error(
            fmt::format("{}: not the tuning of the camera, where {} {}.{} {}", rFile, rPath, name, rMember, pWhat));
    };
    for (const Value& rValue : ReadNumbers(m_client, rPath, name, paths.beyond))
    {
        if (IsOneNumber(rValue.text))
        {
            fail(Clean(rValue.name), "is a number");
        }
    }
    const std::vector<Value> values = ReadNumbers(m_client, rPath, name, paths.held);
    for (size_t index = 0; index < paths.held.size(); ++index)
    {
        const std::string& rMember = paths.held[index];
        if (index >= values.size() || values[index].name != rMember || !IsOneNumber(values[index].text))
        {
            fail(rMember, "is no number");
        }
        std::string inFile = NumberText(rRecord, rModule.pRecord, rMember);
        if (inFile != values[index].text)
        {
            rChanges.push_back({rPath, name, rMember, std::move(inFile), values[index].text});
        }
    }
}

std::vector<Change> LiveCamera::ChangesSince(const tuningfile::Tuning& rTuning, const std::string& rPath,
                                             const RemarkTaker& rTake)
{
    const std::string& rFile = rTuning.source;
    const std::string  upper = liveclient::NamedPath(rPath);
    const UINT32       index = TableInUse();
    if (index >= rTuning.tables.size())
    {
        throw Error(
            fmt::format("{}: holds {} mode tables, but the camera uses table {}", rFile, rTuning.tables.size(), index));
    }
    CompareTags(rTuning, Device().name, rTake);
    const tuningfile::ModeTable& rTable = rTuning.tables[index];
    std::vector<Change>          changes;
    bool                         isThere = false;
    for (UINT32 mode = 0; mode < rTable.modes.size(); ++mode)
    {
        const std::string path = tuningfile::PathOf(rTable, mode);
        if (!IsAtOrBelow(path, upper))
        {
            continue;
        }
        isThere = true;
        RequireMode(path);
        for (const tuningfile::Module& rModule : rTable.modes[mode].modules)
        {
            AddChanges(rFile, path, rModule, changes);
        }
    }
    if (!isThere)
    {
        throw Error(fmt::format("{}: the tuning has no mode '{}'", rFile, upper));
    }
    return changes;
}

}  // namespace kirotune
