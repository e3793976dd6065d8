#include "tools/tuningfile/definitionoutput.h"

#include <cstring>
#include <unordered_map>

#include "parameters/parameterdefinitions.h"
#include "parameters/parameterutils.h"
#include "tools/tuningfile/slotwriter.h"

namespace tuningfile
{

namespace
{

constexpr UINT32 Unbounded = 0xFFFFFFFF;

class DefinitionWriter
{
public:
    VOID AddModule(const tuning::ModuleDescription& rModule)
    {
        const UINT32 structure = AddStructure(*rModule.pRecord);
        m_writer.Add<UINT8>(ParameterDefinitionType_Module);
        m_writer.Add(structure);
        m_writer.Add(rModule.nameHash);
        AddText(m_writer, rModule.pName);
        AddText(m_writer, "");
    }

    std::vector<BYTE> Take()
    {
        return std::move(m_writer.bytes);
    }

private:
    /// A text with its length in front, which counts the terminator.
    static VOID AddText(SlotWriter& rWriter, const CHAR* pText)
    {
        const UINT32 size = static_cast<UINT32>(std::strlen(pText) + 1);
        rWriter.Add(size);
        rWriter.AddText(pText, size);
    }

    /// The least and the greatest number of values are all that tells readers in which form a member is stored.
    VOID AddElement(SlotWriter& rWriter, const tuning::RecordMember& rMember)
    {
        const UINT32 structure = (rMember.pRecord != nullptr) ? AddStructure(*rMember.pRecord) : 0;
        const UINT32 minimum   = rMember.HasCount() ? 0 : rMember.count;
        const UINT32 maximum   = (rMember.form == tuning::Form::Variable) ? Unbounded : rMember.count;
        rWriter.Add<UINT8>(ParameterUtils::NativeType(rMember.type));
        rWriter.Add(structure);
        AddText(rWriter, rMember.pName);
        rWriter.Add<UINT16>(0);
        rWriter.Add(minimum);
        rWriter.Add(maximum);
        AddText(rWriter, "");
    }

    /// @return the ID of the structure, which is written at its first use, behind those that it is made of
    UINT32 AddStructure(const tuning::RecordDescription& rRecord)
    {
        const auto known = m_structures.find(&rRecord);
        if (known != m_structures.end())
        {
            return known->second;
        }
        SlotWriter elements(1);
        UINT32     count = 0;
        for (const tuning::RecordMember& rMember : rRecord.Members())
        {
            if (rMember.IsStored())
            {
                AddElement(elements, rMember);
                ++count;
            }
        }
        const UINT32 structure = static_cast<UINT32>(m_structures.size() + 1);
        m_structures.emplace(&rRecord, structure);
        const auto* pElements = reinterpret_cast<const CHAR*>(elements.bytes.data());
        m_writer.Add<UINT8>(ParameterDefinitionType_Structure);
        m_writer.Add(structure);
        AddText(m_writer, rRecord.pName);
        m_writer.Add(namehash::Checksum(pElements, static_cast<UINT32>(elements.bytes.size()), true, 0));
        m_writer.Add(count);
        m_writer.bytes.insert(m_writer.bytes.end(), elements.bytes.begin(), elements.bytes.end());
        return structure;
    }

    SlotWriter                                                   m_writer{1};
    std::unordered_map<const tuning::RecordDescription*, UINT32> m_structures;
};

}  // namespace

std::vector<BYTE> WriteDefinitions(const std::vector<const tuning::ModuleDescription*>& rModules)
{
    DefinitionWriter writer;
    for (const tuning::ModuleDescription* pModule : rModules)
    {
        writer.AddModule(*pModule);
    }
    return writer.Take();
}

}  // namespace tuningfile
