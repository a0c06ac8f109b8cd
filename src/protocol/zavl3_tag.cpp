#include "protocol/zavl3_tag.h"

#include "foundation/astring_table.h"

namespace ZAVL3
{

namespace
{

// Filled by the constructors of the constants, while the library is loaded by one thread.
AStringTable& known_names()
{
    static NoDestructor<AStringTable> names;
    return *names;
}

} // namespace

Tag::Tag(const char* text) : name(text)
{
    known_names().add(name, 0);
}

void find_known_name(const AChar* characters, std::uint64_t count, AString* name)
{
    if (const AStringTable::Entry* found = known_names().find(characters, count)) {
        *name = found->text;
    }
}

} // namespace ZAVL3
