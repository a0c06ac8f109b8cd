#include "connection/notify.h"

#include "foundation/aassert.h"

#include <chrono>

void NoticeQueue::post_notice(std::uint32_t kind, std::uint32_t channel)
{
    const Notice notice{kind, channel};
    {
        const std::lock_guard guard(lock);
        if (pending_notices.contains(notice)) {
            return;
        }
        notice_order.push_back(notice);
        try {
            pending_notices.insert(notice);
        } catch (...) {
            notice_order.pop_back();
            throw;
        }
    }
    changed.notify_all();
}

void NoticeQueue::wait_notice(std::uint32_t timeout_ms, std::uint32_t* kind, std::uint32_t* channel)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
    Notice notice;
    {
        std::unique_lock guard(lock);
        if (changed.wait_until(guard, deadline, [this] { return !notice_order.empty(); })) {
            notice = take_oldest();
        }
    }
    if (kind != nullptr) {
        *kind = notice.kind;
    }
    if (channel != nullptr) {
        *channel = notice.channel;
    }
}

NoticeQueue::Notice NoticeQueue::take_oldest()
{
    if (notice_order.empty()) {
        assert_failed("notify", 36, "!notice_order.empty ()");
        return {};
    }
    const Notice notice = notice_order.front();
    notice_order.pop_front();
    pending_notices.erase(notice);
    return notice;
}
