#pragma once

#include "protocol/zavl3_tree.h"

namespace ZAVL3
{

// The codec of the element `Name`: one entry per element, in zavl3_elements.h.
template <FixedString Name>
struct ElementCodec;

// A value that may be absent. Setting it sets the flag; an absent one holds its default.
template <typename T>
struct Maybe {
    bool has = false;
    T value{};

    void set(T content)
    {
        value = std::move(content);
        has = true;
    }
    void clear() { *this = Maybe(); }
};

// One field of a record. The spelling is the element's name, with a `?` behind it where the element
// may be absent. An element that is a Presence needs no mark: it is there or not.
template <FixedString Spelling>
struct FieldOf {
    static constexpr bool marked = Spelling.view().ends_with('?');

    static constexpr auto bare_name()
    {
        if constexpr (marked) {
            FixedString<sizeof(Spelling.text) - 1> bare;
            for (std::size_t i = 0; i + 1 < sizeof(bare.text); ++i) {
                bare.text[i] = Spelling.text[i];
            }
            return bare;
        } else {
            return Spelling;
        }
    }

    static constexpr auto name = bare_name();
};

enum class FieldKind { required, optional, flag };

// Stores one field, and reads and writes it by the codec of its element.
template <FixedString Name, typename Codec, FieldKind Kind>
struct Slot {
    using value_type = typename Codec::value_type;
    using stored_type =
        std::conditional_t<Kind == FieldKind::optional, Maybe<value_type>, value_type>;

    void set(value_type content)
    {
        if constexpr (Kind == FieldKind::optional) {
            stored.set(std::move(content));
        } else {
            stored = std::move(content);
        }
    }

    template <typename Element>
    bool read_required(const Element& tree, AString* error)
    {
        if constexpr (Kind == FieldKind::required) {
            return Codec::read(tree, tag<Name>(), stored, error);
        } else {
            return true;
        }
    }

    template <typename Element>
    void note_presence(const Element& tree)
    {
        if constexpr (Kind == FieldKind::optional) {
            stored.has = has_child(tree, tag<Name>());
        } else if constexpr (Kind == FieldKind::flag) {
            stored = has_child(tree, tag<Name>());
        }
    }

    template <typename Element>
    bool read_present(const Element& tree, AString* error)
    {
        if constexpr (Kind == FieldKind::optional) {
            return !stored.has || Codec::read(tree, tag<Name>(), stored.value, error);
        } else {
            return true;
        }
    }

    // What cannot be read counts as absent.
    template <typename Element>
    bool read_if_readable(const Element& tree)
    {
        if constexpr (Kind == FieldKind::optional) {
            stored.has = Codec::read(tree, tag<Name>(), stored.value, nullptr);
            if (!stored.has) {
                stored.clear();
            }
        } else {
            note_presence(tree);
        }
        return true;
    }

    void write(XMLTreeList& children) const
    {
        if constexpr (Kind == FieldKind::flag) {
            if (stored) {
                children.push_back(write_empty(tag<Name>()));
            }
        } else if constexpr (Kind == FieldKind::optional) {
            if (stored.has) {
                children.push_back(Codec::write(tag<Name>(), stored.value));
            }
        } else {
            children.push_back(Codec::write(tag<Name>(), stored));
        }
    }

    stored_type stored{};
};

template <FixedString Spelling>
consteval FieldKind field_kind()
{
    using Field = FieldOf<Spelling>;
    if constexpr (std::is_same_v<typename ElementCodec<Field::name>::type, Presence>) {
        return FieldKind::flag;
    } else {
        return Field::marked ? FieldKind::optional : FieldKind::required;
    }
}

template <FixedString Spelling>
using SlotOf = Slot<FieldOf<Spelling>::name, typename ElementCodec<FieldOf<Spelling>::name>::type,
                    field_kind<Spelling>()>;

// Fields in their order on the wire: `Record<"Channel", "Speed?", "MinLatency">`. A field is
// reached by its name: `fields.get<"Speed"> ()`. The default has every optional field absent.
template <FixedString... Spellings>
struct Record : SlotOf<Spellings>... {
    static constexpr std::size_t field_count = sizeof...(Spellings);

    template <FixedString Name>
    auto& get()
    {
        return slot<Name>(*this).stored;
    }

    template <FixedString Name>
    const auto& get() const
    {
        return slot<Name>(*this).stored;
    }

    template <FixedString Name, typename T>
    Record& set(T&& value)
    {
        slot<Name>(*this).set(std::forward<T>(value));
        return *this;
    }

    // As the content of a message: an optional field that cannot be read counts as absent.
    template <typename Element>
    bool read_message(const Element& tree, AString* error)
    {
        static_cast<void>(tree);
        static_cast<void>(error);
        return (read_message_field<SlotOf<Spellings>>(tree, error) && ...);
    }

    // As a composite: an optional field that is there but cannot be read fails the whole.
    template <typename Element>
    bool read_composite(const Element& tree, AString* error)
    {
        if (!(SlotOf<Spellings>::read_required(tree, error) && ...)) {
            return false;
        }
        (SlotOf<Spellings>::note_presence(tree), ...);
        return (SlotOf<Spellings>::read_present(tree, error) && ...);
    }

    XMLTreeList write() const
    {
        XMLTreeList children;
        (SlotOf<Spellings>::write(children), ...);
        return children;
    }

    // Calls `function` with the values of all fields, in order.
    template <typename Function>
    void apply(Function&& function) const
    {
        function(SlotOf<Spellings>::stored...);
    }

    // Takes the values of all fields, in order.
    template <typename... Values>
    void assign(Values&&... values)
    {
        ((SlotOf<Spellings>::stored = std::forward<Values>(values)), ...);
    }

    // `Target<stored types...>`.
    template <template <typename...> typename Target>
    using rebind = Target<typename SlotOf<Spellings>::stored_type...>;

private:
    template <FixedString Name, typename Codec, FieldKind Kind>
    static Slot<Name, Codec, Kind>& slot(Slot<Name, Codec, Kind>& found)
    {
        return found;
    }

    template <FixedString Name, typename Codec, FieldKind Kind>
    static const Slot<Name, Codec, Kind>& slot(const Slot<Name, Codec, Kind>& found)
    {
        return found;
    }

    template <typename Field, typename Element>
    bool read_message_field(const Element& tree, AString* error)
    {
        return Field::read_required(tree, error) && Field::read_if_readable(tree);
    }
};

} // namespace ZAVL3
