/// The schema for editors and the reference.
#include <gtest/gtest.h>
#include <yaml-cpp/yaml.h>

#include "schema/modules.h"
#include "tools/tuningfile/schematext.h"

namespace
{

using namespace tuningfile;

/// Collects what "$ref" entries point to.
VOID CollectReferences(const YAML::Node& rNode, std::vector<std::string>& rReferences)
{
    if (rNode.IsMap())
    {
        for (const auto& rPair : rNode)
        {
            if (rPair.first.Scalar() == "$ref")
            {
                rReferences.push_back(rPair.second.Scalar());
            }
            CollectReferences(rPair.second, rReferences);
        }
    }
    for (size_t index = 0; rNode.IsSequence() && index < rNode.size(); ++index)
    {
        CollectReferences(rNode[index], rReferences);
    }
}

TEST(SchemaText, JsonSchemaIsClosedAndDescribesMembers)
{
    const std::string text   = JsonSchema();
    const YAML::Node  schema = YAML::Load(text);
    EXPECT_EQ("https://json-schema.org/draft/2020-12/schema", schema["$schema"].Scalar());
    std::vector<std::string> references;
    CollectReferences(schema, references);
    EXPECT_GT(references.size(), 500u);
    for (const std::string& rReference : references)
    {
        ASSERT_TRUE(rReference.starts_with("#/$defs/"));
        EXPECT_TRUE(schema["$defs"][rReference.substr(8)].IsDefined()) << rReference;
    }

    const YAML::Node lux = schema["$defs"]["LuxIndexOperationType"];
    EXPECT_EQ("false", lux["additionalProperties"].Scalar());
    EXPECT_EQ("18446744073709551615", lux["properties"]["refExposureForLuxIndexZero"]["anyOf"][0]["maximum"].Scalar());
    const YAML::Node coords = schema["$defs"]["DBROIPayload"]["properties"]["coords"]["anyOf"][0]["anyOf"][0];
    EXPECT_EQ("4", coords["minItems"].Scalar());
    EXPECT_EQ("ExposureSafe", schema["$defs"]["KIROExposureSelection"]["anyOf"][0]["enum"][1].Scalar());
    EXPECT_EQ(41u, schema["$defs"]["modules"]["properties"].size());
    EXPECT_NE(std::string::npos,
              schema["$defs"]["modes"]["propertyNames"]["pattern"].Scalar().find("|Usecase\\.([0-9]+|Preview|"));
}

TEST(SchemaText, ReferenceListsMembersByPath)
{
    const std::string reference = Reference();
    for (const char* pLine :
         {"## kirometering\n\nVersion 10.0.0.\n", "| `luxIndexOperation.filteringFactor` | float | 1 |\n",
          "| `data[].coords[]` | float | 4 |\n",
          "| `analyzers[].luma.calculators[].value.selection` | "
          "[CalculationMethodType](#calculationmethodtype) | 1 |\n",
          "### KIROExposureSelection\n\n| Value | Name |\n|---|---|\n| 0 | `ExposureShort` |\n"})
    {
        EXPECT_NE(std::string::npos, reference.find(pLine)) << pLine;
    }
}

}  // namespace
