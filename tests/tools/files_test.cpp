/// Files on disk: what is written, what is refused, and what a check reports.
#include <filesystem>
#include <fstream>

#include "tests/support/refusal.h"
#include "tests/support/temporaryfile.h"
#include "tools/tuningfile/check.h"
#include "tools/tuningfile/files.h"

namespace
{

using namespace tuningfile;

class Files : public testing::Test
{
protected:
    Files()
    {
        std::filesystem::create_directory(m_folder.path);
    }

    std::string Path(const char* pName) const
    {
        return m_folder.path + '/' + pName;
    }

    std::string Write(const char* pName, const std::string& rText) const
    {
        std::ofstream(Path(pName), std::ios::binary) << rText;
        return Path(pName);
    }

    const TemporaryFile m_folder{"files_test"};
};

TEST_F(Files, ReplacingAFileIsWholeOrNotAtAll)
{
    const std::vector<BYTE> bytes = {1, 2, 3};
    const std::string       path  = Write("out.bin", "old content");
    ReplaceFile(path, bytes);
    EXPECT_EQ(bytes, ReadBytes(path));

    std::filesystem::create_symlink(path, Path("link.bin"));
    ReplaceFile(Path("link.bin"), std::vector<BYTE>{4});
    EXPECT_EQ(std::vector<BYTE>{4}, ReadBytes(path));
    EXPECT_TRUE(std::filesystem::is_symlink(Path("link.bin")));

    std::filesystem::create_directory(Path("folder"));
    EXPECT_EQ(Path("folder") + ": is a folder, expected a file",
              RefusalOf([&] { ReplaceFile(Path("folder"), bytes); }));
    EXPECT_EQ(Path("none/out.bin") + ": cannot be written: No such file or directory",
              RefusalOf([&] { ReplaceFile(Path("none/out.bin"), bytes); }));
    EXPECT_EQ(Path("none.yaml") + ": cannot be opened: No such file or directory",
              RefusalOf([&] { CompileFile(Path("none.yaml")); }));
    EXPECT_EQ(3, std::distance(std::filesystem::directory_iterator(m_folder.path), {}));
}

TEST_F(Files, CheckLoadsWhatADeviceWouldLoadAndTellsWhatItWouldSay)
{
    const std::string text = Write("t.yaml", "modes: {Default: {children: {Usecase.ZSL: {modules: {kiroev: {}}}}}}\n");
    CheckReport       report = CheckFile(text);
    EXPECT_TRUE(report.accepted);
    EXPECT_EQ(std::vector<std::string>(), report.lines);

    std::vector<BYTE> bytes = CompileFile(text);
    ReplaceFile(Path("t.bin"), bytes);
    report = CheckFile(Path("t.bin"));
    EXPECT_TRUE(report.accepted);
    EXPECT_EQ(std::vector<std::string>(), report.lines);

    // A file of another header is refused in one line, without the number of the thread.
    bytes[0] = 'Q';
    ReplaceFile(Path("t.bin"), bytes);
    report = CheckFile(Path("t.bin"));
    EXPECT_FALSE(report.accepted);
    EXPECT_EQ("Invalid binary header tag: QELTO Tunara Header", report.reason);
    EXPECT_EQ(std::vector<std::string>{"E: Invalid binary header tag: QELTO Tunara Header"}, report.lines);

    // A device reads the record of a deeper mode only when the mode is used; a fault in it shows all the same.
    const Tuning              tuning = ReadTextFile(text);
    Tuning                    odd    = tuning;
    tuning::ModuleDescription other  = *FindModule("kiroev");
    other.pRecord                    = FindModule("kirotouch")->pRecord;
    odd.tables[0].modes[1].modules   = {{&other, tuning.tables[0].modes[1].modules[0].pRecord}};
    ReplaceFile(Path("t.bin"), WriteBinary(odd, NewestVersion));
    report = CheckFile(Path("t.bin"));
    EXPECT_TRUE(report.accepted);
    EXPECT_FALSE(report.lines.empty());
}

}  // namespace
