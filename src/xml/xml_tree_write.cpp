#include "xml/xml_tree.h"

#include "foundation/astringformat.h"

#include <vector>

namespace
{

constexpr std::uint64_t indent_step = 4;

constexpr auto spaces_128 = [] {
    std::array<char, 128> spaces{};
    spaces.fill(' ');
    return spaces;
}();

constinit XMLConstant open_angle("<");
constinit XMLConstant close_angle(">");
constinit XMLConstant slash("/");
constinit XMLConstant short_end(" />");
constinit XMLConstant line_break("\r\n");
constinit XMLConstant attribute_template(" %1=\"%2\"");
constinit XMLConstant spaces(std::string_view(spaces_128.data(), spaces_128.size()));

// Collects the pieces of the output.
struct PieceList {
    void add(XMLConstant& constant) { pieces.push_back(constant.get_text()); }
    void add(const AString& text) { pieces.push_back(text); }

    AStringList pieces;
};

// Hands the bytes of each piece on, in the chunks in which the list would give them.
struct ByteStream {
    void add(XMLConstant& constant)
    {
        const std::string_view bytes = constant.get_bytes();
        sink(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    }
    void add(const AString& text) { text.for_each_utf8(sink); }

    AString::BytesDelegate sink;
};

// Walks a tree with a stack of its own: a message can nest deeper than a worker's stack.
template <typename Output>
class XMLWriter
{
public:
    XMLWriter(Output& receiver, XMLWriteMode layout, bool shorten)
        : output(receiver), mode(layout), short_empty(shorten)
    {
        open_elements.reserve(usual_depth); // memory for it is there before the first byte goes out
    }

    void write(const XMLTree& root)
    {
        const bool known_mode = mode == XMLWriteMode::compact || mode == XMLWriteMode::lines ||
                                mode == XMLWriteMode::indented;
        if (!A_CHECK("xml_tree", known_mode)) {
            return;
        }
        begin_element(root);
        while (!open_elements.empty()) {
            step();
        }
    }

private:
    static constexpr std::size_t usual_depth = 16;

    struct OpenElement {
        const XMLTree* tree;
        const XMLTreeList::EntryStruct* next_child;
    };

    void step()
    {
        OpenElement& innermost = open_elements.back();
        if (const XMLTreeList::EntryStruct* child = innermost.next_child) {
            innermost.next_child = child->next.get();
            start_line();
            begin_element(child->value);
            return;
        }
        const XMLTree& finished = *innermost.tree;
        open_elements.pop_back();
        start_line();
        end_element(finished);
    }

    // An element with children stays open for them.
    void begin_element(const XMLTree& tree)
    {
        if (!A_CHECK("xml_tree", !tree.is_null)) {
            return;
        }
        output.add(open_angle);
        output.add(tree.name);
        for (const auto& [attribute_name, value] : tree.attributes) {
            output.add(AStringFormat(attribute_template.get_text())
                           .arg(attribute_name)
                           .arg(xml_escape(value))
                           .to_string());
        }
        const XMLTreeList::EntryStruct* first_child = tree.first_child();
        if (short_empty && first_child == nullptr && tree.text.is_empty()) {
            output.add(short_end);
            return;
        }
        output.add(close_angle);
        if (first_child != nullptr) {
            open_elements.push_back({&tree, first_child});
            return;
        }
        output.add(xml_escape(tree.text));
        end_element(tree);
    }

    void end_element(const XMLTree& tree)
    {
        output.add(open_angle);
        output.add(slash);
        output.add(tree.name);
        output.add(close_angle);
    }

    void start_line()
    {
        if (mode == XMLWriteMode::compact) {
            return;
        }
        output.add(line_break);
        if (mode == XMLWriteMode::indented) {
            add_indent(open_elements.size() * indent_step);
        }
    }

    void add_indent(std::uint64_t count)
    {
        const AString& whole = spaces.get_text();
        for (; count > whole.length(); count -= whole.length()) {
            output.add(whole);
        }
        if (count != 0) {
            output.add(whole.left(count));
        }
    }

    Output& output;
    XMLWriteMode mode;
    bool short_empty;
    std::vector<OpenElement> open_elements;
};

} // namespace

AStringList XMLTree::to_pieces(XMLWriteMode mode, bool short_empty) const
{
    PieceList output;
    XMLWriter(output, mode, short_empty).write(*this);
    return output.pieces;
}

void XMLTree::write(const AString::BytesDelegate& sink, XMLWriteMode mode, bool short_empty) const
{
    ByteStream output{sink};
    XMLWriter(output, mode, short_empty).write(*this);
}
