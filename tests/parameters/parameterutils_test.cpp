#include "parameters/parameterutils.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

#include "parameters/parameterdefinitions.h"
#include "parameters/parameterlogging.h"
#include "parameters/parsercrc.h"
#include "parameters/plist.h"
#include "platform/tavocommonutils.h"
#include "tests/support/bytewriter.h"
#include "tests/support/systemlogcapture.h"

using tuning::ValueType;

namespace
{

struct Formatted
{
    std::string text;
    bool        flag;
};

Formatted Format(DOUBLE value, UINT32 precision, UINT32 size = 64)
{
    CHAR         text[64];
    bool         flag   = false;
    const UINT32 length = ParameterUtils::DoubleToString(value, text, size, precision, flag);
    EXPECT_EQ(std::strlen(text), length);
    return {text, flag};
}

std::unique_ptr<ParameterDefinitionElement> Element(ParameterDefinitionType type, UINT16 flags = 0)
{
    ParameterDefinitionElementInfo info;
    info.Type  = type;
    info.Flags = flags;
    return std::make_unique<ParameterDefinitionElement>(0, info);
}

/// Reads stored values into an array of the wanted type.
template <typename T>
VOID ExpectRead(ValueType wanted, const std::vector<T>& rExpected, ParameterDefinitionType type,
                const ByteWriter& rStored, UINT16 flags = 0)
{
    std::vector<T> values(rExpected.size());
    const auto     pElement = Element(type, flags);
    UINT64         position = 0;
    EXPECT_TRUE(ParameterUtils::ReadArray(values.data(), wanted, pElement.get(), rStored.Get().data(), rStored.Size(),
                                          position, static_cast<UINT32>(values.size()), 1, nullptr));
    EXPECT_EQ(position, rStored.Size());
    EXPECT_EQ(values, rExpected) << "from type " << type;
}

TEST(DoubleToString, WritesDecimalNumbers)
{
    const std::tuple<DOUBLE, UINT32, const CHAR*> cases[] = {
        {1.5, 10, "1.5"},     {9.99, 1, "10.0"},
        {1234.0, 0, "1234"},  {2.0, 10, "2.0"},
        {0.0, 10, "0.0"},     {0.0, 0, "0"},
        {-0.25, 10, "-0.25"}, {-7.0, 0, "-7"},
        {0.001, 3, "0.001"},  {0.0004, 3, "0.0"},
        {0.0005, 3, "0.001"}, {99.96, 1, "100.0"},
        {-9.99, 1, "-10.0"},  {1e15, 0, "1000000000000000"},
        {1.29, 1, "1.3"},     {1.09, 1, "1.1"},
        {12.999, 2, "13.0"},
    };
    for (const auto& [value, precision, pText] : cases)
    {
        EXPECT_EQ(Format(value, precision).text, pText) << value;
        EXPECT_TRUE(Format(value, precision).flag) << value;
    }
    EXPECT_EQ(Format(std::numeric_limits<DOUBLE>::quiet_NaN(), 10).text, "nan");
    EXPECT_EQ(Format(std::numeric_limits<DOUBLE>::infinity(), 10).text, "inf");
    EXPECT_EQ(Format(-std::numeric_limits<DOUBLE>::infinity(), 10).text, "-inf");
    EXPECT_EQ(Format(std::numeric_limits<DOUBLE>::max(), 10, 4).text.size(), 3U);
    EXPECT_EQ(Format(std::numeric_limits<DOUBLE>::denorm_min(), 60).text, "0.0");
}

TEST(DoubleToString, StaysInsideSmallBuffers)
{
    EXPECT_EQ(Format(12.5, 10, 1).text, "");
    EXPECT_EQ(Format(12.5, 10, 3).text, "12");
    EXPECT_EQ(Format(12.5, 10, 4).text, "12");  // a point needs a digit behind it
    EXPECT_EQ(Format(12.5, 10, 5).text, "12.5");
    EXPECT_EQ(Format(-5.0, 10, 2).text, "0");   // no room for a digit behind the sign
    EXPECT_EQ(Format(9.99, 1, 4).text, "9.9");  // rounding up would take one place more
    EXPECT_FALSE(Format(1234.0, 0, 3).flag);    // 34 is left over
    bool flag = true;
    EXPECT_EQ(ParameterUtils::DoubleToString(1.0, nullptr, 8, 0, flag), 0U);
    EXPECT_FALSE(flag);
}

TEST(StringToDouble, TellsNumbersFromText)
{
    const std::tuple<const CHAR*, DOUBLE, bool> cases[] = {
        {"12.5", 12.5, true}, {"-3", -3.0, true},  {"0.125", 0.125, true}, {"1.2.3", 0.0, false}, {"abc", 0.0, false},
        {"", 0.0, false},     {"1e3", 0.0, false}, {"ab-4", -4.0, true},   {" 1", 0.0, false},    {"-1-2", 0.0, false},
    };
    for (const auto& [pText, value, isValid] : cases)
    {
        bool valid = !isValid;
        EXPECT_DOUBLE_EQ(ParameterUtils::StringToDouble(pText, valid), value) << pText;
        EXPECT_EQ(valid, isValid) << pText;
    }
    bool valid = true;
    EXPECT_EQ(ParameterUtils::StringToDouble(nullptr, valid), 0.0);
    EXPECT_FALSE(valid);
    EXPECT_EQ(ParameterUtils::StringToDouble(std::string(400, '0').c_str(), valid), 0.0);
}

TEST(Text, IsAppendedWithinBounds)
{
    SystemLogCapture log;
    CHAR             text[8];
    UINT32           position = 0;
    EXPECT_TRUE(ParameterUtils::WriteString("abc", text, sizeof(text), position, false, nullptr));
    EXPECT_STREQ(text, "abc");
    EXPECT_TRUE(ParameterUtils::WriteString("defg", text, sizeof(text), position, true, nullptr));
    EXPECT_EQ(position, 8U);
    EXPECT_STREQ(text, "abcdefg");
    EXPECT_EQ(log.Size(), 0U);
    EXPECT_FALSE(ParameterUtils::WriteString("x", text, sizeof(text), position, false, nullptr));
    EXPECT_FALSE(ParameterUtils::WriteString(nullptr, text, sizeof(text), position, false, nullptr));
    EXPECT_EQ(position, 8U);
    EXPECT_TRUE(log.Has("Insufficient space in buffer to write string: x\n", "E"));
    EXPECT_TRUE(log.Has("Insufficient space in buffer to write string\n", "E"));
}

TEST(PList, KeepsOrderAndForgivesBadIndices)
{
    PList<INT32> list;
    list.Add(10);
    list.Add(30);
    list.Insert(1, 20);
    list.Insert(0, list[2]);  // 30 10 20 30
    EXPECT_EQ(list.Count(), 4U);
    EXPECT_EQ(std::vector<INT32>(list.ToArray(), list.ToArray() + list.Count()), (std::vector<INT32>{30, 10, 20, 30}));
    EXPECT_EQ(list.IndexOf(30), 0);
    EXPECT_EQ(list.IndexOf(99), -1);
    EXPECT_TRUE(list.Remove(30));
    EXPECT_FALSE(list.Remove(99));
    EXPECT_EQ(list[0], 10);
    list.RemoveAt(1, 100);
    EXPECT_EQ(list.Count(), 1U);

    EXPECT_EQ(list[7], 0);
    list[7] = 5;  // lands in the spare value
    EXPECT_EQ(list.Count(), 1U);
    EXPECT_EQ(list[1000], 5);
    list[7] = 0;
    list.Clear();
    EXPECT_FALSE(list.Contains(10));
}

TEST(Checksums, AreThoseOfTheFilesInTheFieldAndGuardThem)
{
    const CHAR* pDigits = "123456789";
    EXPECT_EQ(ParserCRC32::GetCRC(reinterpret_cast<const BYTE*>(pDigits), 9, 0), 0xCBF43926U);
    EXPECT_EQ(ParserCRC32::GetCRC(nullptr, 0, 77), 77U);
    EXPECT_EQ(ParserCRC64::GetCRC(pDigits, 9, true, 0), 0xAB8C87CA648D9480ULL);

    // A file's sum is that of its bytes one by one, whatever their number.
    std::vector<UINT32> lengths(39);
    std::iota(lengths.begin(), lengths.end(), 1);
    lengths.insert(lengths.end(), {8191, 8192, 8207, 8208, 100003});
    for (const UINT32 length : lengths)
    {
        std::vector<BYTE> file(length);
        UINT32            byByte = 0;
        for (UINT32 index = 0; index < length; ++index)
        {
            file[index] = static_cast<BYTE>(37 * index + index / 256);
            byByte      = ParserCRC32::GetCRC(&file[index], 1, byByte);
        }
        EXPECT_EQ(ParserCRC32::GetCRC(file.data(), length, 0), byByte) << length;
        for (const bool includeLength : {false, true})
        {
            const UINT64 sum =
                ParserCRC64::GetCRC(reinterpret_cast<const CHAR*>(file.data()), length, includeLength, 0);
            std::vector<BYTE> sealed = file;
            sealed.insert(sealed.end(), reinterpret_cast<const BYTE*>(&sum),
                          reinterpret_cast<const BYTE*>(&sum) + sizeof(sum));
            EXPECT_TRUE(ParserCRC64::Validate(sealed.data(), length + 8, includeLength, nullptr)) << length;
            sealed[length / 2] ^= 1;
            EXPECT_FALSE(ParserCRC64::Validate(sealed.data(), length + 8, includeLength, nullptr)) << length;
        }
    }

    // They guard the whole file.
    SystemLogCapture  log;
    std::vector<BYTE> bytes = {'1', '2', '3', '4', '5', '6', '7', '8', '9', 0x26, 0x39, 0xF4, 0xCB};
    EXPECT_TRUE(ParserCRC32::Validate(bytes.data(), 13, nullptr));
    bytes[0] ^= 1;
    EXPECT_FALSE(ParserCRC32::Validate(bytes.data(), 13, nullptr));
    EXPECT_TRUE(log.Has("Actual: cbf43926\n", "E"));
    EXPECT_FALSE(ParserCRC32::Validate(bytes.data(), 4, nullptr));
    EXPECT_FALSE(ParserCRC64::Validate(bytes.data(), 8, true, nullptr));
    EXPECT_EQ(log.Count("Binary file CRC validation failed. Buffer too small\n", "E"), 2U);
}

TEST(ReadField, TakesSlotsAndNeverLooksBehindTheEnd)
{
    SystemLogCapture log;
    const BYTE       bytes[]  = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    UINT64           position = 0;
    UINT32           value    = 0;
    EXPECT_TRUE(ParameterUtils::ReadField(value, bytes, sizeof(bytes), position, 8, nullptr));
    EXPECT_EQ(value, 0x04030201U);
    EXPECT_EQ(position, 8U);
    EXPECT_FALSE(ParameterUtils::ReadField(value, bytes, sizeof(bytes), position, 1, nullptr));
    EXPECT_EQ(value, 0U);
    EXPECT_TRUE(log.Has("Failed to read 4 bytes from binary file offset 8, length 9\n", "E"));
    position = 0xFFFFFFFFFFFFFFF0ULL;
    EXPECT_FALSE(ParameterUtils::ReadField(value, bytes, sizeof(bytes), position, 1, nullptr));
}

TEST(ReadString, StopsAtNulSizeAndEnd)
{
    const CHAR* pText    = "ab\0cdefgh";
    const BYTE* pBuffer  = reinterpret_cast<const BYTE*>(pText);
    UINT64      position = 0;
    EXPECT_STREQ(ParameterUtils::ReadString(pBuffer, 9, position, 5, 8).get(), "ab");
    EXPECT_EQ(position, 8U);  // as if the whole field had been there
    EXPECT_STREQ(ParameterUtils::ReadString(pBuffer, 9, position, 100, 1).get(), "h");
    EXPECT_STREQ(ParameterUtils::ReadString(pBuffer, 9, position, 100, 1).get(), "");
    position = 3;
    EXPECT_STREQ(ParameterUtils::ReadString(pBuffer, 9, position, 0, 1).get(), "");
    EXPECT_EQ(ParameterUtils::ReadString(nullptr, 9, position, 4, 1), nullptr);

    CHAR field[4];
    position = 3;
    ParameterUtils::ReadString(field, pBuffer, 9, position, sizeof(field), 6, 1, nullptr);
    EXPECT_STREQ(field, "cde");
    EXPECT_EQ(position, 9U);

    // Positions move although there is nowhere to read from, or to.
    SystemLogCapture log;
    ParameterUtils::ReadString(nullptr, pBuffer, 9, position, 4, 6, 1, nullptr);
    EXPECT_EQ(position, 15U);
    EXPECT_TRUE(log.Has("ReadBuffer failed to allocate space for a string of 6 length\n"));
    EXPECT_FALSE(ParameterUtils::ReadBuffer(field, nullptr, 9, position, 3, 4, nullptr));
    EXPECT_FALSE(ParameterUtils::ReadBuffer(nullptr, pBuffer, 9, position, 3, 4, nullptr));
    EXPECT_EQ(position, 23U);
    EXPECT_TRUE(log.Has("ReadBuffer called with nullptr buffer\n"));
    EXPECT_TRUE(log.Has("ReadBuffer called with nullptr value\n"));
}

TEST(Platform, RefusesWhatDoesNotFitAndNamesFiles)
{
    EXPECT_EQ(TavoCalloc(SIZE_MAX, 16, 0, 0, nullptr, 0), nullptr) << "rounded up it would be nothing";
    CHAR full[4] = {'a', 'b', 'c', 'd'};
    EXPECT_EQ(Tavo::OsUtils::StrLCat(full, "ef", sizeof(full)), 6U) << "no room for a terminator";
    EXPECT_EQ(full[3], 'd');
    EXPECT_STREQ(Tavo::Log::GetFileName("core/base/a.cpp"), "a.cpp");
    EXPECT_STREQ(Tavo::Log::GetFileName("a.cpp"), "a.cpp");
}

TEST(StoredValues, ConvertToTheWantedType)
{
    ExpectRead<UINT32>(ValueType::UInt32, {2, 0, 0xFFFFFFFF}, ParameterDefinitionType_Float,
                       ByteWriter().Add(2.9F, -1.0F, 1e20F));
    ExpectRead<INT32>(ValueType::Int32, {-2, 300}, ParameterDefinitionType_Signed16Bits,
                      ByteWriter().Add<INT16>(-2, 300));
    ExpectRead<INT32>(ValueType::Int32, {0xFFFE}, ParameterDefinitionType_Hex16Bits, ByteWriter().Add<UINT16>(0xFFFE));
    ExpectRead<UINT8>(ValueType::UInt8, {0x34}, ParameterDefinitionType_Unsigned32Bits,
                      ByteWriter().Add<UINT32>(0x1234));
    ExpectRead<UINT64>(ValueType::UInt64, {0xFFFFFFFFFFFFFFFFULL}, ParameterDefinitionType_Signed8Bits,
                       ByteWriter().Add<INT8>(-1));
    ExpectRead<FLOAT>(ValueType::Float, {16777216.0F}, ParameterDefinitionType_Signed32Bits,
                      ByteWriter().Add<INT32>(16777217));
    ExpectRead<FLOAT>(ValueType::Float, {0.1F}, ParameterDefinitionType_Double, ByteWriter().Add(0.1));
    ExpectRead<INT64>(ValueType::Int64, {std::numeric_limits<INT64>::min(), 0}, ParameterDefinitionType_Double,
                      ByteWriter().Add(-1e30, std::nan("")));
    // A flag makes floats of any type.
    ExpectRead<FLOAT>(ValueType::Float, {0.5F}, ParameterDefinitionType_Unsigned64Bits, ByteWriter().Add(0.5F),
                      ParameterDefinitionElementInfo::FloatFlag);
}

TEST(StoredValues, RefuseWhatIsNoNumberOrNotThere)
{
    SystemLogCapture log;
    const BYTE       bytes[8]  = {1, 0, 0, 0, 2, 0};
    UINT32           values[2] = {7, 7};
    UINT64           position  = 0;
    const auto       pText     = Element(ParameterDefinitionType_String);
    EXPECT_FALSE(ParameterUtils::ReadArray(values, ValueType::UInt32, pText.get(), bytes, 8, position, 1, 1, nullptr));
    EXPECT_TRUE(log.Has("ReadArrayNoFloat: Invalid read type 24. XSD structure modified\n", "W"));
    EXPECT_FALSE(ParameterUtils::Read(values, ValueType::UInt32, pText.get(), bytes, 8, position, 1, nullptr));
    EXPECT_TRUE(log.Has("Read: Invalid read type 24\n", "E"));

    // Without a definition the bytes are taken as wanted, as far as they are there.
    position = 0;
    EXPECT_FALSE(ParameterUtils::ReadArray(values, ValueType::UInt32, nullptr, bytes, 6, position, 2, 1, nullptr));
    EXPECT_TRUE(log.Has("ReadBuffer failed, read 6 bytes, expected 8 bytes\n", "E"));
    EXPECT_EQ(values[0], 1U);

    // A single value that is not wholly there is 0 and counts as read.
    position = 6;
    EXPECT_TRUE(ParameterUtils::Read(values, ValueType::UInt32, nullptr, bytes, 8, position, 1, nullptr));
    EXPECT_EQ(values[0], 0U);

    const auto pWide = Element(ParameterDefinitionType_Unsigned64Bits);
    position         = 0;
    EXPECT_TRUE(ParameterUtils::Read(values, ValueType::UInt32, pWide.get(), bytes, 8, position, 1, nullptr));
    EXPECT_EQ(values[0], 1U);  // the low half
    position = 0;
    EXPECT_FALSE(ParameterUtils::ReadArray(values, ValueType::UInt32, pWide.get(), bytes, 5, position, 1, 1, nullptr));
    EXPECT_TRUE(log.Has("ReadBuffer failed, read 5 bytes, expected 8 bytes\n", "E"));

    // Enumerations take floats under protest.
    ExpectRead<INT32>(ValueType::Enum, {3}, ParameterDefinitionType_Float, ByteWriter().Add(3.0F));
    ExpectRead<INT32>(ValueType::Enum, {4}, ParameterDefinitionType_Double, ByteWriter().Add(4.0));
    EXPECT_TRUE(log.Has("ReadArrayNoFloat: Attempt to convert a float value to an enum\n", "W"));
    EXPECT_TRUE(log.Has("ReadArrayNoFloat: Attempt to convert a double value to an enum\n", "W"));
}

TEST(ParameterLogging, NamesWhoLogsAndAsksFirst)
{
    class Logger : public IParameterLoggingAPI
    {
    public:
        const CHAR* GetLoggingIdentifier() const override
        {
            return identifier.c_str();
        }
        bool LoggingEnabled(ParameterLogging::ParameterLogLevel level) const override
        {
            return level != ParameterLogging::Debug;
        }
        std::string identifier = "front";
    };

    SystemLogCapture log;
    Logger           logger;
    ParameterLogging::Write(&logger, ParameterLogging::Error, "value %d\n", 7);
    EXPECT_TRUE(log.Has("[ERROR] ParameterParser (Thread ", "E"));
    EXPECT_TRUE(log.Has(" (front): value 7\n"));
    ParameterLogging::Write(&logger, ParameterLogging::Debug, "silent");
    EXPECT_EQ(log.Size(), 1U);
    logger.identifier = "";
    ParameterLogging::Write(&logger, ParameterLogging::Warning, "%s", std::string(6000, 'x').c_str());
    EXPECT_TRUE(log.Has("[WARNING] ParameterParser", "W"));
    EXPECT_TRUE(log.Has(std::string(4095, 'x')));
    EXPECT_FALSE(log.Has(std::string(4096, 'x')));
    ParameterLogging::Write(nullptr, ParameterLogging::Debug, "loud");
    EXPECT_TRUE(log.Has("): loud", "V"));
}

}  // namespace
