#pragma once

#include <condition_variable>
#include <cstdint>
#include <list>
#include <mutex>
#include <set>

// What has changed, for an application that does not want to poll: each kind on each channel is
// pending at most once, so that a fast stream of reports reaches a slow reader in a bounded form.
//
// Thread: the worker posts, any waits. Locks: `lock`, a leaf.
class NoticeQueue
{
public:
    // One that is pending keeps its place, and nobody is woken.
    void post_notice(std::uint32_t kind, std::uint32_t channel);
    // Gives the oldest notice, or 0 and 0 when none came in time. The outputs may be null.
    void wait_notice(std::uint32_t timeout_ms, std::uint32_t* kind, std::uint32_t* channel);

private:
    struct Notice {
        std::uint32_t kind = 0;
        std::uint32_t channel = 0;

        auto operator<=>(const Notice&) const = default;
    };

    Notice take_oldest();

    std::mutex lock;
    std::condition_variable changed;
    std::list<Notice> notice_order;   // guarded by lock
    std::set<Notice> pending_notices; // guarded by lock; the same notices
};
