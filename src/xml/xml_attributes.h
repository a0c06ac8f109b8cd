#pragma once

#include "foundation/astring.h"

#include <initializer_list>
#include <map>
#include <memory>

// The attributes of an element, by name in the order of strings. Hardly an element has any, and one
// without costs no map.
class XMLAttributes
{
public:
    using Map = std::map<AString, AString>;

    XMLAttributes() = default;
    XMLAttributes(std::initializer_list<Map::value_type> attributes)
        : map(std::make_unique<Map>(attributes))
    {
    }
    XMLAttributes(const XMLAttributes& other)
        : map(other.map ? std::make_unique<Map>(*other.map) : nullptr)
    {
    }
    XMLAttributes(XMLAttributes&& other) noexcept = default;
    XMLAttributes& operator=(XMLAttributes other) noexcept
    {
        map.swap(other.map);
        return *this;
    }
    ~XMLAttributes() = default;

    bool empty() const { return !map || map->empty(); }
    AString& operator[](const AString& name)
    {
        if (!map) {
            map = std::make_unique<Map>();
        }
        return (*map)[name];
    }
    // Of an attribute that is there.
    const AString& at(const AString& name) const { return map->at(name); }
    Map::const_iterator begin() const { return map ? map->cbegin() : Map::const_iterator(); }
    Map::const_iterator end() const { return map ? map->cend() : Map::const_iterator(); }

    friend bool operator==(const XMLAttributes& a, const XMLAttributes& b)
    {
        return a.empty() ? b.empty() : !b.empty() && *a.map == *b.map;
    }

private:
    std::unique_ptr<Map> map;
};
