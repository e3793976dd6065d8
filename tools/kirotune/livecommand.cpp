#include "tools/kirotune/livecommand.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/kirotune/livesession.h"
#include "tools/program/commandline.h"
#include "tools/tuningfile/tuning.h"

namespace kirotune
{

namespace
{

struct Arguments
{
    liveclient::Options      service;
    DOUBLE                   timeout = 2.0;  ///< s
    bool                     isJson  = false;
    std::string              path    = "Default";
    std::string              module;
    std::string              members;
    std::vector<std::string> assignments;
    bool                     isForced  = false;
    UINT32                   undoCount = 1;
    std::optional<UINT32>    table;
    std::string              file;
    std::string              tuning;
    WatchOptions             watch;
};

constexpr const char* PathHelp =
    "mode path, by names ('Default|Usecase.Video') or numbers ('0|2.2'), in quotes for '|'";
constexpr const char* ModuleHelp = "module, or a record within it (kiroconvergence.smoothADRC)";

/// Makes commands that share one set of arguments, which lives as long as they do.
class LiveCommandLine
{
public:
    LiveCommandLine(CLI::App& rLive, std::function<int()>& rRun) : m_rLive(rLive), m_rRun(rRun)
    {
    }

    VOID AddConnection();
    VOID AddLookingCommands();
    VOID AddValueCommands();
    VOID AddEditCommands();
    VOID AddKeepingCommands();
    VOID AddWatch();
    VOID AddOtherCommands();

private:
    template <typename Action> CLI::App& Add(const char* pName, const char* pHelp, Action action);

    CLI::App&                        m_rLive;
    std::function<int()>&            m_rRun;
    const std::shared_ptr<Arguments> m_pArguments = std::make_shared<Arguments>();
};

template <typename Action> CLI::App& LiveCommandLine::Add(const char* pName, const char* pHelp, Action action)
{
    CLI::App* pCommand = m_rLive.add_subcommand(pName, pHelp);
    pCommand->fallthrough();
    pCommand->callback(
        [pArguments = m_pArguments, &rRun = m_rRun, action]
        {
            rRun = [pArguments, action]
            {
                using namespace std::chrono;
                pArguments->service.timeout = duration_cast<milliseconds>(duration<DOUBLE>(pArguments->timeout));
                LiveSession session(pArguments->service, pArguments->isJson);
                action(session, *pArguments);
                return 0;
            };
        });
    return *pCommand;
}

VOID LiveCommandLine::AddConnection()
{
    m_rLive.add_option("--host", m_pArguments->service.host, "name or address of the device")->capture_default_str();
    m_rLive.add_option("--port", m_pArguments->service.port, "TCP port of the service")
        ->capture_default_str()
        ->check(CLI::Range(1, 65535));
    m_rLive.add_option("--timeout", m_pArguments->timeout, "seconds to wait for the connection and for each answer")
        ->capture_default_str()
        ->check(CLI::Range(0.01, 3600.0));
    m_rLive.add_flag("--json", m_pArguments->isJson, "print JSON for scripts");
}

VOID LiveCommandLine::AddLookingCommands()
{
    Add("device", "show who answers", [](LiveSession& rSession, const Arguments&) { rSession.Device(); });

    CLI::App& rModes = Add("modes", "list the modes below a mode path",
                           [](LiveSession& rSession, const Arguments& rArguments) { rSession.Modes(rArguments.path); });
    rModes.add_option("path", m_pArguments->path, PathHelp)->capture_default_str();

    CLI::App& rModules =
        Add("modules", "list the modules that frames of a mode path find, its own and those from above",
            [](LiveSession& rSession, const Arguments& rArguments) { rSession.Modules(rArguments.path); });
    rModules.add_option("path", m_pArguments->path, PathHelp)->capture_default_str();

    Add("active", "list the mode paths in use, the latest first",
        [](LiveSession& rSession, const Arguments&) { rSession.ActiveModes(); });
    Add("controls", "show the numbers that the camera publishes for each frame",
        [](LiveSession& rSession, const Arguments&) { rSession.Controls(); });
}

VOID LiveCommandLine::AddValueCommands()
{
    CLI::App& rInfo = Add("info", "describe the members of a module: type, count of an array, value",
                          [](LiveSession& rSession, const Arguments& rArguments)
                          { rSession.Info(rArguments.path, rArguments.module); });
    rInfo.add_option("path", m_pArguments->path, PathHelp)->required();
    rInfo.add_option("module", m_pArguments->module, "module, or a record or member within it")->required();

    CLI::App& rGet = Add("get", "read values",
                         [](LiveSession& rSession, const Arguments& rArguments)
                         { rSession.Get(rArguments.path, rArguments.module, rArguments.members); });
    rGet.add_option("path", m_pArguments->path, PathHelp)->required();
    rGet.add_option("module", m_pArguments->module, ModuleHelp)->required();
    rGet.add_option("members", m_pArguments->members,
                    "member paths joined by ',' (data[2].end,speed); all values at that level by default");
}

VOID LiveCommandLine::AddEditCommands()
{
    CLI::App& rSet =
        Add("set",
            "change numbers while the camera runs, and show them before and after; the tuning file stays "
            "as it is",
            [](LiveSession& rSession, const Arguments& rArguments)
            { rSession.Set(rArguments.path, rArguments.module, rArguments.assignments, rArguments.isForced); });
    rSet.add_option("path", m_pArguments->path, PathHelp)->required();
    rSet.add_option("module", m_pArguments->module, ModuleHelp)->required();
    rSet.add_option("assignments", m_pArguments->assignments,
                    "NAME=VALUE, where the value is a decimal number, true, false, or the name of an enumerator")
        ->required();
    rSet.add_flag("--force", m_pArguments->isForced, "send numbers outside of the range in which they make sense, too");
}

/// What becomes of edits.
VOID LiveCommandLine::AddKeepingCommands()
{
    constexpr const char* TuningHelp = "text tuning (.yaml) or parameter file that the camera was given";

    CLI::App& rUndo =
        Add("undo", "take back what the last 'set' commands have done since the camera was started",
            [](LiveSession& rSession, const Arguments& rArguments) { rSession.Undo(rArguments.undoCount); });
    rUndo.add_option("count", m_pArguments->undoCount, "commands to take back")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);

