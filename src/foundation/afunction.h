#pragma once

#include "foundation/aassert.h"

#include <cstdint>
#include <utility>

// A delegate of four words: copied as plain data, owning nothing. Whoever makes one keeps the bound
// object alive. Results come back through pointer arguments.
template <typename... Arguments>
class AFunction
{
public:
    enum Kind : std::uint32_t {
        empty = 0,
        plain = 1,
        bound_value = 2,
        bound_pointer = 3,
        member = 4,
    };

    using Plain = void (*)(Arguments...);
    using WithValue = void (*)(std::uint32_t, Arguments...);
    using WithPointer = void (*)(void*, Arguments...);
    using Forwarder = void (*)(void* object, const void* member_function, Arguments...);

    AFunction() = default;
    AFunction(Plain target) : kind(plain), function(erase(target)) {}
    AFunction(WithValue target, std::uint32_t value)
        : kind(bound_value), function(erase(target)), context(value)
    {
    }
    AFunction(WithPointer target, void* pointer)
        : kind(bound_pointer), function(erase(target)), context(word(pointer))
    {
    }
    AFunction(Forwarder target, void* object, const void* member_function)
    {
        if (target != nullptr) {
            kind = member;
            function = erase(target);
            context = word(object);
            context2 = word(member_function);
        }
    }

    bool is_empty() const { return kind == empty; }

    void operator()(Arguments... arguments) const
    {
        if (kind == empty) {
            return;
        }
        if (!A_CHECK("afunction", kind <= member && function != nullptr)) {
            return;
        }
        switch (kind) {
        case plain:
            return restore<Plain>()(std::forward<Arguments>(arguments)...);
        case bound_value:
            return restore<WithValue>()(static_cast<std::uint32_t>(context),
                                        std::forward<Arguments>(arguments)...);
        case bound_pointer:
            return restore<WithPointer>()(reinterpret_cast<void*>(context),
                                          std::forward<Arguments>(arguments)...);
        default:
            return restore<Forwarder>()(reinterpret_cast<void*>(context),
                                        reinterpret_cast<const void*>(context2),
                                        std::forward<Arguments>(arguments)...);
        }
    }

    std::uint32_t kind = empty;
    void (*function)() = nullptr;
    std::uintptr_t context = 0;
    std::uintptr_t context2 = 0;

private:
    template <typename Function>
    static auto erase(Function target)
    {
        return reinterpret_cast<void (*)()>(target);
    }

    template <typename Function>
    Function restore() const
    {
        return reinterpret_cast<Function>(function);
    }

    static std::uintptr_t word(const void* pointer)
    {
        return reinterpret_cast<std::uintptr_t>(pointer);
    }
};
