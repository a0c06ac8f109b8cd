// The XML layer: what it makes of a stream does not depend on how the stream was cut, and what it
// makes of a text is again the same when it has been written.

#include "fuzz/check.h"
#include "fuzz/script.h"
#include "fuzz/trees.h"
#include "xml/xml_parse.h"

namespace
{

constexpr std::uint64_t buffer_bytes = 512; // small, so that inputs fill it

struct Outcome {
    std::vector<XMLTree> trees;
    bool failed = false; // refused, or longer than the buffer
};

class Reader
{
public:
    Reader()
    {
        parser.add_root_tag("reply");
        parser.add_root_tag("report");
    }

    void feed(std::string_view bytes)
    {
        while (!bytes.empty() && !outcome.failed) {
            const std::uint64_t taken = parser.feed(bytes.data(), bytes.size());
            FUZZ_CHECK(taken <= bytes.size());
            outcome.failed = taken == 0;
            bytes.remove_prefix(taken);
            take_elements();
        }
    }

    Outcome outcome;

private:
    void take_elements()
    {
        for (;;) {
            XMLTree tree = parser.next_element();
            outcome.failed = outcome.failed || parser.has_failed();
            FUZZ_CHECK(!parser.has_failed() || tree.is_null);
            if (tree.is_null) {
                return;
            }
            outcome.trees.push_back(std::move(tree));
        }
    }

    XMLParser parser{buffer_bytes};
};

// Gives the whole stream.
std::string check_cuts(fuzz::Script script)
{
    Reader in_pieces;
    std::string stream;
    while (const auto step = script.next()) {
        in_pieces.feed(step->piece);
        stream += step->piece;
    }
    Reader whole;
    whole.feed(stream);
    const Outcome& a = in_pieces.outcome;
    const Outcome& b = whole.outcome;
    FUZZ_CHECK(a.failed == b.failed);
    FUZZ_CHECK(std::equal(a.trees.begin(), a.trees.end(), b.trees.begin(), b.trees.end(),
                          fuzz::same_tree));
    return stream;
}

bool has_attributes(const XMLTree& root)
{
    std::vector<const XMLTree*> trees{&root};
    while (!trees.empty()) {
        const XMLTree* tree = trees.back();
        trees.pop_back();
        if (!tree->attributes.empty()) {
            return true;
        }
        for (const auto* child = tree->first_child(); child != nullptr; child = child->next.get()) {
            trees.push_back(&child->value);
        }
    }
    return false;
}

void check_text(const std::string& text)
{
    bool refused = false;
    const XMLTree tree =
        XMLTreeBuilder::parse(AString::from_utf8(text.data(), text.size()), &refused);
    FUZZ_CHECK(refused == tree.is_null);
    // Attributes are read raw and written escaped, which is wanted: they do not come back.
    if (refused || has_attributes(tree)) {
        return;
    }
    for (const XMLWriteMode mode :
         {XMLWriteMode::compact, XMLWriteMode::lines, XMLWriteMode::indented}) {
        const AString written = AString::join(tree.to_pieces(mode, true), AString());
        FUZZ_CHECK(fuzz::same_tree(XMLTreeBuilder::parse(written), tree));
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    check_text(check_cuts(fuzz::Script(fuzz::text_of(data, size), 0)));
    return 0;
}
