#pragma once
// ParallelEvaluator: a texture evaluated on every core. The plug-in holds one
// current generator per loaded library, as its host expects, so one thread
// goes through the plug-in's session; more threads each open a generator of
// their own from the same record, the way the session opens one (factory,
// record, flags word), since distinct generator objects are safe to use at
// once. Each job's values depend only on its points, so the output is the
// same bits whatever the count of threads.

#include <functional>
#include <memory>
#include <vector>

#include "HostTransform.h"
#include "PluginLibrary.h"
#include "core/TransformData.h"

namespace gritwell {

class ParallelEvaluator {
public:
    // What a job runs: its number, the slot (job modulo the window) whose
    // buffers it may use, and the evaluator of the thread it runs on, which
    // takes model points and moves them into texture space first.
    using Compute = std::function<void(int job, int slot, const BatchEvaluator& evaluate)>;
    // Called on the calling thread for every job, in job order, once it is done.
    using Emit = std::function<void(int job, int slot)>;

    // `threads` >= 1; the transform must outlive this object.
    ParallelEvaluator(PluginLibrary& plugin, const std::vector<unsigned char>& record,
                      const TransformData& transforms, const HostTransform& transform, int threads);
    ~ParallelEvaluator();
    ParallelEvaluator(const ParallelEvaluator&) = delete;
    ParallelEvaluator& operator=(const ParallelEvaluator&) = delete;

    int threads() const { return threads_; }
    // Slots a run uses: jobs in flight or waiting to be emitted.
    int window() const { return threads_ == 1 ? 1 : 2 * threads_; }

    // Runs jobs 0..jobs-1, at most window() of them ahead of the last
    // emitted, so memory stays that of window() jobs. An exception from a
    // job or from emit stops the run and is rethrown here.
    void run(int jobs, const Compute& compute, const Emit& emit);

    // Every core this process may run on.
    static int defaultThreads();

private:
    struct Worker;
    int threads_;
    const HostTransform& transform_;
    std::unique_ptr<PluginSession> session_;  // one thread
    std::vector<std::unique_ptr<Worker>> workers_;  // more
};

}  // namespace gritwell
