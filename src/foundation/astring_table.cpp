#include "foundation/astring_table.h"

#include "foundation/astring_runs.h"

#include <cstring>

namespace
{

constexpr std::size_t first_slots = 16;

// Three characters and the length tell nearly all words of one table apart.
template <typename Character>
std::uint32_t hash_of(const Character* characters, std::uint64_t count)
{
    const auto at = [characters](std::uint64_t i) {
        return static_cast<std::uint32_t>(characters[i]);
    };
    const std::uint32_t sum = at(0) + 37 * at(count / 2) + 1369 * at(count - 1) +
                              50653 * static_cast<std::uint32_t>(count);
    const std::uint32_t mixed = sum * 0x9E3779B1u;
    return mixed ^ mixed >> 16;
}

std::vector<AChar> characters_of(const AString& text)
{
    std::vector<AChar> characters;
    for (AStringRuns run(text); !run.at_end(); run.next_run()) {
        characters.insert(characters.end(), run.data, run.data + run.count);
    }
    return characters;
}

std::string ascii_of(const std::vector<AChar>& characters)
{
    std::string bytes;
    for (const AChar c : characters) {
        if (c >= 128) {
            return {};
        }
        bytes.push_back(static_cast<char>(c));
    }
    return bytes;
}

} // namespace

void AStringTable::add(const AString& text, std::int32_t value)
{
    if (!A_CHECK("astring_table", !text.is_empty()) || find(text) != nullptr) {
        return;
    }
    std::vector<AChar> side_by_side = characters_of(text);
    std::string bytes = ascii_of(side_by_side);
    entries.push_back({text, value, std::move(side_by_side), std::move(bytes)});
    if (2 * entries.size() > slots.size()) {
        const std::vector<Slot> before = std::exchange(slots, {});
        slots.resize(before.empty() ? first_slots : 2 * before.size());
        for (const Slot& slot : before) {
            if (slot.number != 0) {
                place(slot);
            }
        }
    }
    const std::vector<AChar>& characters = entries.back().characters;
    place({hash_of(characters.data(), characters.size()),
           static_cast<std::uint32_t>(entries.size())});
}

void AStringTable::place(const Slot& slot)
{
    std::size_t at = slot.hash;
    while (slots[at & (slots.size() - 1)].number != 0) {
        ++at;
    }
    slots[at & (slots.size() - 1)] = slot;
}

template <typename Character, typename IsText>
const AStringTable::Entry* AStringTable::find_if(const Character* characters, std::uint64_t count,
                                                 IsText is_text) const
{
    if (count == 0 || slots.empty()) {
        return nullptr;
    }
    const std::uint32_t hash = hash_of(characters, count);
    const std::size_t mask = slots.size() - 1;
    for (std::size_t at = hash & mask; slots[at].number != 0; at = (at + 1) & mask) {
        if (slots[at].hash != hash) {
            continue;
        }
        const Entry& entry = entries[slots[at].number - 1];
        if (is_text(entry)) {
            return &entry;
        }
    }
    return nullptr;
}

const AStringTable::Entry* AStringTable::find(const AChar* characters, std::uint64_t count) const
{
    return find_if(characters, count, [characters, count](const Entry& entry) {
        return entry.characters.size() == count &&
               std::memcmp(entry.characters.data(), characters, count * sizeof(AChar)) == 0;
    });
}

// A byte beyond ASCII may give the hash of a word, but never its bytes.
const AStringTable::Entry* AStringTable::find(std::string_view ascii) const
{
    return find_if(ascii.data(), ascii.size(),
                   [ascii](const Entry& entry) { return entry.bytes == ascii; });
}

const AStringTable::Entry* AStringTable::find(const AString& text) const
{
    const AStringRuns run(text);
    if (run.count == text.length()) {
        return find(run.data, run.count);
    }
    const std::vector<AChar> characters = characters_of(text);
    return find(characters.data(), characters.size());
}
