// SPDX-License-Identifier: GPL-3.0-or-later
// Threads at lists of work, of which one at a time goes through steps that need the lists, and
// opens loops in them to those that have nothing else to do.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <vector>

// Shares pieces 0..count-1 of a loop; null pointers to it mean a thread on its own.
class loopsharer {
  public:
    virtual ~loopsharer() = default;
    // A piece throws nothing.
    virtual void each(int count, const std::function<void(int)>& piece) = 0;
};

class crew : public loopsharer {
  public:
    struct plan {
        int lists = 0;          // taken in their order
        std::vector<int> need;  // of each step, in order: lists that must be done before it
        int ahead = 0;          // lists that may be begun beyond what the next step needs
        // Both false where the whole must end.
        std::function<bool(int list, int thread)> list;
        std::function<bool(int step)> step;
    };
    // True when everything is done. The first exception is thrown again when all threads have
    // ended.
    bool work(const plan& what);
    // For the step that runs.
    void each(int count, const std::function<void(int)>& piece) override;

  private:
    struct task {
        enum { step, list, help, none } kind;
        int number;
    };
    task next(std::unique_lock<std::mutex>& lock);
    void finish(const task& t);
    void run(int thread);
    void help(std::unique_lock<std::mutex>& lock);
    int needed() const;

    const plan* p = nullptr;
    std::mutex guard;
    std::condition_variable changed;
    int begun = 0, donelists = 0, donesteps = 0;  // donelists: all before it are done
    std::vector<char> listdone;
    bool stepping = false, stopped = false;
    const std::function<void(int)>* loop = nullptr;  // that is open
    int pieces = 0, taken = 0, working = 0;          // of it; working: threads at pieces
};
