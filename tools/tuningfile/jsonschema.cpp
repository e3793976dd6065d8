#include "tools/tuningfile/schematext.h"

#include <algorithm>
#include <cctype>
#include <limits>
#include <set>

#include <fmt/format.h>

#include "parameters/binaryfileformat.h"
#include "schema/modules.h"
#include "tools/meaning/modulewords.h"
#include "tools/meaning/wordtext.h"
#include "tools/tuningfile/modepath.h"
#include "tools/tuningfile/schemanodes.h"
#include "tools/tuningfile/triggernames.h"

namespace tuningfile
{

namespace
{

TextNode TextOfLength(size_t maximum)
{
    TextNode node = TypeNode("string");
    node.Add("maxLength", TextNode::Scalar(std::to_string(maximum)));
    return node;
}

template <typename T> TextNode IntegerNode()
{
    TextNode node = TypeNode("integer");
    node.Add("minimum", TextNode::Scalar(std::to_string(+std::numeric_limits<T>::min())));
    node.Add("maximum", TextNode::Scalar(std::to_string(+std::numeric_limits<T>::max())));
    return node;
}

/// Puts a scalar in the place of the one of that name, or behind all others.
VOID Set(TextNode& rMap, std::string_view name, std::string value)
{
    for (TextItem& rItem : rMap.items)
    {
        if (rItem.name == name)
        {
            rItem.value = TextNode::Scalar(std::move(value));
            return;
        }
    }
    rMap.Add(std::string(name), TextNode::Scalar(std::move(value)));
}

class SchemaWriter
{
public:
    TextNode Write();

private:
    TextNode ValueNode(const tuning::RecordMember& rMember, const tuning::MemberWords& rWords);
    TextNode MemberNode(const tuning::RecordMember& rMember, const tuning::MemberWords& rWords);
    TextNode DescribedNode(const tuning::RecordDescription& rRecord, const tuning::RecordMember& rMember,
                           const tuning::MemberWords& rWords);
    TextNode ModulesNode();
    TextNode ModeNode() const;
    VOID     AddRecord(const tuning::RecordWords& rWords);
    VOID     AddEnum(const tuning::EnumWords& rWords);

