/// The bytes of parameter files, version by version.
#include <gtest/gtest.h>

#include "parameters/parametersetmanager.h"
#include "parameters/parsercrc.h"
#include "parameters/tablemodule.h"
#include "tests/support/refusal.h"
#include "tools/tuningfile/binaryinput.h"
#include "tools/tuningfile/binaryoutput.h"
#include "tools/tuningfile/bytes.h"
#include "tools/tuningfile/storelog.h"
#include "tools/tuningfile/textinput.h"

namespace
{

using namespace tuningfile;

std::vector<BYTE> Compile(const std::string& rText, const char* pVersion)
{
    return WriteBinary(ParseText(rText, "t.yaml"), *ParseVersion(pVersion));
}

VOID ExpectBytes(const std::vector<BYTE>& rBytes, size_t offset, const std::vector<BYTE>& rExpected)
{
    ASSERT_LE(offset + rExpected.size(), rBytes.size());
    const auto begin = rBytes.begin() + static_cast<std::ptrdiff_t>(offset);
    EXPECT_EQ(rExpected, std::vector<BYTE>(begin, begin + static_cast<std::ptrdiff_t>(rExpected.size())))
        << "at " << offset;
}

VOID ExpectText(const std::vector<BYTE>& rBytes, size_t offset, size_t size, const std::string& rExpected)
{
    std::vector<BYTE> field(rExpected.begin(), rExpected.end());
    field.resize(size);
    ExpectBytes(rBytes, offset, field);
}

TEST(BinaryOutput, SmallestFileWithAModuleByteByByte)
{
    const std::vector<BYTE> bytes = Compile("tuning: {createdBy: me, binaryTag: tag}\n"
                                            "modes: {Default: {modules: {kirotouch: {}}}}\n",
                                            "7.0.0");
    ASSERT_EQ(3388u, bytes.size());
    ExpectText(bytes, 0, 28, "PELTO Tunara Header");
    ExpectBytes(bytes, 28, {0x3C, 0x0D, 0, 0});
    ExpectBytes(bytes, 32, {7, 0, 0, 0, 0, 0, 0, 0});
    ExpectText(bytes, 40, 48, "me");
    ExpectText(bytes, 88, 64, "tag");
    ExpectBytes(bytes, 152, {0, 0, 0, 0, 0, 0, 0, 0, 168, 0, 0, 0, 5, 0, 0, 0});

    // Sections: type, offset, size.
    ExpectBytes(bytes, 168, {2, 0, 0, 0, 228, 0, 0, 0, 152, 0, 0, 0});    // modes
    ExpectBytes(bytes, 180, {0, 0, 0, 0, 0x7C, 1, 0, 0, 64, 0, 0, 0});    // symbols at 380
    ExpectBytes(bytes, 192, {3, 0, 0, 0, 0xBC, 1, 0, 0, 36, 0, 0, 0});    // data table at 444
    ExpectBytes(bytes, 204, {4, 0, 0, 0, 0xE0, 1, 0, 0, 0x80, 1, 0, 0});  // definitions at 480, 384 bytes
    ExpectBytes(bytes, 216, {1, 0, 0, 0, 0x60, 3, 0, 0, 37, 0, 0, 0});    // data at 864

    // One mode: ID, mode, parent, no link, flags.
    ExpectText(bytes, 228, 128, "");
    ExpectBytes(bytes, 356, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0});

