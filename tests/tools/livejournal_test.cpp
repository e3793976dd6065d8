/// What is kept of edits on disk, whoever else writes there and whatever stands there.
#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/refusal.h"
#include "tests/support/temporaryfile.h"
#include "tools/kirotune/livejournal.h"
#include "tools/kirotune/livepatch.h"

namespace
{

using namespace kirotune;
using liveclient::DeviceInfo;
using testing::HasSubstr;

constexpr const char* Place = "host:1";

EditCommand Command(const std::string& rOld, const std::string& rNew)
{
    return {"2026-01-01T00:00:00Z", 0, "Default", "kirosync", {{"luxSyncConfig", rOld, rNew}}};
}

class LiveJournal : public testing::Test
{
protected:
    LiveJournal()
    {
        (VOID) setenv("XDG_STATE_HOME", m_state.path.c_str(), 1);
    }

    std::string Path() const
    {
        return m_state.path + "/kirotune/" + Place + ".journal";
    }

    const TemporaryFile m_state{"state"};
    const DeviceInfo    m_camera{"cam\tera\n", {}, 2, 0, 77};
};

TEST_F(LiveJournal, HoldsWhatWasSetSinceTheStartOfTheCamera)
{
    Journal(Place, m_camera).Add(Command("1", "2"));
    Journal(Place, m_camera).Add(Command("\n", "3"));
    {
        Journal journal(Place, m_camera);
        ASSERT_EQ(2u, journal.Commands().size());
        EXPECT_EQ("1", journal.Commands()[0].edits[0].oldText);
        EXPECT_EQ("\uFFFD", journal.Commands()[1].edits[0].oldText);
        journal.DropLast();
    }
    EXPECT_EQ(1u, Journal(Place, m_camera).Commands().size());

    DeviceInfo restarted = m_camera;
    restarted.id         = 78;
    EXPECT_TRUE(Journal(Place, restarted).Commands().empty());
    EXPECT_EQ(1u, Journal(Place, m_camera).Commands().size()) << "looking takes nothing away";
    Journal(Place, restarted).Add(Command("5", "6"));
    EXPECT_TRUE(Journal(Place, m_camera).Commands().empty());
    EXPECT_TRUE(std::filesystem::exists(Path() + ".before"));
}

TEST_F(LiveJournal, TakesTurns)
{
    const auto addMany = [this]
    {
        for (int round = 0; round < 20; ++round)
        {
            Journal(Place, m_camera).Add(Command("1", "2"));
        }
    };
    std::thread other(addMany);
    addMany();
    other.join();
    EXPECT_EQ(40u, Journal(Place, m_camera).Commands().size());
}

TEST_F(LiveJournal, StaysSmallAndLosesNoNumber)
{
    Journal journal(Place, m_camera);
    for (int round = 0; round < 12; ++round)
    {
        EditCommand command = Command(std::to_string(round), std::to_string(round + 1));
        for (int member = 0; member < 250; ++member)
        {
            command.edits.push_back(
                {std::string(400, 'm') + std::to_string(member), std::to_string(round), std::to_string(round + 1)});
        }
        journal.Add(std::move(command));
    }
    EXPECT_LT(std::filesystem::file_size(Path()), 1u << 20);
    EXPECT_LT(journal.Commands().size(), 12u);
    const std::vector<EditCommand> joined = Joined(journal.Commands());
    ASSERT_EQ(1u, joined.size());
    ASSERT_EQ(251u, joined[0].edits.size());
    EXPECT_EQ("0", joined[0].edits[250].oldText);
    EXPECT_EQ("12", joined[0].edits[250].newText);
}

TEST_F(LiveJournal, RefusesWhatIsNoJournal)
{
    const std::string head = "kirotune journal 1\ncamera\tx\n";
    const std::string line = "set\tnow\t0\tDefault\tm\ta\t1\t2\n";
    EXPECT_EQ(1u, ParseJournal(head + line, "j").commands.size());
    const std::pair<std::string, const char*> faults[] = {
        {"", "j:1: no line of a journal of edits, expected a line with an end; move the file away to begin anew"},
        {"modes: {}\n", "j:1: no line of a journal of edits, expected 'kirotune journal 1'"},
        {"kirotune journal 1\n", "j:2: "},
        {"kirotune journal 1\ncamera\n", "j:2: no line of a journal of edits, expected 'camera'"},
        {head + "set\tnow\t0\tDefault\tm\ta\t1\n", "j:3: no line of a journal of edits, expected 'set', time"},
        {head + line + line.substr(0, 20), "j:4: no line of a journal of edits, expected a line with an end"},
        {head + "set\tnow\t300\tDefault\tm\ta\t1\t2\n", "expected the index of a mode table"},
        {head + "set\tnow\t0\tDefault\tm\ta\t1\tx\n", "expected a number behind each member"},
        {head + "set\tnow\t0\tDefault\t\ta\t1\t2\n", "expected 'set', time"},
        {head + "set\tnow\t0\tUsecase\tm\ta\t1\t2\n", "expected a mode path"},
    };
    for (const auto& [text, pMessage] : faults)
    {
        EXPECT_THAT(RefusalOf([&, &rText = text] { (VOID) ParseJournal(rText, "j"); }), HasSubstr(pMessage)) << text;
    }
    std::mt19937      random(1);
    const std::string letters = "\t\n0a.[]|set";
    for (int round = 0; round < 3000; ++round)
    {
        std::string text = head + line + line;
        for (UINT32 count = random() % 4; count > 0; --count)
        {
            text[random() % text.size()] = letters[random() % letters.size()];
        }
        (VOID) RefusalOf(
            [&]
            {
                for (const EditCommand& rCommand : ParseJournal(text, "j").commands)
                {
                    EXPECT_FALSE(
                        PatchText("", {{rCommand.path, rCommand.module, rCommand.edits[0].member, "1"}}).empty());
                }
            });
    }
}

TEST_F(LiveJournal, TellsWhenThereIsNoPlaceForIt)
{
    (VOID) setenv("XDG_STATE_HOME", "/dev/null", 1);
    EXPECT_THAT(RefusalOf([this] { Journal(Place, m_camera); }),
                HasSubstr("/dev/null/kirotune: no place for the journal"));
}

TEST(LivePatch, NamesModesModulesAndPositions)
{
    const std::vector<PatchedNumber> numbers = {{"Default", "kirodbroi", "data[1].coords[3]", "1.5"},
                                                {"Default|Sensor.0", "kirosync", "luxSyncConfig", "UseMaster"},
                                                {"Default", "kirodbroi", "data[1].weight", "0.1"}};
    EXPECT_EQ("modes:\n  Default:\n    modules: {kirodbroi: {data: {1: {coords: {3: 1.5}, weight: 0.1}}}}\n"
              "    children: {Sensor.0: {modules: {kirosync: {luxSyncConfig: UseMaster}}}}\n",
              PatchText("", numbers));
    EXPECT_EQ("tables: [{name: \"night\", modes: {Default: {modules: {kirosync: {luxSyncConfig: UseMaster}}}}}]\n",
              PatchText("night", {{"Default", "kirosync", "luxSyncConfig", "UseMaster"}}));
}

}  // namespace
