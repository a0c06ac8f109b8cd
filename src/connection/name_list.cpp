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
    if (text_length + name.length() > segment_length) {
        pack();
    }
    text.append(name);
    text_length += name.length();
    lengths.push_back(name.length());
}

void NameListBuilder::pack()
{
    if (!names) {
        names = NameList::create_or_throw();
    }
    const AString packed = std::exchange(text, AStringBuilder()).finish();
    if (packed.length() != text_length) {
        throw std::bad_alloc(); // or names would have pieces of others
    }
    std::uint64_t start = 0;
    for (const std::uint64_t length : lengths) {
        names->push_back(packed.mid(start, length));
        start += length;
    }
    lengths.clear();
    text_length = 0;
}

NameList NameListBuilder::finish()
{
    pack();
    return std::move(names);
}
