/// What a check of a file reports.
#include <gtest/gtest.h>

#include "tests/support/temporaryfile.h"
#include "tools/tuningfile/check.h"
#include "tools/tuningfile/files.h"

namespace
{

using namespace tuningfile;

TEST(Check, LoadsWhatADeviceWouldLoadAndTellsWhatItWouldSay)
{
    const TemporaryFile file("check.bin");
    const TemporaryFile textFile("check.yaml");
    const std::string   text =
        textFile.Write(std::string("modes: {Default: {children: {Usecase.ZSL: {modules: {kiroev: {}}}}}}\n"));
    CheckReport report = CheckTuning(ReadTextFile(text));
    EXPECT_TRUE(report.accepted);
    EXPECT_EQ(std::vector<std::string>(), report.lines);

    std::vector<BYTE> bytes = CompileFile(text);
    report                  = CheckParameterFile(file.Write(bytes));
    EXPECT_TRUE(report.accepted);
    EXPECT_EQ(std::vector<std::string>(), report.lines);

    // A file of another header is refused in one line, without the number of the thread.
    bytes[0] = 'Q';
    report   = CheckParameterFile(file.Write(bytes));
    EXPECT_FALSE(report.accepted);
    EXPECT_EQ("Invalid binary header tag: QELTO Tunara Header", report.reason);
    EXPECT_EQ(std::vector<std::string>{"E: Invalid binary header tag: QELTO Tunara Header"}, report.lines);

    // A device reads the record of a deeper mode only when the mode is used; a fault in it shows all the same.
    const Tuning              tuning = ReadTextFile(text);
    Tuning                    odd    = tuning;
    tuning::ModuleDescription other  = *FindModule("kiroev");
    other.pRecord                    = FindModule("kirotouch")->pRecord;
    odd.tables[0].modes[1].modules   = {{&other, tuning.tables[0].modes[1].modules[0].pRecord}};
    report                           = CheckParameterFile(file.Write(WriteBinary(odd, NewestVersion)));
    EXPECT_TRUE(report.accepted);
    EXPECT_FALSE(report.lines.empty());
}

}  // namespace
