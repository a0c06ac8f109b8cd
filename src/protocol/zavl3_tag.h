#pragma once

#include "foundation/astring_table.h"
#include "foundation/no_destructor.h"
#include "protocol/fixed_string.h"

namespace ZAVL3
{

// The name of an element: one constant string per name, made at load.
class Tag
{
public:
    explicit Tag(const char* text);

    AString name;
};

template <FixedString Name>
inline const NoDestructor<Tag> tag_constant{Name.text};

template <FixedString Name>
const AString& tag()
{
    return tag_constant<Name>->name;
}

// For constants made at load: the words that an element may hold. Gives the one constant of this
// text.
const AString& add_known_word(const AString& word);

// The constant strings of all names of elements, and of all words.
const AStringTable& known_words();

} // namespace ZAVL3
