#include "foundation/no_destructor.h"

#include <cstdint>
#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace
{

struct Counted {
    Counted(int* living_objects, std::unique_ptr<std::string> text_given)
        : living(living_objects), text(std::move(text_given))
    {
        ++*living;
    }
    ~Counted() { --*living; }

    int* living;
    std::unique_ptr<std::string> text;
};

TEST(NoDestructor, PassesItsArgumentsOn)
{
    int living = 0;
    NoDestructor<Counted> counted(&living, std::make_unique<std::string>("text"));
    EXPECT_EQ(*counted->text, "text");
    EXPECT_EQ((*counted).living, &living);
    counted->text.reset(); // nobody else will
}

TEST(NoDestructor, NeverDestroysItsObject)
{
    int living = 0;
    {
        const NoDestructor<Counted> counted(&living, nullptr);
        EXPECT_EQ(living, 1);
        EXPECT_EQ(counted->text, nullptr);
    }
    EXPECT_EQ(living, 1);
}

TEST(NoDestructor, AlignsItsObject)
{
    struct alignas(64) Wide {
        char byte = 'w';
    };
    const NoDestructor<Wide> wide;
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&*wide) % 64, 0u);
    EXPECT_EQ(wide->byte, 'w');
}

TEST(NoDestructor, CanBeWritten)
{
    NoDestructor<int> number(4);
    *number = 7;
    const NoDestructor<int>& same = number;
    EXPECT_EQ(*same, 7);
}

} // namespace
