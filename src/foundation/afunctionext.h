#pragma once

#include "foundation/afunction.h"

// Makes delegates of member functions: `bind<&Session::on_data>(session)`.
namespace afunctionext
{

template <auto Member>
struct MemberDelegate;

template <typename Object, typename... Arguments, void (Object::*Member)(Arguments...)>
struct MemberDelegate<Member> {
    using Function = AFunction<Arguments...>;

    static void forward(void* object, const void* member_function, Arguments... arguments)
    {
        auto target = *static_cast<void (Object::*const*)(Arguments...)>(member_function);
        (static_cast<Object*>(object)->*target)(std::forward<Arguments>(arguments)...);
    }

    // A member pointer is wider than a word, so the word of the delegate points to it.
    static constexpr void (Object::*held)(Arguments...) = Member;

    static Function bind(Object* object) { return Function(&forward, object, &held); }
};

} // namespace afunctionext

template <auto Member, typename Object>
auto bind(Object* object)
{
    return afunctionext::MemberDelegate<Member>::bind(object);
}
