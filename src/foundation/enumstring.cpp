#include "foundation/enumstring.h"

EnumString::EnumString(std::span<const Row> rows, std::int32_t unknown_value,
                       const AString& unknown_text)
    : invalid_value(unknown_value), invalid_text(unknown_text)
{
    if (!A_CHECK("enumstring", rows.data() != nullptr) || !A_CHECK("enumstring", !rows.empty())) {
        return;
    }
    for (const Row& row : rows) {
        if (row.text == nullptr || *row.text == '\0') {
            continue;
        }
        const AString text(row.text);
        by_value.emplace(row.value, text);
        by_text.add(text, row.value);
    }
}

const AString& EnumString::to_string(std::int32_t value) const
{
    const auto found = by_value.find(value);
    return found == by_value.end() ? invalid_text : found->second;
}

std::int32_t EnumString::from_string(const AString& text) const
{
    std::int32_t value = invalid_value;
    from_string(text, &value);
    return value;
}

std::int32_t EnumString::from_string(std::string_view ascii) const
{
    const AStringTable::Entry* found = by_text.find(ascii);
    return found != nullptr ? found->value : invalid_value;
}

bool EnumString::from_string(const AString& text, std::int32_t* value) const
{
    const AStringTable::Entry* found = by_text.find(text);
    if (found == nullptr) {
        return false;
    }
    *value = found->value;
    return true;
}
