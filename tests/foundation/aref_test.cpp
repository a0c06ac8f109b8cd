#include "foundation/aref.h"

#include "support/assert_watch.h"

#include <cstdint>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace
{

struct Counted {
    explicit Counted(int* living_objects, std::string text_given = {})
        : living(living_objects), text(std::move(text_given))
    {
        ++*living;
    }
    ~Counted() { --*living; }

    int* living;
    std::string text;
    ARef<Counted> other;
};

std::uint32_t count_of(Counted* object)
{
    return ARefBlock<Counted>::of(object)->reference_count.load();
}

TEST(ARef, IsNullAtFirst)
{
    const ARef<Counted> none;
    EXPECT_EQ(none.get(), nullptr);
    EXPECT_FALSE(none);
    EXPECT_EQ(none.get_new_reference(), nullptr);
}

TEST(ARef, CreatePassesItsArgumentsAndCountsOne)
{
    int living = 0;
    const auto reference = ARef<Counted>::create(&living, "text");
    ASSERT_TRUE(reference);
    EXPECT_EQ(living, 1);
    EXPECT_EQ(reference->text, "text");
    EXPECT_EQ((*reference).text, "text");
    EXPECT_EQ(count_of(reference.get()), 1u);
}

TEST(ARef, CountStandsInFrontOfTheObjectWhateverItsAlignment)
{
    struct alignas(64) Wide {
        char byte = 'w';
    };
    const auto narrow = ARef<char>::create('n');
    const auto wide = ARef<Wide>::create();
    ASSERT_TRUE(narrow && wide);
    EXPECT_EQ(ARefBlock<char>::of(narrow.get())->reference_count.load(), 1u);
    EXPECT_EQ(ARefBlock<Wide>::of(wide.get())->reference_count.load(), 1u);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(wide.get()) % 64, 0u);
    EXPECT_EQ(wide->byte, 'w');
}

TEST(ARef, ObjectLivesUntilItsLastReferenceGoes)
{
    int living = 0;
    auto first = ARef<Counted>::create(&living);
    ARef<Counted> second = first;
    ARef<Counted> third;
    third = second;
    EXPECT_EQ(count_of(first.get()), 3u);
    first.clear();
    EXPECT_EQ(first.get(), nullptr);
    second = ARef<Counted>();
    EXPECT_EQ(living, 1);
    EXPECT_EQ(count_of(third.get()), 1u);
    third.clear();
    EXPECT_EQ(living, 0);
}

TEST(ARef, MoveTakesTheReferenceAlong)
{
    int living = 0;
    auto first = ARef<Counted>::create(&living);
    ARef<Counted> second = std::move(first);
    EXPECT_EQ(first.get(), nullptr);
    EXPECT_EQ(count_of(second.get()), 1u);
    auto third = ARef<Counted>::create(&living);
    third = std::move(second);
    EXPECT_EQ(living, 1);
    EXPECT_EQ(count_of(third.get()), 1u);
}

TEST(ARef, AssignBindsAPlainPointerAndReleasesTheOldObject)
{
    int living = 0;
    auto first = ARef<Counted>::create(&living, "first");
    auto second = ARef<Counted>::create(&living, "second");
    first.assign(second.get());
    EXPECT_EQ(living, 1);
    EXPECT_EQ(first->text, "second");
    EXPECT_EQ(count_of(second.get()), 2u);
    first.assign(nullptr);
    EXPECT_FALSE(first);
    EXPECT_EQ(count_of(second.get()), 1u);
}

TEST(ARef, SelfAssignmentKeepsTheObject)
{
    int living = 0;
    auto reference = ARef<Counted>::create(&living);
    const ARef<Counted>& same = reference;
    reference = same;
    ASSERT_TRUE(reference);
    EXPECT_EQ(count_of(reference.get()), 1u);
    reference.assign(reference.get());
    ASSERT_TRUE(reference);
    EXPECT_EQ(count_of(reference.get()), 1u);
    EXPECT_EQ(living, 1);
}

TEST(ARef, ObjectWithACountOfZeroIsRefusedAndReported)
{
    int living = 0;
    ARefBlock<Counted> dying(&living);
    auto reference = ARef<Counted>::create(&living);
    const AssertWatch watch;
    reference.assign(&dying.object);
    EXPECT_EQ(reference.get(), nullptr);
    EXPECT_EQ(watch.count(), 1u);
    EXPECT_TRUE(watch.saw("aref", 165));
    EXPECT_EQ(dying.reference_count.load(), 0u);
    EXPECT_EQ(living, 1) << "the object bound before is released";
}

// What a destructor hands out of itself is refused too.
struct Dying {
    explicit Dying(ARef<Dying>* last_wish) : wish(last_wish) {}
    ~Dying() { wish->assign(this); }

    ARef<Dying>* wish;
};

