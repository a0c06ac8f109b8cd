#pragma once

#include "foundation/astring.h"
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

// For constants made at load: the words that an element may hold.
void add_known_word(const AString& word);

// Sets `name` to the constant string of these characters, if they are the name of a known element
// or a known word.
void find_known_name(const AChar* characters, std::uint64_t count, AString* name);

} // namespace ZAVL3
