#include "tools/kirodamage/trial.h"

#include <cstdio>
#include <fstream>
#include <memory>

#include "parameters/parameterparserinfo.h"
#include "parameters/parametersetmanager.h"
#include "parameters/tablemodule.h"
#include "schema/modules.h"
#include "tools/kirodamage/heapwatch.h"
#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/modepath.h"
#include "tools/tuningfile/recordaccess.h"

namespace kirodamage
{

namespace
{

constexpr UINT32 Branches   = 4;      ///< that are asked for modules
constexpr UINT32 AnswerSize = 16384;  ///< bytes of a text
constexpr UINT32 ModeCache  = 5;      ///< little enough for modes to be evicted

/// Reads all that a record holds, as the core might: counts must be true of what stands behind them.
class RecordReader
{
public:
    /// @return a sum over the bytes, so that no read is left out
    UINT64 Read(const tuning::RecordDescription& rRecord, const BYTE* pRecord)
    {
        UINT64 sum = 0;
        for (UINT32 index = 0; index < rRecord.memberCount && m_bytesLeft > 0; ++index)
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
    UINT64 ReadMember(const tuning::RecordMember& rMember, const tuningfile::Values& rValues)
    {
        UINT64 sum = 0;
        for (UINT32 item = 0; item < rValues.count && m_bytesLeft > 0; ++item)
        {
            const BYTE* pValue = rValues.pFirst + static_cast<size_t>(item) * rMember.valueSize;
            m_bytesLeft -= std::min<UINT64>(m_bytesLeft, rMember.valueSize);
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

    /// Arrays may share their data, so that a walk sees far more than there is.
    UINT64 m_bytesLeft = UINT64{1} << 20;
};

/// What hosts and tools do with a store, at random.
class User
{
public:
    User(ParameterSetManager& rStore, std::mt19937_64& rRandom) : m_rStore(rStore), m_rRandom(rRandom)
    {
    }

    VOID UseAll()
    {
        std::vector<std::string>                 notes;
        const std::vector<tuningfile::ModeTable> tables = tuningfile::ReadModeTables(m_rStore, notes);
        for (UINT32 count = 0; count < Branches && !tables.empty(); ++count)
        {
            const size_t                 index  = m_rRandom() % tables.size();
            const tuningfile::ModeTable& rTable = tables[index];
            if (!rTable.modes.empty())
            {
                const UINT32 mode = static_cast<UINT32>(m_rRandom() % rTable.modes.size());
                UseBranch(static_cast<BYTE>(index), tuningfile::BranchOf(rTable, mode));
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
        (VOID) m_rStore.LoadMode(table, rBranch.data(), count, "campaign");
        std::vector<ParameterModule*> held;
        for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
        {
            ParameterModule* pModule =
                m_rStore.GetModuleInternal(table, rModule.pName, rModule.nameHash, rBranch.data(), count, nullptr);
            if (pModule == nullptr)
            {
                continue;
            }
            held.push_back(pModule);
            if (rModule.pRecord != nullptr)
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
        if (m_rRandom() % 2 == 0)
        {
            (VOID) m_rStore.UnloadMode(table, rBranch.data(), count);
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
    std::mt19937_64&     m_rRandom;
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

/// @return whether the store took the file
bool LoadAndUse(const DamagedFile& rFile, const std::string& rPath)
{
    std::mt19937_64                            random(rFile.useSeed);
    const std::unique_ptr<ParameterSetManager> pStore = MakeStore(rFile.isFileMode);
    if (!Load(*pStore, rFile, rPath))
    {
        // A refused file leaves nothing: asking must be safe all the same.
        User(*pStore, random).UseAll();
        return false;
    }
    User user(*pStore, random);
    user.UseAll();
    Replace(*pStore, rFile, random() % 4 == 0);
    user.UseAll();
    volatile UINT64 sum = user.Sum();
    (VOID) sum;
    return true;
}

}  // namespace

DamagedFile MakeFile(const std::vector<Specimen>& rSpecimens, UINT64 seed, UINT64 number)
{
    constexpr UINT64 Spread = 0x9E3779B97F4A7C15;  // seeds that are near one another must not give the same files

    std::mt19937_64 random((seed + 1) * Spread + number);
    const Specimen& rSpecimen = rSpecimens[random() % rSpecimens.size()];
    const auto      kind      = static_cast<DamageKind>(number % DamageKinds);
    DamagedFile     file{kind, rSpecimen.name, random() % 2 == 0, {}, random()};
    file.bytes = Damage(rSpecimen, kind, random);
    return file;
}

TrialResult TryFile(const DamagedFile& rFile, const std::string& rPath)
{
    TrialResult result;
    result.kind = rFile.kind;
    if (rFile.isFileMode)
    {
        std::ofstream stream(rPath, std::ios::binary | std::ios::trunc);
        stream.write(reinterpret_cast<const CHAR*>(rFile.bytes.data()),
                     static_cast<std::streamsize>(rFile.bytes.size()));
    }
    heapwatch::Start();
    result.isUsable                = LoadAndUse(rFile, rPath);
    const heapwatch::Report report = heapwatch::Read();
    result.largest                 = report.largest;
    result.most                    = report.most;
    if (report.largest > MaxAllocation)
    {
        (VOID) std::snprintf(result.fault, sizeof(result.fault), "allocates %llu bytes at once", report.largest);
    }
    else if (report.kept > 0)
    {
        (VOID) std::snprintf(result.fault, sizeof(result.fault), "loses %lld bytes of memory", report.kept);
    }
    return result;
}

}  // namespace kirodamage
