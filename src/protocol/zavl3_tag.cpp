#include "protocol/zavl3_tag.h"

namespace ZAVL3
{

namespace
{

// Filled by the constructors of the constants, while the library is loaded by one thread.
AStringTable& words_in_the_making()
{
    static NoDestructor<AStringTable> words;
    return *words;
}

} // namespace

Tag::Tag(const char* text) : name(add_known_word(AString(text))) {}

const AString& add_known_word(const AString& word)
{
    words_in_the_making().add(word, 0);
    const AString& constant = words_in_the_making().find(word)->text;
    constant.make_permanent();
    return constant;
}

const AStringTable& known_words()
{
    return words_in_the_making();
}

} // namespace ZAVL3
