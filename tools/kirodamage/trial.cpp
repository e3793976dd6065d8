#include "tools/kirodamage/trial.h"

#include <cstdio>
#include <map>
#include <memory>

#include "parameters/modeentry.h"
#include "parameters/parameterparserinfo.h"
#include "parameters/parametersetmanager.h"
#include "parameters/tablemodule.h"
#include "schema/modules.h"
#include "tools/heapwatch/heapwatch.h"
#include "tools/kirodamage/coreuse.h"
#include "tools/kirodamage/errorlines.h"
#include "tools/kirodamage/heaplimit.h"
#include "tools/program/privatefile.h"
#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/modepath.h"
#include "tools/tuningfile/recordaccess.h"

namespace kirodamage
{

namespace
{

constexpr UINT32 FilesPerCamera = 16;     ///< of the accepted ones
constexpr UINT32 AnswerSize     = 16384;  ///< bytes of a text
constexpr UINT32 ModeCache      = 5;      ///< little enough for modes to be evicted

/// Reads all that a record holds, as the core might: counts must be true of what stands behind them.
class RecordReader
{
public:
    /// @return a sum over the bytes, so that no read is left out
    UINT64 Read(const tuning::RecordDescription& rRecord, const BYTE* pRecord)
    {
        UINT64 sum = 0;
        for (UINT32 index = 0; index < rRecord.memberCount; ++index)
        {
            const tuning::RecordMember& rMember = rRecord.pMembers[index];
            if (rMember.IsStored())
            {
                sum += ReadMember(rMember, tuningfile::ValuesOf(rMember, pRecord));
            }
        }
        return sum;
    }

private:
    /// Arrays may share their data: what was read as the same is not read again, or a walk would see far more than
    /// there is.
    bool WasRead(const tuning::RecordMember& rMember, const tuningfile::Values& rValues)
    {
        if (rMember.form != tuning::Form::Variable)
        {
            return false;
        }
        UINT32&    rCount  = m_read[{rValues.pFirst, &rMember}];
        const bool wasRead = rValues.count <= rCount;
        rCount             = std::max(rCount, rValues.count);
        return wasRead;
    }

    UINT64 ReadMember(const tuning::RecordMember& rMember, const tuningfile::Values& rValues)
    {
        if (WasRead(rMember, rValues))
        {
            return 0;
        }
        UINT64 sum = 0;
        for (UINT32 item = 0; item < rValues.count; ++item)
        {
            const BYTE* pValue = rValues.pFirst + static_cast<size_t>(item) * rMember.valueSize;
            if (rMember.type == tuning::ValueType::Record)
            {
                sum += Read(*rMember.pRecord, pValue);
                continue;
            }
            if (rMember.type == tuning::ValueType::Text)
            {
                sum += tuningfile::TextAt(pValue).size();
                continue;
            }
            sum += pValue[0] + pValue[rMember.valueSize - 1];
        }
        return sum;
    }

    std::map<std::pair<const BYTE*, const tuning::RecordMember*>, UINT32> m_read;  ///< items by place and member
};

/// What hosts and tools do with a store: all modules of all modes, and here and there a tool's questions.
class User
{
public:
    User(ParameterSetManager& rStore, bool isFileMode, std::mt19937_64& rRandom, TrialResult& rResult)
        : m_rStore(rStore), m_isFileMode(isFileMode), m_rRandom(rRandom), m_rResult(rResult)
    {
    }

    VOID UseAll()
    {
        std::vector<std::string>                 notes;
        const std::vector<tuningfile::ModeTable> tables = tuningfile::ReadModeTables(m_rStore, notes);
        for (size_t table = 0; table < tables.size(); ++table)
        {
            for (UINT32 mode = 0; mode < tables[table].modes.size(); ++mode)
            {
                UseBranch(static_cast<BYTE>(table), tuningfile::BranchOf(tables[table], mode));
            }
        }
    }

