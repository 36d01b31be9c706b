"""Mutations of C++ at the level of its words: what may be changed in a source, and the source with all changes behind switches.

The sources are laid out by clang-format, so that a blank on both sides tells an operator from a bracket of a template or from a
part of a declaration."""

import bisect
import dataclasses
import re

TOKEN = re.compile(r'''
  (?P<skip>\s+|//[^\n]*|/\*.*?\*/|^[ ]*\#[^\n]*(?:\\\n[^\n]*)*)
| (?P<text>(?:u8|u|U|L)?"(?:\\.|[^"\\\n])*")
| (?P<unit>(?:u8|u|U|L)?'(?:\\.|[^'\\\n])+')
| (?P<number>(?:0x[0-9a-fA-F']+|\d[\d']*(?:\.\d*)?(?:e[+-]?\d+)?)[uUlLfF]*)
| (?P<word>[A-Za-z_]\w*)
| (?P<mark><=>|->\*|<<=|>>=|\.\.\.|::|->|\+\+|--|<<|[-+*/%&|^=!<>]=|&&|\|\||.)
''', re.VERBOSE | re.DOTALL | re.MULTILINE)

OPERATORS = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "+": "-", "-": "+", "*": "+", "/": "*",
             "%": "*"}
NAMES = {"==": "equal", "!=": "unequal", "<": "less", "<=": "at_most", ">": "more", ">=": "at_least", "+": "plus", "-": "minus",
         "*": "times", "/": "over", "%": "rest"}
CONDITIONS = {"==", "!=", "<", "<=", ">", ">=", "&&", "||", "!"}
OPEN, CLOSE = {"(": ")", "[": "]", "{": "}"}, {")", "]", "}"}
ENDS = {",", ";", "?", ":", "=", "+=", "-=", "|=", "&=", "return", "("}  # what no operand goes beyond
NO_STATEMENT = set("if for while switch case default do else using const constexpr static auto template struct class throw "
                   "enum public private protected typename friend explicit virtual operator namespace try catch inline".split())
UNSEEN = {"static_assert", "sizeof", "decltype", "alignas", "requires", "noexcept"}  # what they hold is nothing that runs


@dataclasses.dataclass
class Token:
    kind: str
    text: str
    start: int
    end: int


@dataclasses.dataclass
class Mutant:
    """One change. `plain` replaces a part of the source by it; `edits` put it behind its switch, where that is possible."""
    file: str
    line: int
    line_text: str
    change: str  # with the line's text it names the mutant, whatever stands around it
    plain: tuple
    edits: list
    rank: int  # of several that do not compile the highest is the first to be suspected
    number: int = 0

    def __str__(self):
        return f"{self.file}: {self.change} in: {self.line_text}"


