#!/usr/bin/env python3
"""What the program prints for a person or a spreadsheet: columns, characters that a terminal is not given."""

import unittest

from program import ProgramTest, examview, question


def document(*questions, **members):
    return {"format": "hedro34-ktd", "version": 1, "questions": list(questions), **members}


class Terminal(ProgramTest):
    def test_columns(self):
        """Wide characters take two columns, those that combine none, joined emoji as many as their parts."""
        family = "\U0001f469\u200d\U0001f467"
        labels = ["A", "中", "e\u0301", family, "\u1100\u1161\u11a8", "x\u200e\ufe0f\u200b", "a\nb"]
        self.file("w.ktd", document({"graded": True, "choiceLabels": labels, "questionText": "一\n二"},
                                    description="1\u0301\n2\u2028\u06f3\u0085four", notes="ｎ"))
        out = self.run_program("show", "w.ktd").out
        choices = [f"        {label}{' ' * blanks}  {label}" for label, blanks in
                   zip(labels, [3, 2, 3, 0, 2, 3])] + ["        a b   a", " " * 14 + "b"]
        self.assertIn("\n".join(["1.    ID 1, multiple choice", "      一", "      二", *choices, "      Key: none"]), out)
        self.assertIn("Description  1\u0301\n" + "".join(f"{' ' * 13}{line}\n" for line in ("2", "\u06f3", "four")), out)
        self.file("t.xml", examview(question("1", "tf", "T"), title="中文 e\u0301"))
        self.assertTrue(self.run_program("show", "t.xml").out.startswith("中文 e\u0301\n======\n\n"))

    def test_nothing_turns_the_terminal_around(self):
        turns = [chr(code) for code in [*range(0x202A, 0x202F), *range(0x2066, 0x206A)]]
        marks = "\u200e\u200f\u061c"
        for name in ["".join(turns), "\u009b\u2028\u0085"]:
            line = self.run_program("show", name, code=3).line
            self.assertIn("".join(f"\\u{ord(character):04x}" for character in name) + ": No such file", line)
        text = "a".join(turns) + marks + "\u009b1m"
        self.file("t.xml", examview(question(turns[0], "tf", "T", text=text), question(turns[0], "tf", "T"), title=text))
        outcome = self.run_program("show", "t.xml", code=5)
        self.assertEqual(outcome.out.count("a".join("\ufffd" * len(turns)) + marks + " 1m\n"), 2, outcome)
        self.assertFalse(set(turns) & set(outcome.out + outcome.err))
        self.assertIn("ID \ufffd, true/false", outcome.out)


if __name__ == "__main__":
    unittest.main()
