#include "protocol/zavl3_tag.h"

#include "foundation/astring_table.h"

namespace ZAVL3
{

namespace
{

// Filled by the constructors of the constants, while the library is loaded by one thread.
AStringTable& known_words()
{
    static NoDestructor<AStringTable> words;
    return *words;
}

} // namespace

Tag::Tag(const char* text) : name(text)
{
    add_known_word(name);
}

void add_known_word(const AString& word)
{
    word.make_permanent();
    known_words().add(word, 0);
}

void find_known_name(const AChar* characters, std::uint64_t count, AString* name)
{
    if (const AStringTable::Entry* found = known_words().find(characters, count)) {
        *name = found->text;
    }
}

} // namespace ZAVL3