    TextNode              m_definitions = TextNode::Map();
    std::set<const VOID*> m_known;  ///< records and enumerations that have a definition
};

VOID SchemaWriter::AddEnum(const tuning::EnumWords& rWords)
{
    const tuning::EnumDescription& rEnum = *rWords.pEnum;
    if (!m_known.insert(&rEnum).second)
    {
        return;
    }
    TextNode  names  = TextNode::Map();
    TextNode& rItems = names.Add("oneOf", TextNode::List());
    for (UINT32 index = 0; index < rEnum.count; ++index)
    {
        TextNode name = TextNode::Map();
        name.Add("const", TextNode::Quoted(rEnum.pEnumerators[index].pName));
        name.Add("description", TextNode::Quoted(rWords.pEnumerators[index].meaning));
        rItems.Add(std::move(name));
    }
    m_definitions.Add(rEnum.pName, AnyOf(std::move(names), IntegerNode<INT32>()));
}

VOID SchemaWriter::AddRecord(const tuning::RecordWords& rWords)
{
    const tuning::RecordDescription& rRecord = *rWords.pRecord;
    if (!m_known.insert(&rRecord).second)
    {
        return;
    }
    TextNode properties = TextNode::Map();
    for (UINT32 index = 0; index < rRecord.memberCount; ++index)
    {
        if (rRecord.pMembers[index].IsStored())
        {
            properties.Add(rRecord.pMembers[index].pName,
                           DescribedNode(rRecord, rRecord.pMembers[index], rWords.pMembers[index]));
        }
    }
    m_definitions.Add(rRecord.pName, ObjectNode(std::move(properties)));
}

/// Adds the bounds beyond which a check finds an error.
VOID AddRange(TextNode& rNode, const tuning::Words& rWords)
{
    const tuning::Range& rRange = rWords.odd.IsGiven() ? rWords.odd : rWords.range;
    if (!rRange.IsGiven())
    {
        return;
    }
    if (rRange.low != -tuning::Range::Unlimited)
    {
        Set(rNode, rRange.lowOut ? "exclusiveMinimum" : "minimum", meaning::NumberText(rRange.low));
    }
    if (rRange.high != tuning::Range::Unlimited)
    {
        Set(rNode, rRange.highOut ? "exclusiveMaximum" : "maximum", meaning::NumberText(rRange.high));
    }
}

TextNode NumberNode(tuning::ValueType type)
{
    switch (type)
    {
    case tuning::ValueType::Int8:
        return IntegerNode<INT8>();
    case tuning::ValueType::UInt8:
        return IntegerNode<UINT8>();
    case tuning::ValueType::Int16:
        return IntegerNode<INT16>();
    case tuning::ValueType::UInt16:
        return IntegerNode<UINT16>();
    case tuning::ValueType::Int32:
        return IntegerNode<INT32>();
    case tuning::ValueType::UInt32:
        return IntegerNode<UINT32>();
    case tuning::ValueType::Int64:
        return IntegerNode<INT64>();
    case tuning::ValueType::UInt64:
        return IntegerNode<UINT64>();
    case tuning::ValueType::Boolean:
        return TypeNode("boolean");
    case tuning::ValueType::Text:
        return TypeNode("string");
    default:
        return TypeNode("number");
    }
}

TextNode SchemaWriter::ValueNode(const tuning::RecordMember& rMember, const tuning::MemberWords& rWords)
{
    if (rMember.type == tuning::ValueType::Record)
    {
        AddRecord(*rWords.pRecord);
        return ReferenceTo(rMember.pRecord->pName);
    }
    if (rMember.type == tuning::ValueType::Enum)
    {
        AddEnum(*rWords.pEnum);
        return ReferenceTo(rMember.pEnum->pName);
    }
    TextNode node = NumberNode(rMember.type);
    AddRange(node, rWords.words);
    return node;
}

TextNode SchemaWriter::MemberNode(const tuning::RecordMember& rMember, const tuning::MemberWords& rWords)
{
    if (!rMember.IsArray())
    {
        return ValueNode(rMember, rWords);
    }
    TextNode list = TypeNode("array");
    list.Add("items", ValueNode(rMember, rWords));
    if (rMember.form == tuning::Form::Variable)
    {
        const tuning::Range& rEntries = rWords.words.entries;
        list.Add("minItems", TextNode::Scalar(meaning::NumberText(rEntries.low)));
        if (rEntries.high != tuning::Range::Unlimited)
        {
            list.Add("maxItems", TextNode::Scalar(meaning::NumberText(rEntries.high)));
        }
        return list;
    }
    list.Add("minItems", TextNode::Scalar(std::to_string(rMember.count)));
    list.Add("maxItems", TextNode::Scalar(std::to_string(rMember.count)));

    TextNode  filled    = TypeNode("object");
    TextNode& rRequired = filled.Add("required", TextNode::List());
    rRequired.Add(TextNode::Quoted("fill"));
    filled.Add("additionalProperties", ValueNode(rMember, rWords));
    return AnyOf(std::move(list), std::move(filled));
}

/// The value that a tuner writes first, as JSON has it: names in quotes, but for flags.
TextNode StartNode(std::string_view start)
{
    const auto  isOfName = [](CHAR letter) { return std::isalpha(static_cast<unsigned char>(letter)) != 0; };
    std::string json;
    if (start == "true" || start == "false")
    {
        return TextNode::Scalar(std::string(start));
    }
    for (size_t at = 0; at < start.size();)
    {
        const size_t end = start.find_first_of("[]{},: ", at);
        const size_t one = (end == at) ? at + 1 : std::min(end, start.size());
        json += isOfName(start[at]) ? fmt::format("\"{}\"", start.substr(at, one - at))
                                    : std::string(start.substr(at, one - at));
        at = one;
    }
    return TextNode::Scalar(std::move(json));
}

/// Names that stand for entries of the trigger bank.
TextNode TriggerNode()
{
    TextNode  node   = TextNode::Map();
    TextNode& rNames = node.Add("enum", TextNode::List());
    for (const std::string& rName : TriggerNames())
    {
        rNames.Add(TextNode::Quoted(rName));
    }
    return node;
}

/// A member with its words. "unit" is no word of JSON Schema: editors pass over it, programs read it.
TextNode SchemaWriter::DescribedNode(const tuning::RecordDescription& rRecord, const tuning::RecordMember& rMember,
                                     const tuning::MemberWords& rWords)
{
    const tuning::Words& rText = rWords.words;
    TextNode             node  = TextNode::Map();
    node.Add("title", TextNode::Quoted(rMember.pName));
    node.Add("description", TextNode::Quoted(meaning::FullText(rText)));
    if (const std::string unit = meaning::UnitText(rText.unit); !unit.empty())
    {
        node.Add("unit", TextNode::Quoted(unit));
    }
    if (rText.start != nullptr)
    {
        node.Add("default", StartNode(rText.start));
    }
    TextNode& rForms = node.Add("anyOf", TextNode::List());
    rForms.Add(MemberNode(rMember, rWords));
    if (BankBeside(rRecord, rMember) != nullptr)
    {
        rForms.Add(TriggerNode());
    }
    rForms.Add(TypeNode("null"));
    return node;
}

TextNode SchemaWriter::ModulesNode()
{
    TextNode properties = TextNode::Map();
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        if (const tuning::RecordWords* pWords = meaning::WordsOf(rModule))
        {
            AddRecord(*pWords);
            TextNode& rNode = properties.Add(rModule.pName, ReferenceTo(rModule.pRecord->pName));
            rNode.Add("description", TextNode::Quoted(meaning::SentenceOf(*pWords)));
        }
    }
    return ObjectNode(std::move(properties));
}

TextNode SchemaWriter::ModeNode() const
{
    TextNode properties = TextNode::Map();
    properties.Add("modules", ReferenceTo("modules"));
    properties.Add("children", ReferenceTo("modes"));
    properties.Add("link", TypeNode("string"));
    properties.Add("preserve", TypeNode("boolean"));
    properties.Add("group", IntegerNode<UINT8>());
    return ObjectNode(std::move(properties));
}

TextNode SchemaWriter::Write()
{
    m_definitions.Add("modules", ModulesNode());
    m_definitions.Add("mode", ModeNode());

    TextNode& rModes  = m_definitions.Add("modes", TypeNode("object"));
    TextNode  pattern = TextNode::Map();
    pattern.Add("pattern", TextNode::Quoted(ModePattern()));
    rModes.Add("propertyNames", std::move(pattern));
    rModes.Add("additionalProperties", ReferenceTo("mode"));

    TextNode origin = TextNode::Map();
    origin.Add("createdBy", TextOfLength(BinaryFileFormat::CreatedBySize));
    origin.Add("binaryTag", TextOfLength(BinaryFileFormat::BinaryTagSize));

    TextNode table = TextNode::Map();
    table.Add("name", TypeNode("string"));
    table.Add("modes", ReferenceTo("modes"));
    TextNode tables = TypeNode("array");
    tables.Add("items", ObjectNode(std::move(table)));

    TextNode properties = TextNode::Map();
    properties.Add("tuning", ObjectNode(std::move(origin)));
    properties.Add("modes", ReferenceTo("modes"));
    properties.Add("tables", std::move(tables));

    TextNode root = TextNode::Map();
    root.Add("$schema", TextNode::Quoted("https://json-schema.org/draft/2020-12/schema"));
    root.Add("title", TextNode::Quoted("Tuning"));
    TextNode object = ObjectNode(std::move(properties));
    for (auto& [rName, rValue] : object.items)
    {
        root.Add(rName, std::move(rValue));
    }
    TextNode privateNames = TextNode::Map();
    privateNames.Add("^x-", TextNode::Map());
    root.Add("patternProperties", std::move(privateNames));
    root.Add("$defs", std::move(m_definitions));
    return root;
}

}  // namespace

std::string JsonSchema()
{
    return ToJson(SchemaWriter().Write());
}

}  // namespace tuningfile
