// The commands that compare a running camera with its tuning, and that write its edits as a patch of it.

#include "tools/kirotune/livesession.h"

#include <cstdio>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "tools/kirotune/livejournal.h"
#include "tools/kirotune/liveoutput.h"
#include "tools/program/commandfiles.h"
#include "tools/tuningfile/files.h"

namespace kirotune
{

VOID LiveSession::Diff(const std::string& rFile, const std::string& rPath)
{
    PrintChanges(m_camera.ChangesSince(ReadTuning(rFile), rPath, PrintRemark), m_isJson);
}

std::vector<PatchedNumber> LiveSession::NumbersToSave(const std::string& rTuning)
{
    const Journal journal(m_camera.Place(), m_camera.Device());
    return rTuning.empty() ? m_camera.NumbersOfJournal(journal, PrintRemark)
                           : m_camera.NumbersSince(ReadTuning(rTuning), journal, PrintRemark);
}

VOID LiveSession::Save(const std::string& rPatch, const std::string& rTuning)
{
    program::CommandFiles files;
    files.Reads("--file", rTuning);
    files.Writes("the patch", rPatch);
    files.Check();
    const std::vector<PatchedNumber> numbers = NumbersToSave(rTuning);
    if (numbers.empty())
    {
        throw liveclient::Error(
            fmt::format("camera at {}: no edits to save, {}", m_camera.Place(),
                        rTuning.empty() ? "expected some since it was started; --file compares it with its tuning"
                                        : "it holds what " + rTuning + " does"));
    }
    const std::string text = m_camera.PatchOf(numbers);
    tuningfile::ReplaceFile(rPatch, {reinterpret_cast<const BYTE*>(text.data()), text.size()});
    fmt::print(stderr, "{}: {} numbers\n", rPatch, numbers.size());
}

}  // namespace kirotune
