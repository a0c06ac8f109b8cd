#pragma once

#include "memory/exhaustion.h"

#include <functional>
#include <new>

#include <gtest/gtest.h>

// Does a job again and again: one allocation fails, then the next one, and so on until none is left
// to fail; and again with all that follow it.
//
// `job` gets the sweep's exhaustion, and may end it. An exported function lets the exception
// through to its caller, who may know better than the library what to do without memory.
inline void sweep(Exhaustion::Of threads, const std::function<void(Exhaustion&)>& job)
{
    using Lasting = Exhaustion::Lasting;
    constexpr std::uint64_t far_too_many = 5000;
    for (const Lasting lasting : {Lasting::once, Lasting::on}) {
        bool has_struck = true;
        for (std::uint64_t behind = 0; has_struck; ++behind) {
            ASSERT_LT(behind, far_too_many);
            SCOPED_TRACE(behind);
            Exhaustion exhaustion(threads, behind, lasting);
            try {
                job(exhaustion);
            } catch (const std::bad_alloc&) {
            }
            exhaustion.end();
            has_struck = exhaustion.has_struck();
        }
    }
}
