#include "tools/kirosim/loadedtuning.h"

#include <algorithm>
#include <cerrno>

#include <arpa/inet.h>
#include <fmt/format.h>
#include <unistd.h>

#include "tools/program/standardstreams.h"
#include "tools/recording/chunks.h"
#include "tools/tuningcheck/checkedfile.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/inputerror.h"
#include "tools/tuningfile/modepath.h"
#include "tools/tuningfile/textinput.h"

namespace kirosim
{

namespace
{

/// The store would only find that none of its ports can be bound.
bool IsAddressOfThisMachine(const CHAR* pAddress)
{
    sockaddr_in address = {};
    address.sin_family  = AF_INET;
    const INT32 probe   = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (probe < 0)
    {
        return true;  // a machine without IP is tuned from within
    }
    (VOID) inet_pton(AF_INET, pAddress, &address.sin_addr);  // the store has taken it for one
    const bool isForeign =
        bind(probe, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 && errno == EADDRNOTAVAIL;
    (VOID) close(probe);
    return !isForeign;
}

/// Compiles a text tuning, and says on stderr how much in it is odd or cannot be meant.
std::vector<BYTE> CompileText(const std::string& rPath)
{
    const std::string        text    = tuningfile::ReadText(rPath);
    const tuningfile::Tuning tuning  = tuningfile::ParseText(text, program::InputName(rPath));
    const std::string        summary = tuningcheck::Summary(tuningcheck::JudgeText(tuning, text, {}));
    if (!summary.empty())
    {
        fmt::print(stderr, "kirosim: warning: {}: {}; kirotune check {} tells them\n", tuning.source, summary, rPath);
    }
    return tuningfile::WriteBinary(tuning, tuningfile::NewestVersion);
}

}  // namespace

std::vector<TuningMode> DefaultSelectors()
{
    std::vector<TuningMode> selectors(static_cast<size_t>(ModeType::EnumModeType_COUNT));
    for (size_t level = 0; level < selectors.size(); ++level)
    {
        selectors[level].mode = static_cast<ModeType>(level);
    }
    return selectors;
}

LoadedTuning::LoadedTuning(const std::string& rPath, bool isLive, Source source, const CHAR* pLiveAddress)
    : m_isLive(isLive), m_manager("kirosim")
{
    m_manager.SetLiveTuningAutostart(isLive);
    if (isLive && !m_manager.SetLiveTuningAddress(pLiveAddress))
    {
        throw tuningfile::InputError(fmt::format("{}: no IPv4 address for live tuning", pLiveAddress));
    }
    if (isLive && !IsAddressOfThisMachine(pLiveAddress))
    {
        throw tuningfile::InputError(fmt::format("{}: no address of this machine for live tuning", pLiveAddress));
    }
    const bool              isText = tuningfile::IsText(rPath);
    const std::vector<BYTE> bytes  = isText ? CompileText(rPath) : tuningfile::ReadBytes(rPath);
    m_reference                    = {rPath, recording::ChecksumOf(bytes), bytes.size()};
    bool isLoaded                  = false;
    if (isText)
    {
        isLoaded = m_manager.LoadBinaryParameters(bytes.data(), bytes.size());
    }
    else if (source == Source::File)
    {
        isLoaded = m_manager.LoadBinaryParameters(rPath.c_str());
    }
    else
    {
        m_file.emplace(bytes);
        isLoaded = m_manager.LoadBinaryParameters(m_file->Path().c_str());
    }
    if (!isLoaded)
    {
        throw tuningfile::InputError(program::InputName(rPath) + ": " + m_manager.GetErrorText());
    }
}

std::optional<std::string> LoadedTuning::MissingMode(const std::vector<TuningMode>& rSelectors)
{
    size_t count = rSelectors.size();
    while (count > 0 && rSelectors[count - 1].subMode.value == 0)
    {
        --count;
    }
    if (count == 0 || m_manager.GetModeEntry(0, rSelectors.data(), static_cast<UINT32>(count)) != nullptr)
    {
        return std::nullopt;
    }
    return tuningfile::FormatModeName(
        {static_cast<UINT16>(rSelectors[count - 1].mode), rSelectors[count - 1].subMode.value});
}

StatsTuningData LoadedTuning::Data(const std::vector<TuningMode>& rSelectors)
{
    // A camera that runs for days goes from mode to mode and back.
    const auto isSame = [&rSelectors](const std::vector<TuningMode>& rKept)
    {
        return std::equal(rKept.begin(), rKept.end(), rSelectors.begin(), rSelectors.end(),
                          [](const TuningMode& rOne, const TuningMode& rOther)
                          { return rOne.mode == rOther.mode && rOne.subMode.value == rOther.subMode.value; });
    };
    auto kept = std::find_if(m_selectors.begin(), m_selectors.end(), isSame);
    if (kept == m_selectors.end())
    {
        kept = m_selectors.insert(kept, rSelectors);
    }
    return {&m_manager, kept->data(), static_cast<UINT>(kept->size())};
}

}  // namespace kirosim
