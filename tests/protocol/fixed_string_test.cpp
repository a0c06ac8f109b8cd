#include "protocol/fixed_string.h"

#include <type_traits>

#include <gtest/gtest.h>

namespace
{

template <FixedString Text>
struct Holder {
    static constexpr auto text = Text;
};

TEST(FixedString, IsTheTextOfALiteral)
{
    EXPECT_EQ(Holder<"ClipID">::text.view(), "ClipID");
    EXPECT_EQ(Holder<"">::text.view(), "");
}

TEST(FixedString, TellsTypesApartByTheirText)
{
    EXPECT_TRUE((std::is_same_v<Holder<"A">, Holder<"A">>));
    EXPECT_FALSE((std::is_same_v<Holder<"A">, Holder<"B">>));
}

TEST(FixedString, IsOneOfWords)
{
    constexpr FixedString text("loop");
    static_assert(text.is_one_of("play", "loop"));
    static_assert(!text.is_one_of("Loop", "loo", "loops"));
    EXPECT_FALSE(text.is_one_of());
}

} // namespace
