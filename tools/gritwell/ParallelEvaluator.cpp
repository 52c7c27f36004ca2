#include "ParallelEvaluator.h"

#include <sched.h>

#include <condition_variable>
#include <cstring>
#include <exception>
#include <mutex>
#include <thread>

#include "CliError.h"
#include "core/Texture3D.h"
#include "textures/TextureFactory.h"

namespace gritwell {

// One thread's generator and the buffer its moved points go through.
struct ParallelEvaluator::Worker {
    TexturePtr texture;
    std::vector<float> moved;
};

ParallelEvaluator::ParallelEvaluator(PluginLibrary& plugin, const std::vector<unsigned char>& record,
                                     const TransformData& transforms, const HostTransform& transform, int threads)
    : threads_(threads), transform_(transform) {
    if (threads_ < 1) throw CliError("--threads must be at least 1");
    if (threads_ == 1) {
        session_ = std::make_unique<PluginSession>(plugin, record, transforms);
        return;
    }
    // The host's 256-byte buffer, as the session receives the record.
    char block[256] = {};
    std::memcpy(block, record.data(), std::min<std::size_t>(record.size(), sizeof block));
    for (int t = 0; t < threads_; ++t) {
        auto worker = std::make_unique<Worker>();
        worker->texture.reset(TextureFactory::create(Texture3D::recordName(block)));
        if (!worker->texture) throw CliError("the record names no generator this build has");
        worker->texture->setStateFromDescription(block);
        worker->texture->setFlags(transforms.flags);
        workers_.push_back(std::move(worker));
    }
}

ParallelEvaluator::~ParallelEvaluator() = default;

int ParallelEvaluator::defaultThreads() {
    cpu_set_t set;
    if (sched_getaffinity(0, sizeof set, &set) == 0 && CPU_COUNT(&set) > 0) return CPU_COUNT(&set);
    const unsigned n = std::thread::hardware_concurrency();
    return n == 0 ? 1 : static_cast<int>(n);
}

void ParallelEvaluator::run(int jobs, const Compute& compute, const Emit& emit) {
    if (threads_ == 1) {
        const BatchEvaluator evaluate = transformedEvaluator(*session_, transform_);
        for (int job = 0; job < jobs; ++job) {
            compute(job, 0, evaluate);
            emit(job, 0);
        }
        return;
    }

    const int window = this->window();
    std::mutex mutex;
    std::condition_variable changed;
    int next = 0;     // the next job to start
    int emitted = 0;  // jobs emitted so far
    std::vector<char> done(window, 0);
    std::exception_ptr failure;

    auto work = [&](Worker& worker) {
        const BatchEvaluator evaluate = [this, &worker](const float* points, int n, float* out) {
            if (transform_.isIdentity()) {
                (*worker.texture)(points, n, out);
                return;
            }
            worker.moved.resize(3 * static_cast<std::size_t>(n));
            transform_.apply(points, worker.moved.data(), static_cast<std::size_t>(n));
            (*worker.texture)(worker.moved.data(), n, out);
        };
        for (;;) {
            int job;
            {
                std::unique_lock lock(mutex);
                changed.wait(lock, [&] { return failure || next >= jobs || next < emitted + window; });
                if (failure || next >= jobs) return;
                job = next++;
            }
            try {
                compute(job, job % window, evaluate);
            } catch (...) {
                std::lock_guard lock(mutex);
                if (!failure) failure = std::current_exception();
            }
            std::lock_guard lock(mutex);
            done[job % window] = 1;
            changed.notify_all();
        }
    };

    std::vector<std::thread> pool;
    for (auto& worker : workers_) pool.emplace_back(work, std::ref(*worker));
    try {
        while (emitted < jobs) {
            const int slot = emitted % window;
            {
                std::unique_lock lock(mutex);
                changed.wait(lock, [&] { return failure || done[slot]; });
                if (failure) break;
                done[slot] = 0;
            }
            emit(emitted, slot);
            std::lock_guard lock(mutex);
            ++emitted;
            changed.notify_all();
        }
    } catch (...) {
        std::lock_guard lock(mutex);
        if (!failure) failure = std::current_exception();
        changed.notify_all();
    }
    for (std::thread& t : pool) t.join();
    if (failure) std::rethrow_exception(failure);
}

}  // namespace gritwell
