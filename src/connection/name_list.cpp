#include "connection/name_list.h"

#include <new>
#include <tuple>
#include <utility>

namespace
{
constexpr std::uint64_t segment_length = std::tuple_size_v<decltype(AStringSegment::buf)>;
}

void NameListBuilder::append(const AString& name)
{
    if (unpacked_length + name.length() > segment_length) {
        pack();
    }
    unpacked.push_back(name);
    unpacked_length += name.length();
}

void NameListBuilder::pack()
{
    if (!names) {
        names = NameList::create_or_throw();
    }
    // One name alone would come with the whole text that it is a piece of.
    const AString text = AString(unpacked).compact_copy(0);
    if (text.length() != unpacked_length) {
        throw std::bad_alloc(); // or names would have pieces of others
    }
    std::uint64_t start = 0;
    for (const AString& name : unpacked) {
        names->push_back(text.mid(start, name.length()));
        start += name.length();
    }
    unpacked.clear();
    unpacked_length = 0;
}

NameList NameListBuilder::finish()
{
    pack();
    return std::move(names);
}
