#include "tools/page/page.h"

#include <utility>

#include <fmt/format.h>

#include "tools/liveclient/texts.h"
#include "tools/page/address.h"
#include "tools/page/pagejson.h"
#include "tools/page/requestbody.h"

namespace page
{

namespace
{

using kirotune::LiveCamera;

}  // namespace

Page::Page(const PageOptions& rOptions)
    : m_options(rOptions), m_address(FormatAddress({rOptions.camera.host, rOptions.camera.port})),
      m_edits(rOptions.pTuning), m_link(rOptions.camera, Watcher())
{
}

CameraWatcher Page::Watcher()
{
    CameraWatcher watcher;
    watcher.changed  = [this](const CameraState& rState) { TakeState(rState); };
    watcher.replaced = [this] { m_edits.Lose(); };
    watcher.sampled  = [this](DOUBLE seconds, const std::vector<liveclient::ControlValue>& rValues)
    { m_events.PublishSample(SampleJson(seconds, rValues)); };
    watcher.pictured  = [this](liveclient::Picture picture) { TakePicture(std::move(picture)); };
    watcher.isWatched = [this] { return m_events.IsListenedTo(); };
    return watcher;
}

VOID Page::TakeState(const CameraState& rState)
{
    if (!rState.isConnected)
    {
        const std::lock_guard lock(m_mutex);
        m_picture.reset();
    }
    m_events.Publish("camera", CameraJson(rState, m_address));
    if (m_options.tell)
    {
        m_options.tell(rState.isConnected ? fmt::format("the camera at {} is found: {}", m_address, rState.name)
                                          : fmt::format("no camera at {}: {}", m_address, rState.error));
    }
}

VOID Page::TakePicture(liveclient::Picture picture)
{
    const std::string json = FrameJson(picture.frame);
    {
        const std::lock_guard lock(m_mutex);
        m_picture = std::move(picture);
    }
    m_events.Publish("picture", json);
}

std::optional<liveclient::Picture> Page::Picture() const
{
    const std::lock_guard lock(m_mutex);
    return m_picture;
}

std::string Page::State()
{
    PageState state{m_link.State(), m_address, m_options.file};
    state.undo = m_edits.UndoCount();
    state.redo = m_edits.RedoCount();
    state.lost = m_edits.Kept().LostCount();
    if (state.camera.isConnected)
    {
        m_link.Do(
            [&state](LiveCamera& rCamera)
            {
                state.active  = rCamera.Client().ActiveModes();
                state.modes   = ReadModes(rCamera);
                state.modules = ReadModules(rCamera, state.active);
            });
    }
    return StateJson(state);
}

std::string Page::Module(const std::string& rMode, const std::string& rModule)
{
    std::vector<Member>                members;
    std::map<std::string, std::string> starts;
    m_link.Do(
        [&](LiveCamera& rCamera)
        {
            const std::string mode = liveclient::NamedPath(rMode);
            rCamera.RequireMode(mode);
            members = ReadModule(rCamera, mode, rModule);
            starts  = m_edits.Starts(rCamera, mode, rModule);
        });
    return ModuleJson(rMode, rModule, members, starts);
}

std::string Page::Changes()
{
    std::vector<kirotune::Change> changes;
    m_link.Do([&](LiveCamera& rCamera) { changes = m_edits.Changes(rCamera); });
    return ChangesJson(changes);
}

std::string Page::Patch()
{
    std::string patch;
    try
    {
        m_link.Do([&](LiveCamera& rCamera) { patch = m_edits.Patch(rCamera); });
    }
    catch (const NoCameraError&)
    {
        patch = m_edits.Kept().Patch();
        if (patch.empty())
        {
            throw;
        }
    }
    return patch;
}

std::string Page::LostPatch()
{
    return m_edits.Kept().LostPatch();
}

/// @throws TooManyEditsError
VOID Page::RequireRate()
{
    const std::lock_guard lock(m_mutex);
    const auto            now = std::chrono::steady_clock::now();
    while (!m_editTimes.empty() && now - m_editTimes.front() > std::chrono::seconds(1))
    {
        m_editTimes.pop_front();
    }
    if (m_editTimes.size() >= MaxEditsPerSecond)
    {
        throw TooManyEditsError(fmt::format("more than {} edits a second", MaxEditsPerSecond));
    }
    m_editTimes.push_back(now);
}

VOID Page::PublishEdit(const std::string& rClient, const EditResult& rResult)
{
    const size_t undo = m_edits.UndoCount();
    const size_t redo = m_edits.RedoCount();
    m_events.PublishBy(rClient, "edit", EditJson(rResult, true, undo, redo), EditJson(rResult, false, undo, redo));
}

std::string Page::PublishLost()
{
    const std::string lost = LostJson(m_edits.Kept().LostCount());
    m_events.Publish("lost", lost);
    return lost;
}

/// Browsers see edits in the order in which the camera got them.
std::string Page::Edit(const std::string& rClient, const EditWork& rWork)
{
    RequireRate();
    EditResult result;
    m_link.Do(
        [&](LiveCamera& rCamera)
        {
            result = rWork(rCamera);
            PublishEdit(rClient, result);
        });
    return ResultJson(result);
}

std::string Page::Set(std::string_view body, const std::string& rClient)
{
    const WantedEdit wanted = ParseSet(body);
    return Edit(rClient, [&](LiveCamera& rCamera) { return m_edits.Set(rCamera, wanted, rClient); });
}

std::string Page::Reset(std::string_view body, const std::string& rClient)
{
    const WantedReset wanted = ParseReset(body);
    return Edit(rClient,
                [&](LiveCamera& rCamera) { return m_edits.Reset(rCamera, wanted.mode, wanted.module, wanted.paths); });
}

std::string Page::Undo(const std::string& rClient)
{
    return Edit(rClient, [&](LiveCamera& rCamera) { return m_edits.Undo(rCamera); });
}

std::string Page::Redo(const std::string& rClient)
{
    return Edit(rClient, [&](LiveCamera& rCamera) { return m_edits.Redo(rCamera); });
}

std::string Page::SetLostAgain(const std::string& rClient)
{
    RequireRate();
    m_link.Do(
        [this, &rClient](LiveCamera& rCamera)
        {
            for (const auto& [rPlace, rNumbers] : m_edits.Kept().Lost())
            {
                PublishEdit(rClient, m_edits.SetLostAgain(rCamera, rPlace, rNumbers));
                (VOID) PublishLost();
            }
        });
    return LostJson(m_edits.Kept().LostCount());
}

std::string Page::ForgetLost()
{
    m_edits.Kept().ForgetLost();
    return PublishLost();
}

}  // namespace page
