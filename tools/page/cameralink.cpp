#include "tools/page/cameralink.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <span>
#include <utility>

#include <fmt/format.h>

#include "host/controlvalues.h"

namespace page
{

namespace
{

using kirotune::LiveCamera;
using liveclient::ControlValue;

constexpr std::chrono::microseconds SamplePeriod{1000000 / 30};
constexpr std::chrono::milliseconds PicturePeriod{200};
constexpr std::chrono::milliseconds SignPeriod{1000};
constexpr std::chrono::milliseconds RetryPeriod{500};

/// Requests of browsers that may wait.
constexpr size_t MaxTasks = 64;

liveclient::CustomResult AskForPicture(LiveCamera& rCamera)
{
    const auto* pRequest = reinterpret_cast<const BYTE*>(liveclient::PictureRequest.data());
    return rCamera.Client().Custom({pRequest, liveclient::PictureRequest.size()});
}

}  // namespace

CameraLink::CameraLink(const liveclient::Options& rOptions, CameraWatcher watcher)
    : m_options(rOptions), m_watcher(std::move(watcher)), m_start(Clock::now())
{
    m_state.error = "connecting";
    m_thread      = std::thread([this] { Run(); });
}

CameraLink::~CameraLink()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
        m_changed.notify_one();
    }
    m_thread.join();
}

CameraState CameraLink::State() const
{
    const std::lock_guard lock(m_mutex);
    return m_state;
}

bool CameraLink::IsStopping() const
{
    const std::lock_guard lock(m_mutex);
    return m_isStopping;
}

VOID CameraLink::Do(Work work)
{
    std::future<VOID> done;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_state.isConnected)
        {
            throw NoCameraError("no camera: " + m_state.error);
        }
        if (m_tasks.size() >= MaxTasks)
        {
            throw NoCameraError("the camera is busy");
        }
        m_tasks.push_back({std::move(work), {}});
        done = m_tasks.back().done.get_future();
        m_changed.notify_one();
    }
    done.get();
}

/// Until there is something to do, or until then. @return false at the end
bool CameraLink::Wait(Clock::time_point until)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait_until(lock, until, [this] { return m_isStopping || !m_tasks.empty(); });
    return !m_isStopping;
}

VOID CameraLink::Run()
{
    bool isGoingOn = true;
    while (isGoingOn)
    {
        try
        {
            LiveCamera camera(m_options);
            Find(camera);
            Serve(camera);
            Lose("the page ends");
        }
        catch (const std::exception& rError)
        {
            Lose(rError.what());
        }
        isGoingOn = Wait(Clock::now() + RetryPeriod);
    }
}

VOID CameraLink::Find(LiveCamera& rCamera)
{
    const liveclient::DeviceInfo& rDevice = rCamera.Device();
    CameraState state{true, rDevice.name, fmt::format("{}.{}", rDevice.major, rDevice.minor), {}, false};
    state.hasPictures          = liveclient::OffersPictures(AskForPicture(rCamera));
    const std::string identity = fmt::format("{} {}", rDevice.id, rDevice.name);
    if (identity != m_identity)
    {
        m_identity = identity;
        m_watcher.replaced();
    }
    m_lastFrame   = -1.0;
    m_lastPicture = 0;
    {
        const std::lock_guard lock(m_mutex);
        m_state = state;
    }
    m_watcher.changed(state);
}

VOID CameraLink::Lose(const std::string& rWhy)
{
    CameraState state;
    state.error            = rWhy;
    bool             isNew = false;
    std::deque<Task> unserved;
    {
        const std::lock_guard lock(m_mutex);
        isNew   = m_state.isConnected || m_state.error != rWhy;
        m_state = state;
        unserved.swap(m_tasks);
    }
    for (Task& rTask : unserved)
    {
        rTask.done.set_exception(std::make_exception_ptr(NoCameraError("no camera: " + rWhy)));
    }
    if (isNew && !IsStopping())  // else it is the page that goes away
    {
        m_watcher.changed(state);
    }
}

VOID CameraLink::Serve(LiveCamera& rCamera)
{
    Schedule schedule{Clock::now(), Clock::now(), Clock::now() + SignPeriod};
    while (!IsStopping())
    {
        std::optional<Task> task;
        {
            const std::lock_guard lock(m_mutex);
            if (!m_tasks.empty())
            {
                task = std::move(m_tasks.front());
                m_tasks.pop_front();
            }
        }
        if (task.has_value())
        {
            TakePart(rCamera, std::move(*task));
        }
        AskWhatIsDue(rCamera, schedule);
        (VOID) Wait(std::min({schedule.sample, schedule.picture, schedule.sign}));
    }
}

/// Does one piece of work. What it could not do tells whether there still is a camera only if that is asked.
VOID CameraLink::TakePart(LiveCamera& rCamera, Task task)
{
    bool hasFailed = false;
    try
    {
        task.work(rCamera);
        task.done.set_value();
    }
    catch (...)
    {
        hasFailed = true;
        task.done.set_exception(std::current_exception());
    }
    if (hasFailed)
    {
        (VOID) rCamera.Client().Device();
    }
}

VOID CameraLink::AskWhatIsDue(LiveCamera& rCamera, Schedule& rSchedule)
{
    const auto now       = Clock::now();
    const bool isWatched = m_watcher.isWatched();
    if (now >= rSchedule.sample)
    {
        if (isWatched)
        {
            TakeSample(rCamera);
        }
        rSchedule.sample = std::max(rSchedule.sample + SamplePeriod, now);  // a slow camera is not asked in a rush
    }
    if (now >= rSchedule.picture)
    {
        if (isWatched && m_state.hasPictures)
        {
            TakePicture(rCamera);
        }
        rSchedule.picture = now + PicturePeriod;
    }
    if (now >= rSchedule.sign)
    {
        (VOID) rCamera.Client().Device();
        rSchedule.sign = now + SignPeriod;
    }
}

/// A frame is told once.
VOID CameraLink::TakeSample(LiveCamera& rCamera)
{
    const std::vector<ControlValue> values = rCamera.Client().ControlValues();
    const auto                      frame  = std::find_if(values.begin(), values.end(),
                                                          [](const ControlValue& rValue) { return rValue.id == controlvalues::FrameNumber; });
    if (values.empty() || (frame != values.end() && frame->value == m_lastFrame))
    {
        return;
    }
    m_lastFrame = (frame != values.end()) ? frame->value : m_lastFrame;
    m_watcher.sampled(std::chrono::duration<DOUBLE>(Clock::now() - m_start).count(), values);
}

VOID CameraLink::TakePicture(LiveCamera& rCamera)
{
    std::optional<liveclient::Picture> picture = liveclient::DecodePicture(AskForPicture(rCamera));
    if (picture.has_value() && picture->frame != m_lastPicture)
    {
        m_lastPicture = picture->frame;
        m_watcher.pictured(std::move(*picture));
    }
}

}  // namespace page
