#include "tools/kirotune/livejournal.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <fmt/format.h>

#include "tools/kirotune/liveoutput.h"
#include "tools/tuningfile/files.h"

namespace kirotune
{

namespace
{

using liveclient::Error;

constexpr size_t MaxSize = size_t{1} << 20;

[[noreturn]] VOID FailOnPlace(const std::string& rPath, const std::string& rWhy)
{
    throw Error(
        fmt::format("{}: no place for the journal of edits: {}; XDG_STATE_HOME can name another folder", rPath, rWhy));
}

/// @return the value of a variable of the environment that names a folder, empty if there is none
std::string FolderIn(const CHAR* pVariable)
{
    const CHAR* const pValue = std::getenv(pVariable);
    return (pValue != nullptr && pValue[0] == '/') ? pValue : "";
}

/// Makes the folder. @return the journal's path
std::string PathOf(const std::string& rPlace)
{
    const std::string state  = FolderIn("XDG_STATE_HOME");
    const std::string home   = FolderIn("HOME");
    const std::string folder = (state.empty() ? home + "/.local/state" : state) + "/kirotune";
    if (state.empty() && home.empty())
    {
        FailOnPlace("kirotune", "neither XDG_STATE_HOME nor HOME names a folder");
    }
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
    {
        FailOnPlace(folder, error.message());
    }
    std::string name = rPlace;
    std::replace(name.begin(), name.end(), '/', '_');
    return fmt::format("{}/{}.journal", folder, name);
}

std::string LockOf(const std::string& rPath)
{
    return rPath + ".lock";
}

/// The service's token is its address: another one after each start where the system places programs at random.
std::string StartOf(const liveclient::DeviceInfo& rDevice)
{
    return fmt::format("{:#018x} {}", rDevice.id, Clean(rDevice.name));
}

}  // namespace

Journal::Journal(const std::string& rPlace, const liveclient::DeviceInfo& rDevice)
try : m_path(PathOf(rPlace)), m_lock(LockOf(m_path))
{
    const std::string start = StartOf(rDevice);
    if (std::filesystem::exists(m_path))
    {
        const std::vector<BYTE> bytes = tuningfile::ReadBytes(m_path, 2 * MaxSize);
        m_content          = ParseJournal({reinterpret_cast<const CHAR*>(bytes.data()), bytes.size()}, m_path);
        m_isOfEarlierStart = m_content.camera != start;
    }
    if (m_content.camera != start)
    {
        m_content = {start, {}};
    }
}
catch (const std::system_error& rError)
{
    FailOnPlace(rPlace, rError.what());
}

VOID Journal::Add(EditCommand command)
{
    m_content.commands.push_back(std::move(command));
    Write();
}

VOID Journal::DropLast()
{
    m_content.commands.pop_back();
    Write();
}

/// What is too long loses steps, but no number: the older half becomes one command for each module.
std::string Journal::Text()
{
    std::string text = FormatJournal(m_content);
    if (text.size() > MaxSize)
    {
        std::vector<EditCommand>& rCommands = m_content.commands;
        const auto                middle    = rCommands.begin() + static_cast<std::ptrdiff_t>(rCommands.size() / 2);
        std::vector<EditCommand>  joined    = Joined({rCommands.begin(), middle});
        joined.insert(joined.end(), middle, rCommands.end());
        rCommands = std::move(joined);
        text      = FormatJournal(m_content);
    }
    if (text.size() > MaxSize)
    {
        throw Error(
            fmt::format("{}: the journal of edits is full, expected at most {} bytes; save the edits, then move "
                        "the file away",
                        m_path, MaxSize));
    }
    return text;
}

VOID Journal::Write()
{
    const std::string text = Text();
    if (m_isOfEarlierStart)
    {
        std::filesystem::rename(m_path, m_path + ".before");
        m_isOfEarlierStart = false;
    }
    tuningfile::ReplaceFile(m_path, {reinterpret_cast<const BYTE*>(text.data()), text.size()});
}

}  // namespace kirotune
