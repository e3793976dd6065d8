#include "tools/tuningfile/schematext.h"

#include <limits>
#include <set>

#include <fmt/format.h>

#include "parameters/binaryfileformat.h"
#include "parameters/modenames.h"
#include "schema/modules.h"
#include "tools/tuningfile/textnode.h"

namespace tuningfile
{

namespace
{

TextNode Text(std::string_view text)
{
    return TextNode::Quoted(text);
}

TextNode TypeNode(std::string_view type)
{
    TextNode node = TextNode::Map();
    node.Add("type", Text(type));
    return node;
}

TextNode ReferenceTo(std::string_view definition)
{
    TextNode node = TextNode::Map();
    node.Add("$ref", Text(fmt::format("#/$defs/{}", definition)));
    return node;
}

TextNode AnyOf(TextNode first, TextNode second)
{
    TextNode  node   = TextNode::Map();
    TextNode& rItems = node.Add("anyOf", TextNode::List());
    rItems.Add(std::move(first));
    rItems.Add(std::move(second));
    return node;
}

TextNode TextOfLength(size_t maximum)
{
    TextNode node = TypeNode("string");
    node.Add("maxLength", TextNode::Scalar(std::to_string(maximum)));
    return node;
}

/// A map of given members and no others.
TextNode ObjectNode(TextNode properties)
{
    TextNode node = TypeNode("object");
    node.Add("additionalProperties", TextNode::Scalar("false"));
    node.Add("properties", std::move(properties));
    return node;
}

template <typename T> TextNode IntegerNode()
{
    TextNode node = TypeNode("integer");
    node.Add("minimum", TextNode::Scalar(std::to_string(+std::numeric_limits<T>::min())));
    node.Add("maximum", TextNode::Scalar(std::to_string(+std::numeric_limits<T>::max())));
    return node;
}

class SchemaWriter
{
public:
    TextNode Write();

private:
    TextNode ValueNode(const tuning::RecordMember& rMember);
    TextNode MemberNode(const tuning::RecordMember& rMember);
    TextNode ModulesNode();
    TextNode ModeNode() const;
    VOID     AddRecord(const tuning::RecordDescription& rRecord);
    VOID     AddEnum(const tuning::EnumDescription& rEnum);

    TextNode              m_definitions = TextNode::Map();
    std::set<const VOID*> m_known;  ///< records and enumerations that have a definition
};

VOID SchemaWriter::AddEnum(const tuning::EnumDescription& rEnum)
{
    if (m_known.insert(&rEnum).second)
    {
        TextNode  names  = TextNode::Map();
        TextNode& rItems = names.Add("enum", TextNode::List());
        for (UINT32 index = 0; index < rEnum.count; ++index)
        {
            rItems.Add(Text(rEnum.pEnumerators[index].pName));
        }
        m_definitions.Add(rEnum.pName, AnyOf(std::move(names), IntegerNode<INT32>()));
    }
}

VOID SchemaWriter::AddRecord(const tuning::RecordDescription& rRecord)
{
    if (!m_known.insert(&rRecord).second)
    {
        return;
    }
    TextNode properties = TextNode::Map();
    for (const tuning::RecordMember& rMember : rRecord.Members())
    {
        if (rMember.IsStored())
        {
            properties.Add(rMember.pName, AnyOf(MemberNode(rMember), TypeNode("null")));
        }
    }
    m_definitions.Add(rRecord.pName, ObjectNode(std::move(properties)));
}

TextNode SchemaWriter::ValueNode(const tuning::RecordMember& rMember)
{
    switch (rMember.type)
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
    case tuning::ValueType::Float:
    case tuning::ValueType::Double:
        return TypeNode("number");
    case tuning::ValueType::Boolean:
        return TypeNode("boolean");
    case tuning::ValueType::Text:
        return TypeNode("string");
    case tuning::ValueType::Enum:
        AddEnum(*rMember.pEnum);
        return ReferenceTo(rMember.pEnum->pName);
    case tuning::ValueType::Record:
        break;
    }
    AddRecord(*rMember.pRecord);
    return ReferenceTo(rMember.pRecord->pName);
}

TextNode SchemaWriter::MemberNode(const tuning::RecordMember& rMember)
{
    if (rMember.form != tuning::Form::Fixed && rMember.form != tuning::Form::Variable)
    {
        return ValueNode(rMember);
    }
    TextNode list = TypeNode("array");
    list.Add("items", ValueNode(rMember));
    if (rMember.form == tuning::Form::Variable)
    {
        return list;
    }
    list.Add("minItems", TextNode::Scalar(std::to_string(rMember.count)));
    list.Add("maxItems", TextNode::Scalar(std::to_string(rMember.count)));

    TextNode  filled    = TypeNode("object");
    TextNode& rRequired = filled.Add("required", TextNode::List());
    rRequired.Add(Text("fill"));
    filled.Add("additionalProperties", ValueNode(rMember));
    return AnyOf(std::move(list), std::move(filled));
}

TextNode SchemaWriter::ModulesNode()
{
    TextNode properties = TextNode::Map();
    for (const tuning::ModuleDescription& rModule : tuning::TuningModules)
    {
        if (rModule.pRecord != nullptr)
        {
            AddRecord(*rModule.pRecord);
            properties.Add(rModule.pName, ReferenceTo(rModule.pRecord->pName));
        }
    }
    return ObjectNode(std::move(properties));
}

/// Names of modes: a level and a sub-mode, each by name or by number.
std::string ModePattern()
{
    std::string pattern = "^(Default|[0-9]+\\.[0-9]+|Sensor\\.[0-9]+";
    for (UINT32 level = static_cast<UINT32>(ModeType::Usecase); level <= static_cast<UINT32>(ModeType::Effect); ++level)
    {
        const tuning::EnumDescription& rNames = *ModeNames::SubModes(static_cast<ModeType>(level));
        pattern += fmt::format("|{}\\.([0-9]+", ModeNames::Modes().NameOf(static_cast<INT32>(level)));
        for (UINT32 index = 0; index < rNames.count; ++index)
        {
            pattern += fmt::format("|{}", rNames.pEnumerators[index].pName);
        }
        pattern += ')';
    }
    return pattern + ")$";
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
    pattern.Add("pattern", Text(ModePattern()));
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
    root.Add("$schema", Text("https://json-schema.org/draft/2020-12/schema"));
    root.Add("title", Text("Tuning"));
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