    UINT64 Sum() const
    {
        return m_sum;
    }

private:
    VOID UseBranch(BYTE table, const std::vector<TuningMode>& rBranch)
    {
        const UINT32 count = static_cast<UINT32>(rBranch.size());
        if (m_isFileMode)
        {
            const UINT64 complaints = errorlines::Count();
            (VOID) m_rStore.LoadMode(table, rBranch.data(), count, "campaign");
            Doubt(errorlines::Count() > complaints);
        }
        std::vector<ParameterModule*> held;
        for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
        {
            const UINT64     complaints = errorlines::Count();
            const bool       isOwn      = IsModuleOf(table, rBranch, rModule);
            ParameterModule* pModule =
                m_rStore.GetModuleInternal(table, rModule.pName, rModule.nameHash, rBranch.data(), count, nullptr);
            const bool isDoubted = errorlines::Count() > complaints;
            Doubt(isDoubted);
            if (pModule == nullptr)
            {
                Withheld(isOwn, isDoubted);
                continue;
            }
            held.push_back(pModule);
            ++m_rResult.fetched;
            // What a mode has from those above is read there.
            if (isOwn && rModule.pRecord != nullptr)
            {
                const VOID* pRecord = static_cast<TableModule*>(pModule)->Record();
                m_sum += RecordReader().Read(*rModule.pRecord, static_cast<const BYTE*>(pRecord));
                UseText(table, rBranch, rModule);
            }
        }
        for (ParameterModule* pModule : held)
        {
            m_rStore.ReleaseModule(pModule);
        }
        (VOID) m_rStore.GetActiveModes(table, m_answer.data(), AnswerSize);
        (VOID) m_rStore.GetChildModes(table, "0.0", m_answer.data(), AnswerSize);
        if (m_isFileMode && m_rRandom() % 2 == 0)
        {
            (VOID) m_rStore.UnloadMode(table, rBranch.data(), count);
        }
    }

    bool IsModuleOf(BYTE table, const std::vector<TuningMode>& rBranch, const tuning::ModuleDescription& rModule)
    {
        ModeEntry* pMode = m_rStore.GetModeEntry(table, rBranch.data(), static_cast<UINT32>(rBranch.size()));
        return pMode != nullptr && pMode->FindModule(rModule.nameHash) != nullptr;
    }

    VOID Doubt(bool isDoubted)
    {
        m_rResult.isDoubted = m_rResult.isUsable && (m_rResult.isDoubted || isDoubted);
    }

    /// A module that is there and cannot be had is nothing that a store may keep to itself.
    VOID Withheld(bool isThere, bool isSaid)
    {
        m_rResult.withheld += isThere ? 1 : 0;
        if (isThere && !isSaid)
        {
            (VOID) std::snprintf(m_rResult.fault, sizeof(m_rResult.fault), "withholds a module without a word");
        }
    }

    /// A tuning tool's view of a module: its values, and a step into one of its members.
    VOID UseText(BYTE table, const std::vector<TuningMode>& rBranch, const tuning::ModuleDescription& rModule)
    {
        const UINT32               count = static_cast<UINT32>(rBranch.size());
        std::string                path  = rModule.pName;
        PList<ParameterParserInfo> infos;
        if (m_rRandom() % 4 != 0 || !m_rStore.GetInfo(table, rBranch.data(), count, path.c_str(), infos) ||
            infos.Count() == 0)
        {
            return;
        }
        (VOID) m_rStore.GetValue(table, rBranch.data(), count, path.c_str(), nullptr, m_answer.data(), AnswerSize);
        const ParameterParserInfo& rInfo = infos[static_cast<UINT32>(m_rRandom() % infos.Count())];
        path += std::string(".") + rInfo.Name;
        if (rInfo.IsArray)
        {
            path += '[' + std::to_string(m_rRandom() % (UINT64{rInfo.Count} + 1)) + ']';
        }
        (VOID) m_rStore.GetValue(table, rBranch.data(), count, path.c_str(), nullptr, m_answer.data(), AnswerSize);
        (VOID) m_rStore.SetValue(table, rBranch.data(), count, rModule.pName, rInfo.Name, "1");
    }

