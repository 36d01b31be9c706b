"""What a page has to show, worked out from the document and the form as they stand in their files."""

import re


def numbers(keys):
    """`(1,3)` as [1, 3]; nothing as []."""
    return [int(number) for number in re.findall(r"\d+", keys[0])] if keys else []


def as_key(labels):
    return f"({','.join(labels)})" if len(labels) > 1 else "".join(labels)


def bubbles(labels, filled):
    """A choice without a label has no bubble."""
    return [(label, number in filled) for number, label in enumerate(labels, 1) if label]


def sheet(form, document):
    """For each field of the sheet in turn its name and its bubbles; those of a region that goes on with a group have no name."""
    asked = iter(document["questions"])
    found, group_before = [], 0
    for region in (region for page in form["pages"] for region in page["regions"]):
        group = region.get("groupNumber", 0)
        goes_on = group != 0 and group == group_before
        group_before = group
        for field in region["questions"]:
            labels = field.get("choiceLabels", [])
            if goes_on:
                found.append(("", bubbles(labels, [])))
                continue
            key = next(asked).get("numericAnswerKey", [])
            name = field.get("name") or region["name"]
            found.append((name, bubbles(labels, numbers(key) if field.get("graded") else [])))
    return found


def sheet_without_form(document):
    return [
        (asked["name"], bubbles(asked["choiceLabels"], numbers(asked.get("numericAnswerKey", []))))
        for asked in document["questions"]
    ]


def keys(document):
    """For each version its label, and for each graded place the field's number, its name and the key in its labels."""
    questions, versions = document["questions"], document["versions"]
    found = []
    for label, order in zip(versions.get("versionAnswers") or [""], versions["orders"]):
        places = []
        for place, asked in enumerate(order, 1):
            if questions[asked - 1].get("graded"):
                offered = questions[place - 1]["choiceLabels"]
                right = [offered[number - 1] for number in numbers(questions[asked - 1].get("numericAnswerKey", []))]
                places.append((place, questions[place - 1]["name"], as_key(right)))
        found.append((label, places))
    return found


def texts(document):
    """All that a person wrote about questions that are asked."""
    members = ("questionText", "topic", "difficulty", "reference", "keywords", "notes", "miscellaneous")
    asked = [one for one in document["questions"] if one.get("graded") or one.get("subjective")]
    return [one[member] for one in asked for member in members if one.get(member)] + document["objectives"][1:]
