/// The schema for editors and the reference.
#include <gtest/gtest.h>

#include <algorithm>

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
    const YAML::Node filter = lux["properties"]["filteringFactor"];
    EXPECT_EQ("share", filter["unit"].Scalar());
    EXPECT_EQ("1", filter["anyOf"][0]["exclusiveMaximum"].Scalar());
    EXPECT_EQ("null", filter["anyOf"][1]["type"].Scalar());
    EXPECT_TRUE(filter["description"].Scalar().ends_with("."));
    EXPECT_EQ("lux", schema["$defs"]["DataBankType"]["properties"]["dataID"]["anyOf"][1]["enum"][8].Scalar());
    const YAML::Node coords = schema["$defs"]["DBROIPayload"]["properties"]["coords"]["anyOf"][0]["anyOf"][0];
    EXPECT_EQ("4", coords["minItems"].Scalar());
    EXPECT_EQ("ExposureSafe", schema["$defs"]["KIROExposureSelection"]["anyOf"][0]["oneOf"][1]["const"].Scalar());
    EXPECT_EQ(41u, schema["$defs"]["modules"]["properties"].size());
    EXPECT_NE(std::string::npos,
              schema["$defs"]["modes"]["propertyNames"]["pattern"].Scalar().find("|Usecase\\.([0-9]+|Preview|"));
}

TEST(SchemaText, ReferencePagesTellMembersAndWhoSharesThem)
{
    const std::vector<Document> pages = ReferencePages();
    EXPECT_EQ(41u, pages.size());
    const auto page = std::find_if(pages.begin(), pages.end(),
                                   [](const Document& rPage) { return rPage.name == "kirodbactivecalculators"; });
    ASSERT_NE(pages.end(), page);
    const std::string text = ToMarkdown(*page);
    for (const char* pLine :
         {"# kirodbactivecalculators\n\n", "| `data[].calculatorID[]` | integer, list of 0 or more |",
          "| bank ActiveCalculators | [kirodbactivecalculators](kirodbactivecalculators.md) |",
          "## KIROTunaraEventType\n\n| Value | Name | Meaning |\n|---|---|---|\n| 0 | `AECDefault` |"})
    {
        EXPECT_NE(std::string::npos, text.find(pLine)) << pLine << '\n' << text.substr(0, 3000);
    }
    const std::string html = ToHtml(ReferenceIndex());
    EXPECT_NE(std::string::npos, html.find("<td><a href=\"kirodbroi.html\">kirodbroi</a></td>"));
    EXPECT_NE(std::string::npos, html.find("<td>8</td><td><code>lux</code></td><td>lux index</td>"));
}

TEST(SchemaText, PagesEscapeWhatTheirFormWouldRead)
{
    Document   page{"name", "a & b", {}};
    const Line cell = {Code("x|y"), Plain("<"), Link("l", "#Two Words")};
    page.AddTable(Table{{"<b>"}, {std::vector<Line>{cell}}});
    EXPECT_EQ("| <b> |\n|---|\n| `x\\|y`<[l](#two-words) |\n", ToMarkdown(page));
    const std::string html = ToHtml(page);
    EXPECT_NE(std::string::npos, html.find("<title>a &amp; b</title>"));
    EXPECT_NE(std::string::npos, html.find("<th>&lt;b&gt;</th>"));
    EXPECT_NE(std::string::npos, html.find("<code>x|y</code>&lt;<a href=\"#two-words\">l</a>"));
}

}  // namespace
