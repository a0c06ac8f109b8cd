"""What the description must not contain, and how it is told."""

import unittest

import support
from description import load
from schema import DescriptionError

FAMILY = '[family]\ntitle = "Extra"\n'
PLAIN = """
[[function]]
name = "velto_extra"
summary = "Does more."
arguments = ["handle"]
behaviour = "command"
"""


class DescriptionTest(unittest.TestCase):
    def setUp(self):
        self.tree = support.Tree(self)

    def load(self):
        return load(self.tree.root / "interface")

    def refuse(self, text, *told):
        """The text as a further file is refused, and the message tells all of this."""
        self.tree.add("90_extra.toml", text)
        with self.assertRaises(DescriptionError) as caught:
            self.load()
        for part in told:
            self.assertIn(part, str(caught.exception))

    def refuse_function(self, text, *told):
        self.refuse(FAMILY + "[[function]]\n" + text, *told)

    def test_a_family_is_added_by_adding_a_file(self):
        before = len(self.load().functions)
        self.tree.add("90_extra.toml", FAMILY + PLAIN)
        functions = self.load().functions
        self.assertEqual(len(functions), before + 1)
        self.assertEqual(functions[-1].name, "velto_extra")

    def test_unknown_table(self):
        self.refuse('[famly]\ntitle = "Extra"\n', "90_extra.toml", "unknown table 'famly'")

    def test_broken_toml(self):
        self.refuse("[family\n", "90_extra.toml")

    def test_functions_without_a_family(self):
        self.refuse(PLAIN, "90_extra.toml", "need a [family]")

    def test_unknown_key(self):
        self.refuse(FAMILY + PLAIN + 'sumary = "x"', "velto_extra", "unknown key 'sumary'")

    def test_missing_field(self):
        self.refuse_function(
            'name = "velto_extra"\nsummary = "x"\narguments = []\n',
            "90_extra.toml: velto_extra",
            "missing field 'behaviour'",
        )

    def test_wrong_type_of_a_key(self):
        self.refuse(FAMILY + PLAIN.replace('"Does more."', "1"), "velto_extra", "'summary'")

    def test_empty_text(self):
        self.refuse(FAMILY + PLAIN.replace("Does more.", " "), "velto_extra", "'summary' is empty")

    def test_duplicate_function_in_another_file(self):
        self.refuse(
            FAMILY + PLAIN.replace("velto_extra", "velto_close"),
            "duplicate name 'velto_close'",
            "10_connection.toml",
        )

    def test_duplicate_constant(self):
        self.refuse(
            '[[enumeration]]\nname = "VeltoMore"\ntext = "x"\n'
            'values = [{ name = "VELTO_REPEAT_OFF", value = 1, text = "x" }]\n',
            "90_extra.toml: VeltoMore",
            "duplicate name 'VELTO_REPEAT_OFF'",
        )

    def test_duplicate_shared_argument(self):
        self.refuse('[argument.clip]\ntype = "text"\ntext = "x"\n', "duplicate argument 'clip'")

    def test_unknown_shared_argument(self):
        self.refuse(FAMILY + PLAIN.replace('["handle"]', '["handel"]'), "unknown argument 'handel'")

    def test_unknown_type_of_an_argument(self):
        argument = '[{ name = "size", type = "u23", text = "x", range = "any" }]'
        self.refuse(
            FAMILY + PLAIN.replace('["handle"]', argument), "velto_extra", "unknown type 'u23'"
        )

    def test_unknown_type_of_a_shared_argument_that_nobody_uses(self):
        self.refuse('[argument.size]\ntype = "u23"\ntext = "x"\n', "unknown type 'u23'")

    def test_unknown_direction(self):
        argument = '[{ name = "size", type = "u32", text = "x", direction = "up" }]'
        self.refuse(FAMILY + PLAIN.replace('["handle"]', argument), "unknown direction 'up'")

    def test_unknown_enumeration(self):
        argument = '[{ name = "size", type = "u32", text = "x", constants = "VeltoSize" }]'
        self.refuse(FAMILY + PLAIN.replace('["handle"]', argument), "'VeltoSize'")

    def test_number_without_range_or_constants(self):
        argument = '[{ name = "size", type = "u32", text = "x" }]'
        self.refuse(FAMILY + PLAIN.replace('["handle"]', argument), "'size'", "needs 'range'")

    def test_keyword_as_an_argument_name(self):
        argument = '[{ name = "goto", type = "u32", text = "x", range = "any" }]'
        self.refuse(FAMILY + PLAIN.replace('["handle"]', argument), "'goto'", "not a legal name")

    def test_duplicate_argument(self):
        self.refuse(
            FAMILY + PLAIN.replace('["handle"]', '["handle", "handle"]'),
            "duplicate argument 'handle'",
        )

    def test_unknown_behaviour(self):
        self.refuse(FAMILY + PLAIN.replace('"command"', '"comand"'), "unknown behaviour 'comand'")

    def test_result_function_without_results(self):
        self.refuse(FAMILY + PLAIN.replace('"command"', '"local"'), "velto_extra", "'results'")

    def test_output_whose_fate_after_a_failure_is_untold(self):
        argument = '[{ name = "size", type = "u32", text = "x", direction = "out" }]'
        self.refuse(FAMILY + PLAIN.replace('["handle"]', argument), "velto_extra", "'outputs'")

    def test_unknown_result_code(self):
        self.refuse(
            '[behaviour.more]\nblocks = "x"\nresults = [{ code = 9, when = "x" }]\n',
            "[behaviour.more]",
            "unknown result code 9",
        )

    def test_failure_without_a_text(self):
        self.refuse(
            '[behaviour.more]\nblocks = "x"\nresults = [{ code = 2, when = "x" }]\n',
            "[behaviour.more]",
            "result code 2 needs one text",
        )

    def test_exported_name_with_another_prefix(self):
        self.refuse(FAMILY + PLAIN.replace("velto_extra", "volto_extra"), "velto_ and lower case")

    def test_variant_of_an_unknown_function(self):
        self.refuse_function(
            'name = "velto_extra1"\nvariant_of = "velto_extra2"\narguments = []\n',
            "velto_extra1",
            "'velto_extra2' is no fully described function",
        )

    def test_variant_with_an_argument_of_its_own(self):
        self.refuse_function(
            'name = "velto_extra"\nvariant_of = "velto_jog2"\narguments = ["handle", "clip"]\n',
            "velto_extra",
            "argument 'clip' is none of velto_jog2",
        )

    def test_variant_in_another_order(self):
        self.refuse_function(
            'name = "velto_extra"\nvariant_of = "velto_jog2"\narguments = ["channel", "handle"]\n',
            "not in the order of velto_jog2",
        )

    def test_variant_that_leaves_nothing_out(self):
        self.refuse_function(
            'name = "velto_extra"\nvariant_of = "velto_clear_out"\n'
            'arguments = ["handle", "channel"]\n',
            "leaves nothing of velto_clear_out out",
        )

    def test_variant_that_fixes_an_argument_of_its_own(self):
        self.refuse_function(
            'name = "velto_extra"\nvariant_of = "velto_edit1"\narguments = ["handle", "channel"]\n'
            'fixed = { channel = "0" }\n',
            "'fixed' names 'channel'",
        )

    def test_variant_that_fixes_an_unknown_constant(self):
        self.refuse_function(
            'name = "velto_extra"\nvariant_of = "velto_edit1"\narguments = ["handle", "channel"]\n'
            'fixed = { bits = "VELTO_EDIT_SOME" }\n',
            "velto_extra",
            "VELTO_EDIT_SOME",
        )

    def test_text_that_mentions_what_does_not_exist(self):
        self.refuse(
            FAMILY + PLAIN.replace("Does more.", "See velto_other."),
            "velto_extra",
            "mentions 'velto_other'",
        )


if __name__ == "__main__":
    unittest.main()