    CLI::App& rDiff = Add("diff", "show the numbers of the camera that differ from those of its tuning",
                          [](LiveSession& rSession, const Arguments& rArguments)
                          { rSession.Diff(rArguments.tuning, rArguments.path); });
    rDiff.add_option("path", m_pArguments->path, "mode path: that mode and those below it")->capture_default_str();
    rDiff.add_option("--file", m_pArguments->tuning, std::string(TuningHelp) + "; the camera itself does not tell")
        ->check(program::FileName)
        ->required();

    CLI::App& rSave = Add("save", "write the edits as a patch, for 'kirotune compile --patch'",
                          [](LiveSession& rSession, const Arguments& rArguments)
                          { rSession.Save(rArguments.file, rArguments.tuning); });
    rSave.add_option("patch", m_pArguments->file, "patch to write (.yaml)")->check(program::FileName)->required();
    rSave
        .add_option("--file", m_pArguments->tuning,
                    std::string(TuningHelp) + ": save all that differs from it, not what this program has set")
        ->check(program::FileName);
}

VOID LiveCommandLine::AddWatch()
{
    CLI::App& rWatch = Add("watch", "print values as they change, until interrupted",
                           [](LiveSession& rSession, const Arguments& rArguments) {
                               rSession.Watch(rArguments.path, rArguments.module, rArguments.members, rArguments.watch);
                           });
    rWatch.add_option("path", m_pArguments->path, PathHelp);
    rWatch.add_option("module", m_pArguments->module, ModuleHelp);
    rWatch.add_option("members", m_pArguments->members, "member paths joined by ','");
    rWatch
        .add_option("--controls", m_pArguments->watch.controls,
                    "names of numbers that 'controls' lists, joined by ','; beside members or without them")
        ->delimiter(',')
        ->allow_extra_args(false);
    rWatch.parse_complete_callback(
        [&rWatch, pArguments = m_pArguments]
        {
            const bool isAboutMembers = rWatch.count("path") > 0 || pArguments->watch.controls.empty();
            if (isAboutMembers && pArguments->members.empty())
            {
                throw CLI::RequiredError("path, module and members, or --controls");
            }
        });
    rWatch.add_option("--rate", m_pArguments->watch.rate, "samples per second")
        ->capture_default_str()
        ->check(CLI::Range(0.01, 1000.0));
    rWatch.add_option("--count", m_pArguments->watch.count, "end after so many lines")->check(CLI::PositiveNumber);
    rWatch.add_flag("--all", m_pArguments->watch.everySample, "print every sample, not only changes");
}

VOID LiveCommandLine::AddOtherCommands()
{
    CLI::App& rTable = Add("table", "show the mode table in use, or select another for all who connect",
                           [](LiveSession& rSession, const Arguments& rArguments)
                           {
                               if (rArguments.table)
                               {
                                   rSession.SelectTable(*rArguments.table);
                                   return;
                               }
                               rSession.ShowTable();
                           });
    rTable.add_option("index", m_pArguments->table, "table to select, from 0")
        ->check(CLI::Range(tuningfile::MaxModeTables - 1));

    CLI::App& rCustom =
        Add("custom", "send bytes to the device's own handler, and show its answer",
            [](LiveSession& rSession, const Arguments& rArguments) { rSession.Custom(rArguments.file); });
    rCustom.add_option("file", m_pArguments->file, "file with the bytes to send")->required();
}

}  // namespace

VOID AddLiveCommands(CLI::App& rApp, std::function<int()>& rRun)
{
    CLI::App* pLive = rApp.add_subcommand("live", "read and change the tuning of a running camera");
    pLive->require_subcommand(1);
    LiveCommandLine commands(*pLive, rRun);
    commands.AddConnection();
    commands.AddLookingCommands();
    commands.AddValueCommands();
    commands.AddEditCommands();
    commands.AddKeepingCommands();
    commands.AddWatch();
    commands.AddOtherCommands();
}

}  // namespace kirotune