    ParameterSetManager& m_rStore;
    const bool           m_isFileMode;
    std::mt19937_64&     m_rRandom;
    TrialResult&         m_rResult;
    std::vector<CHAR>    m_answer = std::vector<CHAR>(AnswerSize);
    UINT64               m_sum    = 0;
};

std::unique_ptr<ParameterSetManager> MakeStore(bool isFileMode)
{
    ParameterSetManager::Options options;
    options.activeModeCacheSize = ModeCache;
    options.fileMode            = isFileMode;
    return std::make_unique<ParameterSetManager>("campaign", tuning::TuningModules, options);
}

bool Load(ParameterSetManager& rStore, const DamagedFile& rFile, const std::string& rPath)
{
    return rFile.isFileMode ? rStore.LoadBinaryParameters(rPath.c_str())
                            : rStore.LoadBinaryParameters(rFile.bytes.data(), rFile.bytes.size());
}

/// Puts the file in the place of itself while it is in use.
VOID Replace(ParameterSetManager& rStore, const DamagedFile& rFile, bool toBuffer)
{
    if (rFile.isFileMode)
    {
        (VOID) rStore.ReloadBinaryParameters(toBuffer);
        return;
    }
    std::unique_ptr<ParameterSetManager> pOther = MakeStore(false);
    if (pOther->LoadBinaryParameters(rFile.bytes.data(), rFile.bytes.size()))
    {
        (VOID) rStore.UpdateParameters(std::move(pOther));
    }
}

VOID LoadAndUse(const DamagedFile& rFile, const std::string& rPath, TrialResult& rResult)
{
    std::mt19937_64                            random(rFile.useSeed);
    const UINT64                               complaints = errorlines::Count();
    const std::unique_ptr<ParameterSetManager> pStore     = MakeStore(rFile.isFileMode);
    rResult.isUsable                                      = Load(*pStore, rFile, rPath);
    User user(*pStore, rFile.isFileMode, random, rResult);
    rResult.isDoubted = rResult.isUsable && errorlines::Count() > complaints;
    user.UseAll();
    if (!rResult.isUsable)
    {
        // A refused file leaves nothing, but for the reason; asking must be safe all the same.
        if (rResult.fetched > 0 || pStore->GetErrorText().empty())
        {
            (VOID) std::snprintf(rResult.fault, sizeof(rResult.fault), "is refused without a reason or in part");
        }
        return;
    }
    Replace(*pStore, rFile, random() % 4 == 0);
    user.UseAll();
    volatile UINT64 sum = user.Sum();
    (VOID) sum;
}

/// A camera on the file. @return bytes that it leaves on purpose
INT64 LoadAndExpose(const DamagedFile& rFile, const std::string& rPath, TrialResult& rResult)
{
    std::mt19937_64  random(rFile.useSeed);
    TuningSetManager store("campaign");
    store.SetLiveTuningAutostart(false);
    if (!Load(store, rFile, rPath))
    {
        return 0;
    }
    const CoreUse use = RunCore(store, random);
    rResult.frames    = use.frames;
    return use.bytesLeft;
}

}  // namespace

DamagedFile MakeFile(const std::vector<Specimen>& rSpecimens, UINT64 seed, UINT64 number)
{
    std::mt19937_64 random(SeedOf(seed, number));
    const Specimen& rSpecimen = rSpecimens[random() % rSpecimens.size()];
    const auto      kind      = static_cast<DamageKind>(number % DamageKinds);
    DamagedFile     file{kind, rSpecimen.name, random() % 2 == 0, {}, random()};
    file.bytes = Damage(rSpecimen, kind, random);
    return file;
}

TrialResult TryFile(const DamagedFile& rFile)
{
    TrialResult result;
    result.kind = static_cast<size_t>(rFile.kind);
    const program::PrivateFile file(rFile.bytes);
    const std::string          path = file.Path();
    heapwatch::Start();
    LoadAndUse(rFile, path, result);
    INT64 leftOnPurpose = 0;
    if (result.isUsable && rFile.useSeed % FilesPerCamera == 0)
    {
        leftOnPurpose = LoadAndExpose(rFile, path, result);
    }
    const heapwatch::Report report = JudgeHeap(result);
    if (result.fault[0] == '\0' && report.kept > leftOnPurpose)
    {
        (VOID) std::snprintf(result.fault, sizeof(result.fault), "loses %lld bytes of memory",
                             report.kept - leftOnPurpose);
    }
    return result;
}

}  // namespace kirodamage
