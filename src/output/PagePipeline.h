#pragma once
// Pages painted on several threads and taken back in page order. The caller lays pages out
// and submits each with its canvas; worker threads paint them, and the caller paints queued
// pages itself whenever it would otherwise wait, so N threads keep N cores busy. At most
// maxInFlight pages are painted or waiting at once, which bounds the memory they hold.
//
//   PagePipeline pipe(threads, 4 * threads);
//   pipe.Submit(std::move(canvas), paint, put);   // put runs on this thread, in order
//   pipe.Finish();                                 // every page put
//
// A failure while painting is thrown from the Submit or Finish that would have put the page;
// destroying the pipeline (after a failure or a cancel) drops pages not yet put and waits
// only for the pages being painted at that moment.
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class PageCanvas;

class PagePipeline {
public:
    using Paint = std::function<void(PageCanvas&)>;
    using Put = std::function<void(std::unique_ptr<PageCanvas>)>;

    // threads counts the calling thread; threads - 1 workers are started.
    PagePipeline(int threads, int maxInFlight);
    ~PagePipeline();
    PagePipeline(const PagePipeline&) = delete;
    PagePipeline& operator=(const PagePipeline&) = delete;

    void Submit(std::unique_ptr<PageCanvas> canvas, Paint paint, Put put);
    void Finish();

private:
    struct Job {
        std::unique_ptr<PageCanvas> canvas;
        Paint paint;
        Put put;
        bool done = false;
        std::exception_ptr error;
    };
    void drain(size_t keep);
    void paint(Job& job);
    void work();

    const size_t m_max;
    std::mutex m_mutex;
    std::condition_variable m_workReady, m_jobDone;
    std::deque<std::unique_ptr<Job>> m_order; // every page not yet put, in page order
    std::deque<Job*> m_queue;                 // pages no thread has started
    bool m_stop = false;
    std::vector<std::thread> m_workers;
};
