#include "memory/sweep.h"

#include "connection/name_list.h"
#include "protocol/zavl3_tree.h"
#include "xml/xml_plain.h"
#include "xml/xml_text_pack.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// A string for which there is no memory is a shorter one and tells nobody. Where that would mix up
// what a server said, it is an exception.
namespace
{

class TextExhaustion : public testing::Test
{
protected:
    TextExhaustion() { drain(more_than_the_pool_has); }

    // Takes so many segments of those that the pool has at hand.
    void drain(std::size_t segments)
    {
        for (std::size_t i = 0; i < segments; ++i) {
            held.emplace_back("x");
        }
    }

    template <typename Job>
    static void without_memory(Job job)
    {
        Exhaustion exhaustion(Exhaustion::Of::caller, 0, Exhaustion::Lasting::on);
        job();
        exhaustion.end();
        EXPECT_TRUE(exhaustion.has_struck());
    }

    static constexpr std::size_t more_than_the_pool_has = 5000;
    std::vector<AString> held;
};

TEST_F(TextExhaustion, OfAnElementIsNotAnEmptyText)
{
    const std::string message = "<ErrorMessage>No such clip</ErrorMessage>";
    AStringTable names;
    names.add(AString("ErrorMessage"), 0);
    XMLPlainParser parser(names);
    parser.add_root_tag("ErrorMessage");
    ASSERT_EQ(parser.parse(message.data(), message.size()), XMLPlainParser::Outcome::complete);
    without_memory([&] { EXPECT_THROW(ZAVL3::get_raw_text(parser.get_root()), std::bad_alloc); });
    EXPECT_EQ(ZAVL3::get_raw_text(parser.get_root()), AString("No such clip"));
}

TEST_F(TextExhaustion, OfSeveralElementsLeavesNonePieced)
{
    const XMLFlatText flat(AString("news_open"));
    AString text;
    XMLTextPack pack(32);
    pack.add(flat.get_chars(), &text);
    without_memory([&] { EXPECT_THROW(pack.flush(), std::bad_alloc); });
    EXPECT_TRUE(text.is_empty());
}

TEST_F(TextExhaustion, OfNamesLeavesNonePieced)
{
    const std::vector<AString> names(7, AString("news_open").repeat(10));
    sweep(Exhaustion::Of::caller, [&](Exhaustion& exhaustion) {
        NameListBuilder builder;
        for (const AString& name : names) {
            builder.append(name);
        }
        const NameList list = builder.finish();
        exhaustion.end();
        EXPECT_TRUE(std::equal(list->begin(), list->end(), names.begin(), names.end()));
        drain(names.size()); // what is given back here
    });
}

} // namespace
