"""The pages that are looked at: merges of the examples, and documents with forms that try to break a page."""

import json
import pathlib
import random
import subprocess

SOURCES = pathlib.Path(__file__).resolve().parent.parent.parent
EXAMPLES = SOURCES / "examples"

MARKUP = "<script>document.title='ran'</script><img src=x onerror=\"document.title='ran'\"></td></table></style>"
QUOTES = "\" ' ` &amp; &lt;b&gt; &#65; ]]> --> <!-- </textarea> </title> ${x} \\u0041 \\"
CONTROLS = "nul\0 bell\a escape\x1b[31m delete\x7f next\x85 line\u2028 end"
TURNED = "left \u202eright to left\u202c and \u2067isolated\u2069 \u200f mark \ufeff mark \ufffe \uffff end"
RIGHT = "מהי בירת צרפת? (paris) 12 + 3 = 15"
SCRIPTS = (
    "ما هي عاصمة فرنسا؟",
    "法国的首都是哪里？東京はどこですか。한국의 수도",
    "भारत की राजधानी क्या है?",
    "e\u0301 👩‍🔬 👍🏽 🇫🇷 𝔘𝔫𝔦",
    "क्षि" * 30,
)
WORD = "Donaudampfschifffahrtselektrizitätenhauptbetriebswerkbauunterbeamtengesellschaft" * 3


class Page:
    """A page of the program, with the document and the form that it was made from."""

    def __init__(self, path, document, form, left_out=()):
        self.path, self.document, self.form, self.left_out = path, document, form, left_out


def question(name, text="", labels=(), key=(), **more):
    """One question of a document; `key` are the numbers of the correct choices."""
    made = {"name": name, "questionText": text, "choiceLabels": list(labels), "correctAnd": False}
    if key:
        several = len(key) > 1
        words = [",".join(str(part) for part in parts) for parts in ([labels[one - 1] for one in key], key)]
        words = [f"({word})" if several else word for word in words]
        made |= {"graded": True, "correctAnswerCount": len(key), "answerKey": words[:1], "numericAnswerKey": words[1:]}
    return made | more


def document(questions, **more):
    alone = {"versions": {"orders": [list(range(1, len(questions) + 1))]}}
    return {"format": "hedro34-ktd", "version": 1, "documentKind": 1, "objectives": [""], "questions": questions} | alone | more


def form(questions, per_page=50):
    """Each question of a document as a field in a region of its own."""
    fields = []
    for one in questions:
        field = {key: one[key] for key in ("name", "graded", "choiceLabels") if key in one}
        fields.append({"name": one["name"], "questions": [field]})
    pages = [{"regions": fields[at : at + per_page]} for at in range(0, len(fields), per_page)]
    return {"format": "hedro34-form", "version": 1, "pages": pages}


ABCDE = "ABCDE"


def many(count, versions):
    """Questions with texts of their own length, each version in an order by chance."""
    chance = random.Random(34)
    first = question("Version", labels=[f"V{number}" for number in range(1, versions + 1)])
    questions = [
        question(f"Q{number}", f"begin{number} What comes after {'this and ' * (number % 9)}that? end{number}", ABCDE,
                 sorted(chance.sample(range(1, 6), 1 + number % 2)))
        for number in range(1, count + 1)
    ]  # fmt: skip
    orders = [list(range(1, count + 2))]
    for _ in range(1, versions):
        orders.append([1, *chance.sample(range(2, count + 2), count)])
    known = {"sequenceQuestion": 1, "versionAnswers": first["choiceLabels"], "orders": orders} if versions > 1 else {}
    return document([first, *questions], **({"versions": known} if known else {}))


def letters():
    """Odd and even places bear other letters, so a key has other letters in the second version."""
    keys = enumerate(([1], [2, 5], [3], [4]))
    questions = [question("Form", labels=("1", "2"))]
    questions += [question(f"Q{number}", f"Question {number}", ("ABCDE", "FGHIJ")[number % 2], key) for number, key in keys]
    versions = {"sequenceQuestion": 1, "versionAnswers": ["1", "2"], "orders": [[1, 2, 3, 4, 5], [1, 3, 2, 5, 4]]}
    return document(questions, versions=versions)