TEST(ARef, DestructorCannotReviveItsObject)
{
    ARef<Dying> wish;
    auto reference = ARef<Dying>::create(&wish);
    const AssertWatch watch;
    reference.clear();
    EXPECT_FALSE(wish);
    EXPECT_TRUE(watch.saw("aref", 165));
}

TEST(ARef, NewReferenceIsCountedForTheCaller)
{
    int living = 0;
    auto reference = ARef<Counted>::create(&living);
    Counted* raw = reference.get_new_reference();
    ASSERT_EQ(raw, reference.get());
    EXPECT_EQ(count_of(raw), 2u);
    reference.clear();
    EXPECT_EQ(living, 1);
    ARef<Counted> last;
    last.assign(raw);
    EXPECT_EQ(ARefBlock<Counted>::of(raw)->decrease_reference(), 1u);
    last.clear();
    EXPECT_EQ(living, 0);
}

// The pointer is null before the object goes, so a destructor that comes back finds nothing.
struct Looking {
    Looking(ARef<Looking>* owner_of_this, bool* saw) : owner(owner_of_this), saw_null(saw) {}
    ~Looking() { *saw_null = owner->get() == nullptr; }

    ARef<Looking>* owner;
    bool* saw_null;
};

TEST(ARef, ClearSetsThePointerToNullFirst)
{
    ARef<Looking> reference;
    bool saw_null = false;
    reference = ARef<Looking>::create(&reference, &saw_null);
    reference.clear();
    EXPECT_TRUE(saw_null);
}

TEST(ARef, LastReferenceMayBeHeldByTheObjectOfAnother)
{
    int living = 0;
    auto outer = ARef<Counted>::create(&living);
    outer->other = ARef<Counted>::create(&living);
    EXPECT_EQ(living, 2);
    outer = ARef<Counted>(outer->other);
    EXPECT_EQ(living, 1);
}

struct Special {
    bool* kept;
};

void destroy_last_reference(ARefBlock<Special>* block)
{
    *block->object.kept = true;
    delete block;
}

TEST(ARef, ClassMaySayWhatHappensWhenItsLastReferenceGoes)
{
    bool kept = false;
    auto reference = ARef<Special>::create(Special{&kept});
    reference.clear();
    EXPECT_TRUE(kept);
}

TEST(ARef, ThreadsShareOneObject)
{
    int living = 0;
    auto reference = ARef<Counted>::create(&living);
    std::vector<std::thread> threads;
    for (int i = 0; i != 4; ++i) {
        threads.emplace_back([own = reference] {
            for (int round = 0; round != 5000; ++round) {
                const ARef<Counted> copy = own;
                ASSERT_TRUE(copy);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    threads.clear();
    EXPECT_EQ(count_of(reference.get()), 1u);
    reference.clear();
    EXPECT_EQ(living, 0);
}

TEST(ARef, SeveralReferencesCanBeGivenBackAtOnce)
{
    int living = 0;
    auto reference = ARef<Counted>::create(&living);
    auto second = reference;
    auto third = reference;
    EXPECT_TRUE(reference.has_no_others(3));
    EXPECT_FALSE(reference.has_no_others(2));
    reference.detach();
    ARef<Counted>::release(second.detach(), 2);
    EXPECT_EQ(third.use_count(), 1u);
    EXPECT_EQ(living, 1);
    auto fourth = third;
    third.detach();
    ARef<Counted>::release(fourth.detach(), 2);
    EXPECT_EQ(living, 0);
    EXPECT_EQ(third.use_count(), 0u);
    EXPECT_FALSE(third.has_no_others(0));
}

TEST(ARef, UnsharedCopyCountsLikeAnyOther)
{
    int living = 0;
    auto reference = ARef<Counted>::create(&living);
    auto copy = reference.copy_unshared();
    EXPECT_EQ(copy, reference);
    EXPECT_EQ(reference.use_count(), 2u);
    auto another = reference.copy_unshared();
    EXPECT_EQ(reference.use_count(), 3u);
    another.clear();
    copy.clear();
    EXPECT_EQ(living, 1);
    reference.clear();
    EXPECT_EQ(living, 0);
    EXPECT_FALSE(ARef<Counted>().copy_unshared());
}

TEST(ARef, PermanentObjectIsNotCountedAndStays)
{
    static int living = 0;
    auto reference = ARef<Counted>::create(&living);
    Counted* object = reference.get();
    ARefBlock<Counted>::of(object)->make_permanent();
    auto copy = reference;
    EXPECT_EQ(copy.get(), object);
    EXPECT_EQ(copy.use_count(), ARefBlock<Counted>::permanent);
    copy.clear();
    reference.clear();
    EXPECT_EQ(living, 1);
    delete ARefBlock<Counted>::of(object);
    EXPECT_EQ(living, 0);
}

} // namespace