class Source:
    def __init__(self, name, text):
        self.name, self.text, self.mutants, self.always = name, text, [], []
        self.line_starts = [0] + [match.end() for match in re.finditer("\n", text)]
        self.tokens = [Token(match.lastgroup, match[0], *match.span()) for match in TOKEN.finditer(text)
                       if match.lastgroup != "skip"]
        self.partner = {}
        self.find_brackets()
        self.find_bodies()
        self.fixed = []  # ranges of what is no code that runs, or that the compiler must know
        self.find_fixed()
        self.find_operands()
        self.find_conditions()
        self.find_statements()
        self.mutants.sort(key=lambda mutant: mutant.plain)
        times = {}
        for mutant in self.mutants:
            times[str(mutant)] = nth = times.get(str(mutant), 0) + 1
            if nth > 1:
                mutant.change += f" ({nth})"

    # --- the shape of the source

    def is_(self, i, *texts):
        return 0 <= i < len(self.tokens) and self.tokens[i].text in texts

    def find_brackets(self):
        opened = []
        for i, token in enumerate(self.tokens):
            if token.kind == "mark" and token.text in OPEN:
                opened.append(i)
            elif token.kind == "mark" and token.text in CLOSE:
                start = opened.pop()
                assert OPEN[self.tokens[start].text] == token.text, f"{self.name}: {token}"
                self.partner[start], self.partner[i] = i, start

    def find_bodies(self):
        """What each brace opens: a body of statements, a class or an enumeration, a namespace, or values."""
        self.brace_kind, self.around = {}, []
        opened = []
        for i, token in enumerate(self.tokens):
            if token.kind == "mark" and token.text == "}":
                opened.pop()
            self.around.append(opened[-1] if opened else None)
            if token.kind == "mark" and token.text == "{":
                self.brace_kind[i] = self.kind_of_brace(i)
                opened.append(i)

    def kind_of_brace(self, brace):
        i = brace - 1
        if self.is_(i, ")", "]", "else", "do", "try", "const", "noexcept", "override", "mutable"):
            return "body"
        if self.is_(i, ";", "{", "}") or i < 0:
            return "body"
        while self.tokens[i].kind == "word" or self.is_(i, "::", "<", ">", "*", "&"):
            i -= 1
        if self.is_(i, "->"):
            return "body"
        while i >= 0 and not self.is_(i, ";", "{", "}", "(", "="):
            i -= 1
        head = {token.text for token in self.tokens[i + 1 : brace]}
        if "case" in head or head == {"default", ":"}:
            return "body"
        for kind in ("namespace", "enum", "class", "struct", "union"):
            if kind in head and not self.is_(i, "(", "="):
                return kind
        return "values"

    def scope(self, i):
        """The kind of the innermost brace that holds statements or declarations."""
        around = self.around[i]
        while around is not None and self.brace_kind[around] == "values":
            around = self.around[around]
        return "namespace" if around is None else self.brace_kind[around]

    def past(self, i, *marks):
        """The first of these marks from i on, outside of brackets that open there."""
        while i < len(self.tokens) and not self.is_(i, *marks):
            i = self.partner[i] + 1 if self.tokens[i].text in OPEN and i in self.partner else i + 1
        return i

    def find_fixed(self):
        for i, token in enumerate(self.tokens):
            if token.text in UNSEEN and self.is_(i + 1, "("):
                self.fixed.append((i, self.partner[i + 1]))
            elif token.text == "if" and self.is_(i + 1, "constexpr"):
                self.fixed.append((i, self.partner[i + 2]))
            elif token.text == "case":
                self.fixed.append((i, self.past(i, ":")))
            elif token.text == "enum" and self.is_(self.past(i, "{", ";"), "{"):
                self.fixed.append((i, self.partner[self.past(i, "{", ";")]))
            elif token.text == "template" and self.is_(i + 1, "<"):
                depth, j = 0, i + 1
                while depth or j == i + 1:
                    depth += {"<": 1, ">": -1, ">>": -2}.get(self.tokens[j].text, 0)
                    j += 1
                self.fixed.append((i, j))
            elif token.kind == "number" and self.is_(i - 1, "<") and self.is_(i + 1, ">"):
                self.fixed.append((i, i))  # Text<255>
            elif token.text == "constinit":
                self.fixed.append((i, self.past(i, ";")))
            elif token.text == "constexpr" and not self.is_(i - 1, "if"):
                end = self.past(i, "(", "=", "{", ";")
                if self.is_(end, "("):  # a function runs as well as another
                    self.always.append((token.start, token.end, "inline"))
                elif self.scope(i) in ("class", "struct"):
                    self.fixed.append((i, self.past(end, ";")))
                else:
                    self.always.append((token.start, token.end, "" if self.is_(i + 1, "const") else "const"))

    def is_fixed(self, i):
        return any(start <= i <= end for start, end in self.fixed)

    # --- the mutants

    def add(self, change, first, last, replacement, edits, rank=0):
        start, end = self.tokens[first].start, self.tokens[last].end
        row = bisect.bisect_right(self.line_starts, start) - 1
        line = self.text[self.line_starts[row] :].partition("\n")[0].strip()
        self.mutants.append(Mutant(self.name, row + 1, line, change, (start, end, replacement),
                                   [] if self.is_fixed(first) else edits, rank))

    def wrap(self, first, last, before, after):
        """Text around a part. At one place what is around more comes further out."""
        start, end = self.tokens[first].start, self.tokens[last].end
        return [(start, start, before, 1, -end), (end, end, after, -1, -start)]

    def operand(self, i, step, ends):
        """How far the operand goes that begins beside an operator: the last token of it."""
        while True:
            following = i + step
            token = self.tokens[following]
            if token.text in ends or (token.kind == "mark" and token.text in (CLOSE if step > 0 else OPEN)):
                return i
            jumps = token.kind == "mark" and token.text in (OPEN if step > 0 else CLOSE)
            i = self.partner[following] if jumps else following

    def find_operands(self):
        i = 0
        while i < len(self.tokens):
            token, text = self.tokens[i], self.tokens[i].text
            around = self.text[token.start - 1 : token.end + 1]
            if token.kind == "mark" and text in OPERATORS and around == f" {text} ":
                other = OPERATORS[text]
                switch = f" mutants::{NAMES[text]}{{@}} {text}"
                self.add(f"{text} to {other}", i, i, other, [(token.end, token.end, switch, 1, 0)], 2)
            elif text in ("&&", "||") and not self.is_(i + 1, "{") and around[0] in " \n" and around[-1] in " \n":
                ends = ENDS - {"("} | ({"||"} if text == "&&" else set())
                first, last = self.operand(i, -1, ends), self.operand(i, 1, ends | {text})
                self.add(f"{text} to {'||' if text == '&&' else '&&'}", i, i, "||" if text == "&&" else "&&",
                         self.wrap(first, last, "((", ") != mutants::on(@))") +
                         self.wrap(first, i - 1, "(bool(", ") != mutants::on(@))") +
                         self.wrap(i + 1, last, "(bool(", ") != mutants::on(@))"), 3)
            elif text == "!":
                self.add("no !", i, i, "", [(token.start, token.end, "mutants::negation{@}->*", 1, 0)], 2)
            elif text in ("++", "--"):
                other = "--" if text == "++" else "++"
                switch = f"mutants::{'up' if text == '++' else 'down'}{{@}}->*"
                before = not (i and (self.tokens[i - 1].kind == "word" or self.is_(i - 1, ")", "]")))
                self.add(f"{text} to {other}", i, i, other, [(token.start, token.end, switch, 1, 0)] if before else [], 2)
            elif text in ("true", "false"):
                other = "false" if text == "true" else "true"
                self.add(f"{text} to {other}", i, i, other, self.wrap(i, i, "mutants::truth(@, ", ")"))
            elif token.kind == "number":
                value = re.sub(r"^[\d']+", lambda digits: str(int(digits[0].replace("'", "")) + 1), text)
                if not text.startswith("0x"):
                    self.add(f"{text} to {value}", i, i, value, self.wrap(i, i, "mutants::next(@, ", ")"), 1)
            elif token.kind == "unit" and "\\" not in text:
                value = text[:-2] + chr(ord(text[-2]) + 1) + "'"
                self.add(f"{text} to {value}", i, i, value, self.wrap(i, i, "mutants::next(@, ", ")"), 1)
            elif text in ("min", "max") and self.is_(i - 1, "::") and self.is_(i - 2, "std"):
                other = "max" if text == "min" else "min"
                self.add(f"{text} to {other}", i, i, other, [])
            elif token.kind == "text":
                last = i
                while self.tokens[last + 1].kind == "text":
                    last += 1
                value = re.sub(r'"(\\.|[^"\\])?', lambda match: '"%' if match[1] != "%" else '"&', text, count=1)
                value += " ".join(self.text[token.end : self.tokens[last].end].split("\n"))
                shown = text if len(text) < 25 else text[:20] + '..."'
                self.add(f"other {shown}", i, last, value, self.wrap(i, last, "mutants::text(@, ", f", {value})"), 1)
                i = last
            i += 1

    def has_condition(self, first, last):
        start, end = self.tokens[first].start, self.tokens[last].end
        return any(start <= mutant.plain[0] < end and re.match(r"no !|\S+ to \S+$", mutant.change) and
                   mutant.change.split()[0] in CONDITIONS | {"no", "true", "false"} for mutant in self.mutants)

    def negate(self, first, last):
        if first <= last and not self.has_condition(first, last):
            part = self.text[self.tokens[first].start : self.tokens[last].end]
            self.add("not the condition", first, last, f"!({part})", self.wrap(first, last, "mutants::flip(@, ", ")"), 2)

    def find_conditions(self):
        for i, token in enumerate(self.tokens):
            if token.text in ("if", "while") and self.is_(i + 1, "("):
                first, end = i + 2, self.partner[i + 1]
                if self.is_(self.past(first, ";", ")"), ";"):
                    first = self.past(first, ";") + 1
                if not self.is_(self.past(first, "=", ")"), "="):
                    self.negate(first, end - 1)
            elif token.text == "?":
                self.negate(self.operand(i, -1, ENDS - {"("}), i - 1)

    def find_statements(self):
        for i in range(1, len(self.tokens)):
            if self.scope(i) != "body" or self.brace_kind.get(self.around[i]) != "body" or not self.starts_statement(i):
                continue
            end = self.past(i, ";", "}")
            if not self.is_(end, ";"):
                continue
            whole = self.text[self.tokens[i].start : self.tokens[end].end]
            if self.is_(i, "return") and end > i + 1:
                if whole == "return std::nullopt;":
                    continue  # it is what {} gives
                if end != i + 2 or self.tokens[i + 1].kind == "word" and not self.is_(i + 1, "true", "false", "nullptr"):
                    if not self.is_(i + 1, "{") and not (self.is_(i + 1, "*") and self.is_(i + 2, "this")):
                        self.add("return {}", i, end, "return {};",
                                 self.wrap(i, end, "{ if (mutants::on(@)) return {}; ", " }"), 5)
            elif self.is_(i, "return", "break", "continue") or self.is_expression(i):
                shown = " ".join(whole.split())
                self.add(f"without {shown if len(shown) < 50 else shown[:45] + '...;'}", i, end, ";",
                         self.wrap(i, end, "{ if (!mutants::on(@)) ", " }"), 4)

    def starts_statement(self, i):
        if self.is_(i - 1, ";", "{", "}", "else", "do"):
            return self.past_bracket_of_for(i)
        if self.is_(i - 1, ")"):
            return self.is_(self.partner[i - 1] - 1, "if", "for", "while", "switch", "constexpr")
        if self.is_(i - 1, ":"):
            j = i - 2
            while not self.is_(j, ";", "{", "}", ":", "?"):
                j -= 1
            return self.is_(j + 1, "case", "default")
        return False

    def past_bracket_of_for(self, i):
        """Whether a token behind a semicolon is not inside the brackets of a `for` or an `if`."""
        j = i - 1
        while j >= 0 and not (self.tokens[j].kind == "mark" and self.tokens[j].text in OPEN):
            j = self.partner[j] - 1 if self.tokens[j].kind == "mark" and self.tokens[j].text in CLOSE else j - 1
        return j >= 0 and self.is_(j, "{")

    def is_expression(self, i):
        """Whether a statement calls or assigns, rather than declares."""
        while self.is_(i, "*"):
            i += 1
        if self.tokens[i].kind != "word" or self.tokens[i].text in NO_STATEMENT:
            return False
        i += 1
        while True:
            if self.is_(i, ".", "->", "::") and self.tokens[i + 1].kind == "word":
                i += 2
            elif self.is_(i, "(", "["):
                i = self.partner[i] + 1
            else:
                return self.is_(i, ";") or self.tokens[i].text in ("=", "+=", "-=", "|=", "&=", "<<", "*=")

    # --- texts

    def switched(self, mutants):
        """The source with these of its mutants behind their switches."""
        edits = [(*change, 0, 0, 0) for change in self.always]
        for mutant in mutants:
            edits += [(start, end, text.replace("@", str(mutant.number)), side, order, side * len(edits))
                      for start, end, text, side, order in mutant.edits]
        return self.edited(sorted(edits, key=lambda edit: (edit[0], *edit[3:])))

    def edited(self, edits):
        result, at = [], 0
        for start, end, text, *_ in edits:
            result += [self.text[at:start], text]
            at = end
        return "".join(result) + self.text[at:]
