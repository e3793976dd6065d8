#include "tools/tuningfile/check.h"

#include <algorithm>

#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/storelog.h"

namespace tuningfile
{

namespace
{

/// Visits each mode, which makes the store read the modules that it has not read yet.
VOID LoadAllModes(ParameterSetManager& rStore)
{
    std::vector<std::string>     notes;
    const std::vector<ModeTable> tables = ReadModeTables(rStore, notes);
    for (size_t table = 0; table < tables.size(); ++table)
    {
        for (UINT32 index = 0; index < tables[table].modes.size(); ++index)
        {
            std::vector<TuningMode> branch;
            for (std::optional<UINT32> mode = index; mode.has_value(); mode = tables[table].modes[*mode].parent)
            {
                const Mode& rMode = tables[table].modes[*mode];
                if (!tables[table].IsGroupEntry(*mode))
                {
                    TuningMode selector{};
                    selector.mode          = static_cast<ModeType>(rMode.mode);
                    selector.subMode.value = rMode.subMode;
                    branch.push_back(selector);
                }
            }
            std::reverse(branch.begin(), branch.end());
            rStore.LoadMode(static_cast<BYTE>(table), branch.data(), static_cast<UINT32>(branch.size()), "check");
        }
    }
}

}  // namespace

CheckReport CheckFile(const std::string& rPath)
{
    CheckReport report{};
    if (IsText(rPath))
    {
        const std::vector<BYTE>      bytes = CompileFile(rPath, NewestVersion);
        const StoreLog               log;
        ParameterSetManager::Options options;
        options.fileMode = false;
        ParameterSetManager store(nullptr, tuning::TuningModules, options);
        report.accepted = store.LoadBinaryParameters(bytes.data(), bytes.size());
        report.reason   = store.GetErrorText();
        report.lines    = log.Lines();
        return report;
    }
    const StoreLog      log;
    ParameterSetManager store(nullptr, tuning::TuningModules, ParameterSetManager::Options{});
    report.accepted = store.LoadBinaryParameters(rPath.c_str());
    report.reason   = store.GetErrorText();
    if (report.accepted)
    {
        LoadAllModes(store);
    }
    report.lines = log.Lines();
    return report;
}

}  // namespace tuningfile
