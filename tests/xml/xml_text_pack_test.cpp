#include "xml/xml_text_pack.h"

#include "xml/xml_texts.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

namespace
{

constexpr std::uint64_t slack = 32;

struct Packed {
    explicit Packed(const std::vector<std::size_t>& lengths)
        : flat(AString("abcdefghij").repeat(100)), strings(lengths.size())
    {
        XMLTextPack pack(slack);
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            pack.add(flat.get_chars().first(lengths[i]), &strings[i]);
        }
        pack.flush();
    }

    std::size_t storages() const
    {
        std::set<const AStringStorage*> all;
        for (const AString& string : strings) {
            all.insert(string.storage.get());
        }
        return all.size();
    }

    XMLFlatText flat;
    std::vector<AString> strings;
};

} // namespace

TEST(XMLTextPack, ShortTextsShareAStorage)
{
    const Packed packed({1, 7, 4, 8});
    EXPECT_EQ(packed.strings[1].to_utf8(), "abcdefg");
    EXPECT_EQ(packed.strings[3].to_utf8(), "abcdefgh");
    EXPECT_EQ(packed.storages(), 1u);
}

TEST(XMLTextPack, SharingEndsAtTheSlackOfTheShortest)
{
    EXPECT_EQ(Packed({1, 32}).storages(), 1u);
    EXPECT_EQ(Packed({1, 33}).storages(), 2u);
    EXPECT_EQ(Packed({32, 1}).storages(), 1u);
    EXPECT_EQ(Packed({33, 1}).storages(), 2u);
    EXPECT_EQ(Packed({16, 16, 16}).storages(), 1u);
    EXPECT_EQ(Packed({17, 17, 17}).storages(), 2u);
}

TEST(XMLTextPack, NoTextHasMoreThanTheSlackInMemoryBeyondItsOwn)
{
    std::mt19937 engine(32);
    for (int round = 0; round < 200; ++round) {
        std::vector<std::size_t> lengths;
        for (int i = 0; i < 40; ++i) {
            lengths.push_back(engine() % (round % 2 == 0 ? 20 : 200));
        }
        const Packed packed(lengths);
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            const AString& string = packed.strings[i];
            ASSERT_EQ(string.length(), lengths[i]);
            const XMLFlatText own(string);
            ASSERT_TRUE(same_chars(own.get_chars(), packed.flat.get_chars().first(lengths[i])) ||
                        lengths[i] == 0);
            ASSERT_EQ(string.compact_copy(slack).storage.get(), string.storage.get());
        }
    }
}

TEST(XMLTextPack, ClearForgetsWhatIsNotSet)
{
    const XMLFlatText flat(AString("abc"));
    AString string;
    XMLTextPack pack(slack);
    pack.add(flat.get_chars(), &string);
    pack.clear();
    pack.flush();
    EXPECT_TRUE(string.is_empty());
}
