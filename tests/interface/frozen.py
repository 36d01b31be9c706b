"""A list that is kept in a file and changes on purpose only."""

import sys


def compare(file, lines):
    """Ends the test where the lines are not those of the file; with --update the file takes lines that are new."""
    kept = file.read_text(encoding="utf-8").splitlines() if file.exists() else []
    gone = [f"- {line}" for line in kept if line not in set(lines)]
    new = [f"+ {line}" for line in lines if line not in set(kept)]
    moved = [] if gone or new or kept == lines else ["the same lines in another order"]
    if "--update" in sys.argv[1:]:
        file.write_text("".join(f"{line}\n" for line in lines), encoding="utf-8")
    elif gone or new or moved:
        print(*gone, *new, *moved, sep="\n")
        print(f"{file.name}: {len(gone)} lines gone, {len(new)} lines new")
        if gone:
            print("What is gone or changed breaks programs: it takes another version of the interface.")
        print("The version of the interface is the first two numbers of VERSION in CMakeLists.txt; docs/stability.md says what asks for another one.")
        sys.exit(f"When that is as it should be: {sys.argv[0]} --update")
