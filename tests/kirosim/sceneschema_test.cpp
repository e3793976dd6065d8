// What scenes say about themselves: every row of every map, the reference that is made of them, the schema for editors.

#include <gtest/gtest.h>
#include <set>
#include <yaml-cpp/yaml.h>

#include "tests/kirosim/examplescenes.h"
#include "tests/kirosim/loop.h"
#include "tests/support/temporaryfile.h"
#include "tools/kirosim/sceneschema.h"
#include "tools/kirosim/scenesections.h"
#include "tools/tuningfile/files.h"

using namespace kirosim;

namespace
{

/// What is wrong with a row.
VOID Check(const SceneMember& rMember, const std::string& rPath)
{
    const SceneForm& rForm    = rMember.form;
    const bool       isNumber = rForm.type == SceneType::Number || rForm.type == SceneType::Whole;
    const bool       isCount  = rMember.name == "seed" || rMember.name == "id";  // numbers of nothing
    EXPECT_FALSE(rMember.meaning.empty()) << rPath;
    EXPECT_EQ(isNumber, rForm.range.has_value()) << rPath;
    EXPECT_EQ(isNumber && !isCount, !rMember.unit.empty()) << rPath;
    EXPECT_EQ(rForm.type == SceneType::Map, static_cast<bool>(rForm.members)) << rPath;
    EXPECT_TRUE(rForm.type != SceneType::Name || rForm.names.size() > 1) << rPath;
    if (isNumber && !rMember.initial.empty())
    {
        EXPECT_LE(std::stod(rForm.range->low), std::stod(rMember.initial)) << rPath;
        EXPECT_GE(std::stod(rForm.range->high), std::stod(rMember.initial)) << rPath;
    }
}

TEST(SceneTables, EachMemberIsThereOnceAndSaysWhatItIs)
{
    std::set<std::string> paths;
    for (const SceneSection& rSection : SceneSections())
    {
        EXPECT_NE(rSection.pMembers->begin(), rSection.pMembers->end()) << rSection.path;
        for (const SceneMember& rMember : *rSection.pMembers)
        {
            const std::string path = rSection.path + "." + std::string(rMember.name);
            EXPECT_TRUE(paths.insert(path).second) << path << " would never be read";
            Check(rMember, path);
        }
    }
    for (const CHAR* pPath :
         {"scene.variants", "second.lux", "events.manual", "calibration.relative.CCT", "flash.leds.rg"})
    {
        EXPECT_TRUE(paths.contains(pPath)) << pPath;
    }
}

TEST(SceneReference, IsThePageOfTheDocumentation)
{
    EXPECT_TRUE(tuningfile::ReadText(DOCS_DIR "/scenes.md") == SceneReference())
        << "docs/scenes.md is not what kirosim says; build/debug/bin/kirosim schema > docs/scenes.md renews it";
}

TEST(SceneReference, TellsTypeRangeUnitAndDefaultOfAMember)
{
    const std::string reference = SceneReference();
    const CHAR* const lines[]   = {
          "| `seed` | whole number | 0 to 18446744073709551615 |  | `1` |",
          "| `lineTimeUs` | number | 0.1 to 1000 | us | `8.33333` |",
          "| `kind` | `uniform`, `natural`, `highContrast`, `window`, `subject` |  |  | `uniform` |",
          "| `touch` | list of 4 numbers; or `none` | 0 to 1 | share of the frame |  |",
          "| `light` | list of lists of 2 numbers | 0.01 to 100 | linear |  |",
          "| `bracket` | list of 1 to 16 whole numbers | -1000 to 1000 | EV steps |  |",
          "| `leds` | list of 2 maps [flash.leds](#flashleds) |",
          "| `variants` | maps [scene](#scene) by name |",
          "| `modes` | list of [modes](#modes) |",
          "| `from` | `preflash`, `previousMode`, `master`, `lightSensor`, `fixed`, `automatic` |  |  | `automatic` |",
          "| `Usecase` | `Preview`, ",
    };
    for (const CHAR* pLine : lines)
    {
        EXPECT_NE(reference.find(pLine), std::string::npos) << pLine;
    }
    // What a second camera does not say is the first one's, not a default.
    const size_t second = reference.find("## second\n");
    EXPECT_NE(reference.find("| `lux` | number | 0.001 to 1000000 | lux |  |", second), std::string::npos);
}

TEST(SceneReference, BeginsWithASceneThatRuns)
{
    const std::string   reference = SceneReference();
    const std::string   fence     = "```yaml\n";
    const size_t        begin     = reference.find(fence) + fence.size();
    const TemporaryFile file("sceneschema_test.yaml");
    const std::string&  rPath = file.Write(reference.substr(begin, reference.find("```", begin) - begin));
    EXPECT_EQ(ReadVariants(rPath), (std::vector<std::string>{"dark", "slowly"}));
    EXPECT_EQ(ReadScene(rPath, "slowly").light.size(), 2U);
    Loop loop(ReadScene(rPath, ""));
    loop.Run({});
    EXPECT_EQ(loop.m_frames.size(), 240U);
    ASSERT_EQ(loop.m_rounds.size(), 1U);
}

/// What "$ref" entries point to.
VOID CollectDefinitions(const YAML::Node& rNode, std::set<std::string>& rNames)
{
    for (const auto& rEntry : rNode)
    {
        if (rNode.IsMap() && rEntry.first.Scalar() == "$ref")
        {
            rNames.insert(rEntry.second.Scalar().substr(std::string("#/$defs/").size()));
        }
        CollectDefinitions(rNode.IsMap() ? rEntry.second : YAML::Node(rEntry), rNames);
    }
}

TEST(SceneJsonSchema, IsClosedAndExplainsMembers)
{
    const YAML::Node schema = YAML::Load(SceneJsonSchema());
    EXPECT_EQ(schema["$ref"].Scalar(), "#/$defs/scene");
    const YAML::Node      definitions = schema["$defs"];
    std::set<std::string> used;
    CollectDefinitions(schema, used);
    EXPECT_EQ(used.size(), definitions.size());
    for (const std::string& rName : used)
    {
        EXPECT_TRUE(definitions[rName].IsDefined()) << rName;
    }
    const YAML::Node scene = definitions["scene"];
    EXPECT_EQ(scene["additionalProperties"].Scalar(), "false");
    EXPECT_EQ(scene["properties"]["seed"]["maximum"].Scalar(), "18446744073709551615");
    EXPECT_EQ(scene["properties"]["variants"]["additionalProperties"]["$ref"].Scalar(), "#/$defs/scene");
    const YAML::Node lux = scene["properties"]["lux"];
    EXPECT_EQ(lux["type"].Scalar() + " " + lux["minimum"].Scalar() + " " + lux["unit"].Scalar(), "number 0.001 lux");
    EXPECT_EQ(lux["default"].Scalar(), "200");
    EXPECT_FALSE(lux["description"].Scalar().empty());
    const YAML::Node event = definitions["events"]["properties"];
    EXPECT_EQ(event["touch"]["anyOf"][0]["minItems"].Scalar(), "4");
    EXPECT_EQ(event["touch"]["anyOf"][1]["enum"][0].Scalar(), "none");
    EXPECT_EQ(event["antibanding"]["enum"].size(), 5U);  // 50 and 60 as a number, too
}

TEST(Scenes, EveryExampleAndVariantIsRead)
{
    size_t count = 0;
    for (const std::string& rScene : ExampleScenes())
    {
        const std::string        path     = ExampleScenePath(rScene);
        std::vector<std::string> variants = ReadVariants(path);
        variants.emplace_back();  // the scene itself
        for (const std::string& rVariant : variants)
        {
            EXPECT_NO_THROW((VOID)ReadScene(path, rVariant)) << path << " " << rVariant;
            ++count;
        }
    }
    EXPECT_GT(count, 50U);
}

}  // namespace
