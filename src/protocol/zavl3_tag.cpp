#include "protocol/zavl3_tag.h"

#include <string>
#include <unordered_map>

namespace ZAVL3
{

namespace
{

using KnownNames = std::unordered_map<std::string_view, AString>;

// Filled by the constructors of the constants, while the library is loaded by one thread.
KnownNames& known_names()
{
    static NoDestructor<KnownNames> names;
    return *names;
}

constexpr std::size_t longest_name = 64;

} // namespace

Tag::Tag(const char* text) : name(text)
{
    known_names().emplace(text, name);
}

void find_known_name(const AChar* characters, std::uint64_t count, AString* name)
{
    if (count > longest_name) {
        return;
    }
    char text[longest_name];
    for (std::uint64_t i = 0; i < count; ++i) {
        if (characters[i] > 0x7F) {
            return;
        }
        text[i] = static_cast<char>(characters[i]);
    }
    const KnownNames& names = known_names();
    const auto found = names.find(std::string_view(text, count));
    if (found != names.end()) {
        *name = found->second;
    }
}

} // namespace ZAVL3