def hostile():
    """Every field of a page filled with what could end it or leave it."""
    letters = [chr(ord("A") + number) for number in range(26)]
    words = ["<b>bold</b>", "&amp;", '"quoted"', "]]>", "ABCDEFGHIJ", "אבגדהוזחטי", "漢字漢字漢字漢字漢字"]
    questions = [
        question("Name"),
        question(MARKUP, MARKUP, ABCDE, [1], topic=MARKUP, reference=MARKUP, notes=MARKUP, keywords=MARKUP),
        question(QUOTES, QUOTES, ["T", "F"], [2], topic=QUOTES, difficulty=QUOTES),
        question("controls", CONTROLS, ABCDE, [3], topic=CONTROLS),
        question(TURNED, TURNED, ABCDE, [4, 1], topic=TURNED),
        question("right", RIGHT, ["א", "ב", "ג", "ד"], [2], topic=RIGHT),
        question("letters", "Twenty-six choices", letters, [26, 1, 13]),
        question("words", "Labels of ten letters", words, [1, 5, 7]),
        question(WORD, WORD, ABCDE, [5], topic=WORD, notes=WORD),
        question("lines", "first line\r\nsecond line\r\n\r\n    int main() {\r\n\treturn 0;\r\n    }", ABCDE, [1]),
        *(question(f"script {number}", text, ABCDE, [1 + number % 5]) for number, text in enumerate(SCRIPTS)),
        question("an essay", "Explain " + MARKUP, subjective=True, subjectivePoints=12.5),
    ]
    for one in questions[1:10]:
        one["objectiveFlags"] = [False, True, True, True]
    texts = {"description": MARKUP + RIGHT, "notes": CONTROLS + "\r\n" + TURNED, "objectives": ["", MARKUP, WORD, RIGHT]}
    return document(questions, **texts)


def megabyte():
    """A megabyte in one text with blanks, in one without, and in one label."""
    questions = [
        question("blanks", "a word " * 150_000, ABCDE, [1]),
        question("none", "x" * (1 << 20), ABCDE, [2]),
        question("label", "a long label", ["A", "y" * (1 << 20)], [1]),
    ]
    return document(questions)


class Maker:
    """Makes pages with the program, each once, in one folder."""

    def __init__(self, program, folder):
        self.program, self.folder = program, pathlib.Path(folder)

    def run(self, *arguments, cwd):
        done = subprocess.run([self.program, *map(str, arguments)], cwd=cwd, capture_output=True, timeout=120, check=False)
        if done.returncode:
            raise AssertionError(f"{arguments}: exit code {done.returncode}\n{done.stderr.decode(errors='replace')}")

    def merged(self, name, *arguments, folder=EXAMPLES):
        """The page that a merge of examples writes."""
        page, document_out, form_out = (self.folder / f"{name}.{end}" for end in ("html", "ktd", "form.json"))
        if not page.exists():
            outputs = ("--form-out", form_out, "--document-out", document_out, "--report", page)
            self.run("merge", *outputs, *arguments, cwd=folder)
        return Page(page, *(json.loads(path.read_bytes()) for path in (document_out, form_out)))

    def biology(self):
        return self.merged("biology", "--objectives", "all", "--state", "CA", "--form", "biology.form.json", "biology.xml")

    def mixed(self):
        page = self.merged("mixed", "--partial-credit", "ok", "--quiet", "--form", "mixed.form.json", "mixed.xml")
        page.left_out = (2, 4, 6, 7, 9, 10, 12, 13, 15, 17, 19, 20, 21)
        return page

    def unit(self):
        tests = [f"unit-{letter}.xml" for letter in "abcd"]
        arguments = ("--sequence-question", "1", "--form", "unit.form.json", *tests)
        return self.merged("unit", *arguments, folder=EXAMPLES / "versions")

    def all(self):
        """The pages that every look holds for."""
        pages = {"biology": self.biology(), "mixed": self.mixed(), "unit": self.unit()}
        for name, made in {"letters": letters(), "hostile": hostile(), "empty": document([]), "many": many(200, 4)}.items():
            pages[name] = self.reported(name, made, form(made["questions"]))
        return pages | {"without a form": self.reported("bare", hostile())}

    def reported(self, name, made, form_of_it=None):
        """The page of a document, and of a form if there is one."""
        page = self.folder / f"{name}.html"
        if not page.exists():
            (self.folder / f"{name}.ktd").write_text(json.dumps(made), encoding="utf-8")
            arguments = []
            if form_of_it:
                (self.folder / f"{name}.form.json").write_text(json.dumps(form_of_it), encoding="utf-8")
                arguments = ["--form", self.folder / f"{name}.form.json"]
            self.run("report", *arguments, "--out", page, self.folder / f"{name}.ktd", cwd=self.folder)
        return Page(page, made, form_of_it)