    // Symbols: a placeholder that is no module, then the module: name hash, version, mode, offset, size, duplicate.
    ExpectBytes(bytes, 380 + 16, {0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(namehash::OfName("kirotouch"), LoadInteger<UINT64>(bytes, 412));
    ExpectBytes(bytes, 420, {10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5, 0, 0, 0, 32, 0, 0, 0, 1, 0, 0, 0});

    // Data: a placeholder, what empty members refer to, the text of the revision.
    ExpectBytes(bytes, 444, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    ExpectBytes(bytes, 456, {0, 0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0});
    ExpectBytes(bytes, 468, {4, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0});
    ExpectBytes(bytes, 864, {0, 0, 0, 0, 0});
    // The record: 28 bytes follow; the version, of 12; the revision, of 8: a text of one byte in entry 2.
    ExpectBytes(bytes, 869,
                {28, 0, 0, 0, 12, 0, 0, 0, 10, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 8, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0});

    // The first definition: a structure, ID 1, its name, hash, three members; the first member is a 32-bit integer,
    // once.
    ExpectBytes(bytes, 480, {5, 1, 0, 0, 0, 21, 0, 0, 0});
    ExpectText(bytes, 489, 21, "module_versionStruct");
    ExpectBytes(bytes, 518, {3, 0, 0, 0, 12, 0, 0, 0, 0, 15, 0, 0, 0});
    ExpectText(bytes, 531, 15, "major_revision");
    ExpectBytes(bytes, 546, {0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0});
    // The last one: the module, whose structure is the third.
    ExpectBytes(bytes, 832, {4, 3, 0, 0, 0});
    ExpectText(bytes, 845, 14, std::string("\x0A\0\0\0kirotouch", 13));
}

/// The checksums, bit by bit as their definitions have it.
UINT64 BitwiseSum(const std::vector<BYTE>& rBytes, size_t count, UINT64 polynomial, UINT64 mask)
{
    UINT64     sum = mask;
    const auto add = [&](BYTE byte)
    {
        sum ^= byte;
        for (UINT32 bit = 0; bit < 8; ++bit)
        {
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? polynomial : 0);
        }
    };
    for (size_t index = 0; index < count; ++index)
    {
        add(rBytes[index]);
    }
    for (UINT32 shift = 0; mask > 0xFFFFFFFF && shift < 32; shift += 8)
    {
        add(static_cast<BYTE>(count >> shift));
    }
    return ~sum & mask;
}

TEST(BinaryOutput, EachVersionHasItsOwnLayoutAndTheStoreLoadsIt)
{
    // Version; offset and row size of the section table; sizes of a table's name and of a mode, and modes; size of a
    // symbol and of the checksum.
    const std::tuple<const char*, UINT32, UINT32, UINT32, UINT32, UINT32, UINT32, UINT32> layouts[] = {
        {"1.0.1", 48, 12, 0, 16, 1, 64, 4},    {"1.0.2", 160, 12, 0, 16, 3, 64, 4},
        {"1.0.9", 160, 12, 0, 16, 3, 64, 4},   {"1.1.0", 160, 24, 0, 24, 3, 76, 4},
        {"2.0.0", 160, 24, 0, 32, 3, 76, 4},   {"3.0.0", 168, 24, 0, 32, 3, 76, 4},
        {"3.0.1", 168, 12, 0, 20, 3, 56, 4},   {"3.0.2", 168, 12, 0, 20, 3, 60, 4},
        {"4.0.0", 168, 12, 32, 20, 3, 60, 4},  {"5.0.0", 168, 12, 32, 24, 3, 60, 4},
        {"6.0.0", 168, 12, 32, 24, 3, 64, 8},  {"6.9.9", 168, 12, 32, 24, 3, 64, 8},
        {"7.0.0", 168, 12, 128, 24, 3, 64, 8},
    };
    const std::string text = "tables: [{name: main, modes: {Default: {modules: {kirotouch: {}}, children: {Sensor.7:\n"
                             "  {preserve: true, children: {Usecase.ZSL: {group: 5, link: Default|Sensor.7}}}}}}}]\n";
    for (const auto& [pVersion, sectionTable, rowSize, nameSize, entrySize, modeCount, symbolSize, checksumSize] :
         layouts)
    {
        SCOPED_TRACE(pVersion);
        const std::vector<BYTE> bytes = Compile(text, pVersion);
        const size_t            modes = sectionTable + LoadInteger<UINT32>(bytes, sectionTable - 4) * rowSize;
        const UINT32            slot  = rowSize / 3;
        EXPECT_EQ(sectionTable, LoadInteger<UINT32>(bytes, sectionTable - 8));
        EXPECT_EQ(modes, LoadInteger<UINT32>(bytes, sectionTable + slot));
        EXPECT_EQ(nameSize + modeCount * entrySize, LoadInteger<UINT32>(bytes, sectionTable + 2 * slot));
        EXPECT_EQ(symbolSize, LoadInteger<UINT32>(bytes, sectionTable + rowSize + 2 * slot));
        ExpectText(bytes, modes, nameSize, (nameSize > 0) ? "main" : "");

        const size_t summed = bytes.size() - checksumSize;
        if (checksumSize == 8)
        {
            EXPECT_EQ(BitwiseSum(bytes, summed, 0x42F0E1EBA9EA3693, ~UINT64{0}), LoadInteger<UINT64>(bytes, summed));
        }
        else
        {
            EXPECT_EQ(BitwiseSum(bytes, summed, 0xEDB88320, 0xFFFFFFFF), LoadInteger<UINT32>(bytes, summed));
        }

        const StoreLog     log;
        const BinaryTuning binary = ReadBinary(bytes, "t.bin");
        EXPECT_EQ(std::vector<std::string>(), log.Lines());
        const std::vector<Mode>& rModes = binary.tuning.tables.at(0).modes;
        ASSERT_EQ(modeCount, rModes.size());
        if (modeCount == 3)
        {
            EXPECT_EQ(7, rModes[1].subMode);
            EXPECT_EQ(5, rModes[2].group);
            EXPECT_EQ(2, rModes[2].mode);
            EXPECT_EQ(1u, rModes[2].parent);
            EXPECT_EQ(*ParseVersion(pVersion) >= BinaryFileFormat::LinkVersion, rModes[2].link == 1u);
        }
    }
}

TEST(BinaryOutput, VersionsAreReadAndWhatTheyCannotHoldIsNamed)
{
    const Tuning tuning =
        ParseText("tuning: {binaryTag: x}\n"
                  "tables: [{name: main, modes: {Default: {modules: {kirotouch: {}}, children: {\n"
                  "  Usecase.ZSL: {preserve: true}, Usecase.Video: {link: Default|Usecase.ZSL}}}}}]\n",
                  "t.yaml");
    using Texts = std::vector<std::string>;
    EXPECT_EQ(Texts(), LeftOut(tuning, *ParseVersion("6.0.0")));
    EXPECT_EQ(Texts({"modules"}), LeftOut(tuning, *ParseVersion("5.9.9")));
    EXPECT_EQ(Texts({"modules", "preserve flags", "names of mode tables"}), LeftOut(tuning, *ParseVersion("3.9.9")));
    EXPECT_EQ(Texts({"modules", "preserve flags", "names of mode tables", "links"}),
              LeftOut(tuning, *ParseVersion("1.0.2")));
    EXPECT_EQ(
        Texts({"modules", "preserve flags", "names of mode tables", "links", "modes below Default", "the binary tag"}),
        LeftOut(tuning, *ParseVersion("1.0.1")));

    // Versions outside the format, and malformed ones, are refused.
    EXPECT_EQ(VersionUnion(1, 0, 0), ParseVersion("1.0.0"));
    for (const char* pText :
         {"0.9.9", "7.0.1", "7.1.0", "8.0.0", "7.0", "7.0.0.0", "7.0.0 ", "", "a.b.c", "7..0", "-1.0.0", "70000.0.0"})
    {
        EXPECT_FALSE(ParseVersion(pText).has_value()) << pText;
    }
}

TEST(BinaryOutput, EqualDataIsStoredOnceAndSharedInMemory)
{
    const std::vector<BYTE>      bytes = Compile(R"(
modes:
  Default:
    modules:
      kirodb2dmeterweight: {data: [{dataID: 1, weights: {fill: 1}}]}
    children:
      Sensor.0: {modules: {kirodb2dmeterweight: {}}}
      Sensor.1: {modules: {kirodb2dmeterweight: {dataBank: {bankID: BankIDMetering2D}}}}
)",
                                                 "7.0.0");
    ParameterSetManager::Options options;
    options.fileMode = false;
    ParameterSetManager store(nullptr, tuning::TuningModules, options);
    ASSERT_TRUE(store.LoadBinaryParameters(bytes.data(), bytes.size())) << store.GetErrorText();
    const auto recordOf = [&store](const char* pPath)
    {
        auto* pModule = static_cast<TableModule*>(
            store.GetModeEntry(0, pPath)->FindModule(namehash::OfName("kirodb2dmeterweight")));
        return static_cast<const kirodb2dmeterweight::KIRODB2DMeterWeightType*>(pModule->Record());
    };
    EXPECT_EQ(recordOf("0.0"), recordOf("0.0|1.0"));
    EXPECT_NE(recordOf("0.0"), recordOf("0.0|1.1"));
    EXPECT_EQ(recordOf("0.0")->data, recordOf("0.0|1.1")->data);
    EXPECT_EQ(1.0f, recordOf("0.0|1.1")->data[0].weights[255]);

    // Three modes use the 256 weights, whose bytes stand in the file once.
    const BinaryTuning binary = ReadBinary(bytes, "t.bin");
    EXPECT_LT(binary.sections.Data.Size, 2 * 256 * sizeof(FLOAT));
}

TEST(BinaryOutput, WhatTheFormatCannotAddressIsRefused)
{
    const auto refusal = [](const Tuning& rTuning, const char* pVersion)
    { return RefusalOf([&] { WriteBinary(rTuning, *ParseVersion(pVersion)); }); };
    Tuning tuning;
    tuning.source = "t.yaml";
    tuning.tables.push_back({std::string(32, 'n'), {}});
    EXPECT_EQ("t.yaml: table name '" + std::string(32, 'n') +
                  "' is too long for the file version, expected at most 31 bytes",
              refusal(tuning, "4.0.0"));
    EXPECT_EQ("", refusal(tuning, "7.0.0"));
    tuning.tables.assign(256, ModeTable{});
    EXPECT_EQ("t.yaml: 256 mode tables, expected at most 255", refusal(tuning, "7.0.0"));
    tuning.tables.resize(255);
    EXPECT_EQ("", refusal(tuning, "7.0.0"));
    // With wide rows the section table would reach beyond what a device reads of it.
    EXPECT_EQ("t.yaml: 255 mode tables, expected fewer in this file version", refusal(tuning, "3.0.0"));
}

}  // namespace
