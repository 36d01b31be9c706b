"""What a program is compiled against, read from the public headers by castxml: enumerations, constants, other names of types,
functions, and of each class its size, its fields and its virtual functions. A line for each says all of it; what cannot be read
this way docs/stability.md names."""

import subprocess
import tempfile
import xml.etree.ElementTree

UMBRELLAS = "#include <hedro34/hedro34.h>\n#include <hedro34/component.h>\n"
CLASSES = ("Class", "Struct", "Union")
FUNCTIONS = ("Function", "OperatorFunction", "Method", "OperatorMethod", "Constructor", "Destructor", "Converter")


class Headers:
    def __init__(self, include, *more):
        """The public headers below a folder, and where else to look for what they include."""
        self.include = f"{include}/"
        with tempfile.TemporaryDirectory() as folder:
            # The standard library as clang++ has it: castxml stands on clang and cannot read all that g++ can.
            subprocess.run(["castxml", "--castxml-output=1", "--castxml-start", "hedro34", "-o", f"{folder}/headers.xml",
                            "--castxml-cc-gnu", "(", "clang++", "-std=c++20", ")", "-std=c++20",
                            *(f"-I{each}" for each in (include, *more)), "-x", "c++", "-"],
                           input=UMBRELLAS, text=True, check=True)
            self.nodes = {node.get("id"): node for node in xml.etree.ElementTree.parse(f"{folder}/headers.xml").getroot()}
        places = {}
        for node in self.nodes.values():
            file = self.nodes.get(node.get("file"))
            if file is not None and file.get("name").startswith(self.include):
                place = file.get("name").removeprefix(self.include), int(node.get("line"))
                places.setdefault(place, []).append(node)
        self.own = [node for place in sorted(places) for node in places[place]]

    def lines(self, explained):
        """The description, in the order of the headers' names and then of their lines; of inline functions those that stand in
        `explained`, the headers that programs are to use."""
        found, known = [], set()
        for node in self.own:
            lines = list(self.of(node, explained))
            place = node.tag, node.get("file"), node.get("line"), node.get("name", "").split("<")[0]
            if lines and place not in known:  # of a template one class is enough
                found += lines
                known.add(place)
        return list(dict.fromkeys(found))

    def of(self, node, explained):
        if node.tag in CLASSES and node.get("incomplete") is None and node.get("name"):
            yield from self.of_class(node)
        elif node.tag == "Typedef":
            yield f"using {self.name(node)} = {self.type(node.get('type'))}"
        elif node.tag == "Enumeration":
            name = self.name(node).rstrip(":")
            yield f"enum {name}: {int(node.get('size')) // 8} bytes"
            yield from (f"enum {name}: {value.get('name')} = {value.get('init')}" for value in node)
        elif node.get("access") == "private":
            return
        elif node.tag == "Variable" and not self.opaque(node):
            yield f"{self.type(node.get('type'))} {self.name(node)} = {node.get('init')}"
        elif node.tag in FUNCTIONS and (self.in_library(node) or self.inline(node, explained)):
            yield self.signature(node)

    def hidden(self):
        """The mangled names of what the library has and no header lets a program name."""
        return {node.get("mangled") for node in self.own
                if node.tag in (*FUNCTIONS, "Variable") and (node.get("access") == "private" or self.opaque(node))}

    def with_tables(self):
        """The names of the classes whose type information is in the library alone: those with a virtual function there."""
        return {node.get("name") for node in self.own if node.tag in CLASSES and any(
            member.get("virtual") and self.in_library(member)
            for member in map(self.nodes.get, node.get("members", "").split()))}

    def of_class(self, node):
        name = self.name(node)
        bases = ", ".join(self.type(base.get("type")) for base in node.findall("Base"))
        yield f"{name}: {int(node.get('size')) // 8} bytes, aligned to {int(node.get('align')) // 8}" + (
            f", a {bases}" if bases else "")
        place = 0
        for member in (self.nodes[identifier] for identifier in node.get("members", "").split()):
            if member.tag == "Field":
                byte, bit = divmod(int(member.get("offset")), 8)
                assert bit == 0 and member.get("bits") is None, f"{name}::{member.get('name')} is no whole byte"
                kind = self.type(member.get("type")).rstrip(":")
                yield f"{name}: at {byte} {kind} {member.get('name')}".rstrip()
            elif member.get("virtual") and not member.get("overrides"):
                place += 1
                yield f"{name}: virtual {place} {self.signature(member)}"

    @staticmethod
    def is_written(node):
        """Whether it is a function that stands in the headers as it is: made by no template, nor by the compiler."""
        mangled = node.get("mangled") or ""
        of_template = f"{node.get('name')}I" in mangled or not mangled and node.tag not in ("Constructor", "Destructor")
        return not of_template and not any(node.get(word) for word in ("artificial", "pure_virtual", "deleted"))

    def in_library(self, node):
        return self.is_written(node) and not node.get("inline")

    def inline(self, node, explained):
        """Whether it is a function that each program compiles itself. A virtual one stands with the class that began it."""
        header = self.nodes[node.get("file")].get("name").removeprefix(self.include)
        context = self.nodes[node.get("context")]
        return (header in explained and self.is_written(node) and not node.get("virtual")
                and context.get("name") not in ("", "detail") and context.get("access") != "private")

    def opaque(self, node):
        """Whether it is a variable of a type that the headers only name."""
        kind = self.nodes.get((node.get("type") or "").rstrip("cv"))
        return kind is not None and kind.get("incomplete") is not None

    def signature(self, node):
        returns = f"{self.type(node.get('returns'))} " if node.get("returns") else ""
        arguments = ", ".join(self.type(argument.get("type")) for argument in node.findall("Argument"))
        front = {"Destructor": "~", "OperatorFunction": "operator", "OperatorMethod": "operator"}.get(node.tag, "")
        if node.tag == "Converter":
            front, returns = f"operator {returns.rstrip()}", ""
        static = "static " if node.get("static") else ""
        return f"{static}{returns}{self.name(node, front)}({arguments})" + (" const" if node.get("const") else "")

    def name(self, node, front=""):
        """With namespace and class, but for our own namespace; `front` stands before the last word."""
        context = self.nodes.get(node.get("context"))
        own = front + node.get("name", "")
        if context is None or context.get("name") in ("::", "hedro34"):
            return own.replace("hedro34::", "")
        return f"{self.name(context)}::{own}".replace("hedro34::", "")

    def type(self, identifier):
        node = self.nodes.get(identifier)
        if node is None:  # with "c" for const behind the one that is there
            return "const " + self.type(identifier[:-1])
        if node.tag in ("PointerType", "ReferenceType"):
            return self.type(node.get("type")) + {"P": "*", "R": "&"}[node.tag[0]]
        if node.tag in ("CvQualifiedType", "ElaboratedType"):
            return ("const " if node.get("const") else "") + self.type(node.get("type"))
        if node.tag == "ArrayType":
            return f"{self.type(node.get('type'))}[{int(node.get('max')) + 1}]"
        if node.tag == "FunctionType":
            return f"{self.type(node.get('returns'))}({', '.join(self.type(each.get('type')) for each in node)})"
        return self.name(node)
