#pragma once

#include "protocol/zavl3_record.h"

#include <string>
#include <type_traits>
#include <vector>

// Values of the protocol as text, for comparing and for reading in a failure: an enumeration as its
// number, what is absent as "-", a record as "{first, second}", lists as "[first, second]".

template <typename T>
requires std::is_integral_v<T> || std::is_enum_v<T> std::string describe(T value)
{
    if constexpr (std::is_same_v<T, bool>) {
        return value ? "true" : "false";
    } else if constexpr (std::is_enum_v<T>) {
        return std::to_string(static_cast<std::int32_t>(value));
    } else {
        return std::to_string(value);
    }
}

inline std::string describe(const AString& text)
{
    return text.to_utf8();
}

template <typename T>
std::string describe(const ZAVL3::Maybe<T>& value);
template <typename T>
std::string describe(const std::vector<T>& values);
template <typename T, std::uint32_t Bound>
std::string describe(const ZAVL3::BoundedVector<T, Bound>& values);
template <FixedString... Fields>
std::string describe(const ZAVL3::Record<Fields...>& record);

template <typename Values>
std::string describe_list(const Values& values, std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        text += (i == 0 ? "" : ", ") + describe(values[i]);
    }
    return "[" + text + "]";
}

template <typename T>
std::string describe(const ZAVL3::Maybe<T>& value)
{
    return value.has ? describe(value.value) : "-";
}

template <typename T>
std::string describe(const std::vector<T>& values)
{
    return describe_list(values, values.size());
}

template <typename T, std::uint32_t Bound>
std::string describe(const ZAVL3::BoundedVector<T, Bound>& values)
{
    return describe_list(values.vec, values.count);
}

template <FixedString... Fields>
std::string describe(const ZAVL3::Record<Fields...>& record)
{
    std::string text;
    record.apply([&text](const auto&... values) {
        [[maybe_unused]] const char* separator = "";
        ((text += separator + describe(values), separator = ", "), ...);
    });
    return "{" + text + "}";
}
