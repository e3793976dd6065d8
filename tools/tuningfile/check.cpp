#include "tools/tuningfile/check.h"

#include "tools/program/privatefile.h"
#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/modepath.h"
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
            const std::vector<TuningMode> branch = BranchOf(tables[table], index);
            rStore.LoadMode(static_cast<BYTE>(table), branch.data(), static_cast<UINT32>(branch.size()), "check");
        }
    }
}

}  // namespace

CheckReport CheckTuning(const Tuning& rTuning)
{
    CheckReport                  report{};
    const std::vector<BYTE>      bytes = WriteBinary(rTuning, NewestVersion);
    const StoreLog               log;
    ParameterSetManager::Options options;
    options.fileMode = false;
    ParameterSetManager store(nullptr, tuning::TuningModules, options);
    report.accepted = store.LoadBinaryParameters(bytes.data(), bytes.size());
    report.reason   = store.GetErrorText();
    report.lines    = log.Lines();
    return report;
}

CheckReport CheckParameterFile(const std::string& rPath)
{
    CheckReport                report{};
    const program::PrivateFile file(ReadBytes(rPath));  // a pipe is read once
    const StoreLog             log;
    ParameterSetManager        store(nullptr, tuning::TuningModules, ParameterSetManager::Options{});
    report.accepted = store.LoadBinaryParameters(file.Path().c_str());
    report.reason   = store.GetErrorText();
    if (report.accepted)
    {
        LoadAllModes(store);
    }
    report.lines = log.Lines();
    return report;
}

}  // namespace tuningfile
