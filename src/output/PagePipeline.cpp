#include "output/PagePipeline.h"

#include "output/ReportEngine.h"

#include <algorithm>

PagePipeline::PagePipeline(int threads, int maxInFlight)
    : m_max(size_t(std::max(1, maxInFlight)))
{
    for (int i = 1; i < threads; ++i)
        m_workers.emplace_back([this] { work(); });
}

PagePipeline::~PagePipeline()
{
    {
        std::lock_guard lock(m_mutex);
        m_stop = true;
        m_queue.clear();
    }
    m_workReady.notify_all();
    for (std::thread& t : m_workers)
        t.join();
}

void PagePipeline::Submit(std::unique_ptr<PageCanvas> canvas, Paint paint, Put put)
{
    drain(m_max - 1);
    auto job = std::make_unique<Job>();
    job->canvas = std::move(canvas);
    job->paint = std::move(paint);
    job->put = std::move(put);
    {
        std::lock_guard lock(m_mutex);
        m_queue.push_back(job.get());
        m_order.push_back(std::move(job));
    }
    m_workReady.notify_one();
}

void PagePipeline::Finish() { drain(0); }

void PagePipeline::drain(size_t keep)
{
    for (;;) {
        std::unique_ptr<Job> front;
        {
            std::unique_lock lock(m_mutex);
            if (m_order.size() <= keep)
                return;
            Job* first = m_order.front().get();
            if (!first->done) {
                // Rather than wait, paint the next page nobody has started.
                if (!m_queue.empty()) {
                    Job* job = m_queue.front();
                    m_queue.pop_front();
                    lock.unlock();
                    paint(*job);
                    continue;
                }
                m_jobDone.wait(lock, [first] { return first->done; });
            }
            front = std::move(m_order.front());
            m_order.pop_front();
        }
        if (front->error)
            std::rethrow_exception(front->error);
        front->put(std::move(front->canvas));
    }
}

void PagePipeline::paint(Job& job)
{
    std::exception_ptr error;
    try {
        job.paint(*job.canvas);
        job.canvas->Close();
    } catch (...) {
        error = std::current_exception();
    }
    {
        std::lock_guard lock(m_mutex);
        job.error = error;
        job.done = true;
    }
    m_jobDone.notify_all();
}

void PagePipeline::work()
{
    for (;;) {
        Job* job = nullptr;
        {
            std::unique_lock lock(m_mutex);
            m_workReady.wait(lock, [this] { return m_stop || !m_queue.empty(); });
            if (m_stop)
                return;
            job = m_queue.front();
            m_queue.pop_front();
        }
        paint(*job);
    }
}
