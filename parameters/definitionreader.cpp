#include "parameters/definitionreader.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "parameters/parameterlogging.h"
#include "parameters/parameterutils.h"
#include "schema/namehash.h"

namespace
{

/// Walks the records of a definition section. Every step answers false once the section ends early.
class DefinitionReader
{
public:
    DefinitionReader(const BYTE* pSection, UINT32 size, UINT32 alignment, const IParameterLoggingAPI* pLog,
                     ParameterDefinitions::ModuleMap& rModules, ParameterDefinitions::StructureMap& rStructures)
        : m_pSection(pSection), m_size(size), m_alignment(alignment), m_pLog(pLog), m_rModules(rModules),
          m_rStructures(rStructures)
    {
    }

    bool ReadAll()
    {
        while (m_position < m_size)
        {
            if (!ReadRecord())
            {
                return false;
            }
        }
        return true;
    }

private:
    bool ReadRecord()
    {
        BYTE kind = 0;
        if (!Read(kind))
        {
            return false;
        }
        switch (kind)
        {
        case ParameterDefinitionType_ScenarioMode:
            return SkipBytes(1) && SkipText() && SkipBytes(1);
        case ParameterDefinitionType_ScenarioSubMode:
            return SkipBytes(3) && SkipText() && SkipBytes(1);
        case ParameterDefinitionType_Pipeline:
            return SkipBytes(2) && SkipText() && SkipText();
        case ParameterDefinitionType_Module:
            return ReadModule();
        case ParameterDefinitionType_Structure:
            return ReadStructure();
        case ParameterDefinitionType_EnumDefinition:
            return SkipEnumeration();
        default:
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "Error: Unexpected type found in definition table (%u)\n", kind);
            return false;
        }
    }

    bool ReadModule()
    {
        ParameterDefinitionModule module;
        UINT64                    nameHash = 0;
        std::string_view          name;
        if (!Read(module.StructureID) || !Read(nameHash) || !ReadText(name, &module.NamePosition) || !SkipText())
        {
            return false;
        }
        const auto [entry, isNew] = m_rModules.try_emplace(nameHash, module);
        if (!isNew)
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "Error: Duplicate structure Hash (%llu) found in definition table: %s / %s\n",
                                    nameHash, TextAt(entry->second.NamePosition).c_str(), TextOf(name).c_str());
        }
        return true;
    }

    bool ReadStructure()
    {
        UINT32           id = 0;
        std::string_view name;
        UINT64           namePosition = 0;
        UINT64           hash         = 0;
        UINT32           childCount   = 0;
        if (!Read(id) || !ReadText(name, &namePosition) || !Read(hash) || !Read(childCount))
        {
            return false;
        }
        const auto [entry, isNew] = m_rStructures.try_emplace(id);
        ParameterDefinitionStructure  dropped;
        ParameterDefinitionStructure& rStructure = isNew ? entry->second : dropped;
        rStructure.StructureID                   = id;
        rStructure.NamePosition                  = namePosition;
        rStructure.Members.Reserve(static_cast<UINT32>(std::min<UINT64>(childCount, BytesLeft() / MinElementBytes)));
        bool complete = true;
        for (UINT32 child = 0; child < childCount && complete; ++child)
        {
            complete = ReadElement(rStructure);
        }
        if (!isNew)
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "Error: Duplicate structure ID (%u) found in definition table: %s / %s\n", id,
                                    TextAt(entry->second.NamePosition).c_str(), TextOf(name).c_str());
        }
        return complete;
    }

    bool ReadElement(ParameterDefinitionStructure& rStructure)
    {
        ParameterDefinitionElementInfo info;
        BYTE                           type = 0;
        std::string_view               name;
        UINT32                         minimum = 0;
        if (!Read(type) || !Read(info.ID) || !ReadText(name) || !Read(info.Flags) || !Read(minimum) ||
            !Read(info.MaxCount) || !SkipText())
        {
            return false;
        }
        info.Type = static_cast<ParameterDefinitionType>(type);
        info.Flags |= ParameterDefinitionElementInfo::FlagsFromCounts(minimum, info.MaxCount);

        // The stored length counts the terminator, the hash does not.
        const UINT32 nameLength = static_cast<UINT32>(name.size());
        const UINT64 nameHash   = namehash::Checksum(name.data(), (nameLength > 0) ? nameLength - 1 : 0, true, 0);
        if (rStructure.Members.Append(nameHash, info).IsRepeated)
        {
            ParameterLogging::Write(m_pLog, ParameterLogging::Error,
                                    "Duplicated hash found in Children (%llu) object %s\n", nameHash,
                                    TextOf(name).c_str());
        }
        return true;
    }

    /// Enumerations are not kept: members of enumerated type hold the stored integers.
    bool SkipEnumeration()
    {
        UINT32 valueCount = 0;
        if (!SkipBytes(4) || !SkipText() || !SkipBytes(8) || !Read(valueCount))
        {
            return false;
        }
        for (UINT32 value = 0; value < valueCount; ++value)
        {
            if (!SkipBytes(5) || !SkipText() || !SkipText())
            {
                return false;
            }
        }
        return true;
    }

    UINT64 BytesLeft() const
    {
        return (m_position < m_size) ? m_size - m_position : 0;
    }

    template <typename T> bool Read(T& rValue)
    {
        return ParameterUtils::ReadField(rValue, m_pSection, m_size, m_position, m_alignment, m_pLog);
    }

    /// Raw bytes have no slot.
    bool SkipBytes(UINT32 count)
    {
        if (!ParameterUtils::HasBytes(m_size, m_position, count, m_pLog))
        {
            return false;
        }
        m_position += count;
        return true;
    }

    /// A skipped text is not padded.
    bool SkipText()
    {
        UINT32 length = 0;
        return Read(length) && SkipBytes(length);
    }

    /// @param rText     all stored bytes, the terminator included
    /// @param pPosition receives where the text's field begins, for TextAt; may be null
    bool ReadText(std::string_view& rText, UINT64* pPosition = nullptr)
    {
        if (pPosition != nullptr)
        {
            *pPosition = m_position;
        }
        UINT32 length = 0;
        if (!Read(length))
        {
            return false;
        }
        const UINT64 start = m_position;
        if (!SkipBytes(length))
        {
            return false;
        }
        rText      = {reinterpret_cast<const CHAR*>(m_pSection + start), length};
        m_position = start + ParameterUtils::Padded(length, m_alignment);
        return true;
    }

    /// @return the text of a field that was read before
    std::string TextAt(UINT64 position)
    {
        const UINT64     here = std::exchange(m_position, position);
        std::string_view name;
        (VOID) ReadText(name);
        m_position = here;
        return TextOf(name);
    }

    static std::string TextOf(std::string_view stored)
    {
        return std::string(stored.substr(0, stored.find('\0')));
    }

    /// Of a member without a name: what a count of members may claim.
    static constexpr UINT64 MinElementBytes = 23;

    const BYTE* const                   m_pSection;
    const UINT64                        m_size;
    const UINT32                        m_alignment;
    const IParameterLoggingAPI* const   m_pLog;
    ParameterDefinitions::ModuleMap&    m_rModules;
    ParameterDefinitions::StructureMap& m_rStructures;
    UINT64                              m_position = 0;
};

}  // namespace

bool ReadDefinitionSection(const BYTE* pSection, UINT32 size, UINT32 alignment, const IParameterLoggingAPI* pLog,
                           ParameterDefinitions::ModuleMap& rModules, ParameterDefinitions::StructureMap& rStructures)
{
    return DefinitionReader(pSection, size, alignment, pLog, rModules, rStructures).ReadAll();
}
