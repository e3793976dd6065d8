/// Input that nobody writes by mistake ends in a refusal or in a tuning, never in a crash: the sanitizers watch.
#include <gtest/gtest.h>

#include "tests/support/refusal.h"
#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/bytes.h"
#include "tools/tuningfile/checksum.h"
#include "tools/tuningfile/files.h"
#include "tools/tuningfile/storelog.h"
#include "tools/tuningfile/textinput.h"
#include "tools/tuningfile/textoutput.h"

namespace
{

using namespace tuningfile;

const char* const GoodText = R"(
tuning: {createdBy: me, binaryTag: tag}
x-roi: &roi {dataID: 1, description: "a \"text\"", coords: {fill: 0.5, 1: 2}}
modes:
  Default:
    modules:
      kirodbroi: {data: [*roi, {<<: *roi, dataID: 2}]}
      kirometering: {luxIndexOperation: {filteringFactor: .inf}}
    children:
      Sensor.0:
        modules: {kirodbroi: {data: [*roi]}}
        children:
          Usecase.Video: {group: 2, modules: {kirodbroi: {}}, children: {Usecase.Video: {group: 3}}}
          Usecase.ZSL: {link: Default|Sensor.0|Usecase.Video}
)";

TEST(Hostile, WhatNoTextMaySayIsNamed)
{
    Tuning     tuning = ParseText(GoodText, "t.yaml");
    const auto dumped = [&]
    { return CompileFault(WriteText(ReadBinary(WriteBinary(tuning, NewestVersion), "t.bin").tuning), "dump.yaml"); };
    EXPECT_EQ(dumped(), "");
    tuning.tables[0].modes[0].mode    = static_cast<UINT16>(ModeType::Effect);
    tuning.tables[0].modes[0].subMode = 1;
    EXPECT_EQ(dumped(), "dump.yaml:3:3: mode 'Effect.Mono' at the root, expected 'Default'");
}

TEST(Hostile, AModeWhoseIdAnotherHasTakenIsReadWithAllBelowIt)
{
    std::vector<BYTE> bytes    = WriteBinary(ParseText(GoodText, "t.yaml"), NewestVersion);
    const SectionInfo section  = ReadBinary(bytes, "t.bin").sections.ModeTables[0];
    const UINT32      nameSize = BinaryFileFormat::GetModeTableNameSize(NewestVersion);
    const UINT32      rowSize  = BinaryFileFormat::GetModeEntrySize(NewestVersion);
    const UINT32      rows     = section.Offset + nameSize;
    const UINT32      count    = (section.Size - nameSize) / rowSize;
    const StoreLog    log;
    constexpr UINT32  SensorId = 1;
    // The last mode takes the place of its parent, and with it that of the others' parent; itself it has none then.
    StoreInteger(bytes, rows + (count - 1) * rowSize, SensorId);
    Seal(bytes, NewestVersion);

    const std::vector<ModeTable> tables = ReadBinary(bytes, "t.bin").tuning.tables;
    ASSERT_EQ(tables.size(), 1U);
    ASSERT_EQ(tables[0].modes.size(), count - 1);
    for (UINT32 index = 1; index < count - 1; ++index)
    {
        EXPECT_LT(tables[0].modes[index].parent.value_or(count), index);
    }
}

TEST(Hostile, TextThatUnfoldsWithoutEndIsRefused)
{
    // Each mode takes four megabytes of records in a line of text.
    std::string text = "x-item: &item {weights: {fill: 1}}\nx-list: &list [";
    for (UINT32 item = 0; item < 1000; ++item)
    {
        text += "*item,";
    }
    text += "]\nmodes: {Default: {children: {\n";
    for (UINT32 sensor = 0; sensor < 100; ++sensor)
    {
        text += "Sensor." + std::to_string(sensor) + ": {modules: {kirodb1dmeterweight: {data: *list}}},\n";
    }
    text += "}}}\n";
    EXPECT_EQ("t.yaml:2:9: the tuning is too large, expected at most 268435456 bytes of records",
              RefusalOf([&] { ParseText(text, "t.yaml"); }));
}

}  // namespace
