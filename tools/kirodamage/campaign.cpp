#include "tools/kirodamage/campaign.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <new>
#include <stdexcept>
#include <vector>

#include <sys/mman.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kirodamage
{

namespace
{

constexpr INT ExitFault = 1;

/// Waiting for nothing is a hang, too, but a busy machine is none.
constexpr UINT32 WallSecondsPerSecond = 30;

/// What a worker tells while it runs, so that it is known when it is gone.
struct WorkerState
{
    UINT64              number = 0;  ///< of the trial that runs
    std::atomic<UINT64> done   = 0;  ///< trials
    Tally               tally{};
    CHAR                fault[sizeof(TrialResult::fault)] = {};
};

/// Memory that the workers share with the process that watches them.
class SharedStates
{
public:
    explicit SharedStates(size_t count)
        : m_size(count * sizeof(WorkerState)),
          m_pMemory(mmap(nullptr, m_size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
    {
        if (m_pMemory == MAP_FAILED)
        {
            throw std::runtime_error("no memory to share with workers");
        }
        m_pStates = new (m_pMemory) WorkerState[count];
    }

    ~SharedStates()
    {
        (VOID) munmap(m_pMemory, m_size);
    }

    SharedStates(const SharedStates&)            = delete;
    SharedStates& operator=(const SharedStates&) = delete;

    WorkerState& operator[](size_t index)
    {
        return m_pStates[index];
    }

private:
    const size_t m_size;
    VOID* const  m_pMemory;
    WorkerState* m_pStates;
};

/// Lets the system end this process if a trial takes too long; 0 seconds takes that back.
VOID LimitTime(UINT32 seconds)
{
    itimerval limit{};
    limit.it_value.tv_sec = seconds;
    (VOID) setitimer(ITIMER_PROF, &limit, nullptr);
    (VOID) alarm(seconds * WallSecondsPerSecond);
}

VOID AddTo(Tally& rTally, const TrialResult& rResult, UINT64 number, UINT64 microseconds)
{
    const UINT64 usable = rResult.isUsable ? 1 : 0;
    rTally.kinds[rResult.kind].Add(
        {1 - usable, usable, rResult.isDoubted ? 1ULL : 0ULL, rResult.fetched, rResult.withheld, rResult.frames});
    rTally.microseconds.Add(microseconds, number);
    rTally.refusal.Add(rResult.isUsable ? 0 : microseconds, number);
    rTally.largest.Add(rResult.largest, number);
    rTally.most.Add(rResult.most, number);
}

/// Runs every jobs-th trial. @return the process's status
INT Work(const CampaignPlan& rPlan, const Trial& rTrial, UINT32 first, WorkerState& rState)
{
    // Process time, as the limit has it: what others do on the machine is no fault of a file.
    using Clock = std::clock_t;
    for (UINT64 number = first; number < rPlan.files; number += rPlan.jobs)
    {
        rState.number     = number;
        const Clock start = std::clock();
        LimitTime(rPlan.seconds);
        const TrialResult result = rTrial(number);
        LimitTime(0);
        const Clock end = std::clock();
        AddTo(rState.tally, result, number, static_cast<UINT64>(end - start) * 1000000 / CLOCKS_PER_SEC);
        rState.done.fetch_add(1, std::memory_order_relaxed);
        if (result.fault[0] != '\0')
        {
            std::memcpy(rState.fault, result.fault, sizeof(rState.fault));
            return ExitFault;
        }
    }
    return 0;
}

pid_t StartWorker(const CampaignPlan& rPlan, const Trial& rTrial, UINT32 first, WorkerState& rState)
{
    const pid_t process = fork();
    if (process < 0)
    {
        throw std::runtime_error("no process for a worker");
    }
    if (process > 0)
    {
        return process;
    }
    INT status = ExitFault;
    try
    {
        status = Work(rPlan, rTrial, first, rState);
    }
    catch (const std::exception& rError)
    {
        std::strncpy(rState.fault, rError.what(), sizeof(rState.fault) - 1);
    }
    _exit(status);  // what the process inherited is not its own to clean up
}

std::string Describe(INT status, const WorkerState& rState)
{
    if (rState.fault[0] != '\0')
    {
        return rState.fault;
    }
    if (!WIFSIGNALED(status))
    {
        return "ended with status " + std::to_string(WEXITSTATUS(status));
    }
    const INT signal = WTERMSIG(status);
    return (signal == SIGPROF || signal == SIGALRM) ? "takes too long"
                                                    : std::string("ended by signal: ") + strsignal(signal);
}

VOID Merge(Tally& rSum, const Tally& rPart)
{
    for (size_t kind = 0; kind < KindsMax; ++kind)
    {
        rSum.kinds[kind].Add(rPart.kinds[kind]);
    }
    rSum.microseconds.Add(rPart.microseconds.value, rPart.microseconds.number);
    rSum.refusal.Add(rPart.refusal.value, rPart.refusal.number);
    rSum.largest.Add(rPart.largest.value, rPart.largest.number);
    rSum.most.Add(rPart.most.value, rPart.most.number);
}

/// The workers that run, ended with this object.
class Workers
{
public:
    Workers(const CampaignPlan& rPlan, const Trial& rTrial, SharedStates& rStates) : m_rPlan(rPlan), m_rStates(rStates)
    {
        for (UINT32 job = 0; job < rPlan.jobs; ++job)
        {
            m_processes.push_back(StartWorker(rPlan, rTrial, job, rStates[job]));
        }
    }

    ~Workers()
    {
        for (const pid_t process : m_processes)
        {
            if (process != Ended)
            {
                (VOID) kill(process, SIGKILL);
                (VOID) waitpid(process, nullptr, 0);
            }
        }
    }

    Workers(const Workers&)            = delete;
    Workers& operator=(const Workers&) = delete;

    /// @return the first fault; nothing if all workers have come to their ends
    std::optional<Fault> Wait()
    {
        for (size_t count = m_processes.size(); count > 0; --count)
        {
            INT         status  = 0;
            const pid_t process = WaitForAny(status);
            const auto  found   = std::find(m_processes.begin(), m_processes.end(), process);
            if (found == m_processes.end())
            {
                throw std::runtime_error("a worker was lost");
            }
            *found                    = Ended;
            const WorkerState& rState = m_rStates[static_cast<size_t>(found - m_processes.begin())];
            if (status != 0)
            {
                return Fault{rState.number, Describe(status, rState)};
            }
        }
        return std::nullopt;
    }

private:
    static constexpr pid_t Ended = -1;

    pid_t WaitForAny(INT& rStatus)
    {
        constexpr useconds_t interval = 100000;

        pid_t process = 0;
        while (m_rPlan.progress && (process = waitpid(-1, &rStatus, WNOHANG)) == 0)
        {
            UINT64 done = 0;
            for (size_t job = 0; job < m_rPlan.jobs; ++job)
            {
                done += m_rStates[job].done.load(std::memory_order_relaxed);
            }
            m_rPlan.progress(done);
            (VOID) usleep(interval);
        }
        return m_rPlan.progress ? process : wait(&rStatus);
    }

    const CampaignPlan& m_rPlan;
    SharedStates&       m_rStates;
    std::vector<pid_t>  m_processes;
};

}  // namespace

CampaignResult RunCampaign(const CampaignPlan& rPlan, const Trial& rTrial)
{
    SharedStates   states(rPlan.jobs);
    CampaignResult result;
    {
        Workers workers(rPlan, rTrial, states);
        result.fault = workers.Wait();
    }
    for (UINT32 job = 0; job < rPlan.jobs; ++job)
    {
        Merge(result.tally, states[job].tally);
    }
    return result;
}

}  // namespace kirodamage
