#!/usr/bin/env python3
"""Time of a property read from Python, and of a method with an argument, against a bare ctypes call of a C function with as
many arguments as the one through which the client makes them.

usage: bench/python.py [BUILD]     the folder with libhedro34-component.so, build/bench unless named
"""
import ctypes
import pathlib
import sys
import timeit
from ctypes import c_int32, c_uint16, c_uint32, c_void_p

AT_MOST = 4
ROUNDS = 500
CALLS = 100  # so few that a round is shorter than the time for which a busy system lets a process run


def bare_call():
    """The call of a C function that returns at once, with the arguments of `Invoke`: the object, the member's number, an
    identifier, the locale, the kind of call, and four structures, all of which are kept from call to call."""
    prototype = ctypes.CFUNCTYPE(c_uint32, c_void_p, c_int32, c_void_p, c_uint32, c_uint16, *[c_void_p] * 4)
    function = prototype(("abs", ctypes.CDLL(None)))  # which does not look at what comes behind its own argument
    target, identifier = ctypes.addressof(c_uint32()), bytes(16)
    params, result, exception, bad = [ctypes.byref(ctypes.create_string_buffer(64)) for _ in range(4)]
    return lambda: function(target, 12, identifier, 0, 2, params, result, exception, bad)


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    sys.path.insert(0, str(root / "clients/python"))
    import hedro34

    hedro34.load(f"{sys.argv[1] if len(sys.argv) > 1 else root / 'build/bench'}/libhedro34-component.so")
    test = hedro34.create("clsHEDROTest")
    question = hedro34.create("clsHEDROTestQuestion")
    question.QuestionText = "Which of these is the powerhouse of the cell?"
    question.Answers.AddDelimitedString("nucleus\tmitochondrion\tribosome")
    test.Questions.Add(question)
    questions, answers = test.Questions, question.Answers
    calls = {
        "a bare call": bare_call(),
        "a float": lambda: question.CorrectPoints,
        "a text of 46 characters": lambda: question.QuestionText,
        "an object": lambda: test.Questions,
        "a method with an argument, a text": lambda: answers.Item(2),
        "the same, an object": lambda: questions.Item(1),
    }
    times = {name: [] for name in calls}
    for _ in range(ROUNDS):
        for name, call in calls.items():
            times[name].append(timeit.timeit(call, number=CALLS) / CALLS * 1e6)
    bare = min(times.pop("a bare call"))
    print(f"{'a bare call':35} {bare:5.2f} microseconds")
    held = True
    for name, taken in times.items():
        ratio = min(taken) / bare
        held &= ratio <= AT_MOST
        print(f"{name:35} {min(taken):5.2f}  {ratio:5.2f}, at most {AT_MOST:.2f}{'' if ratio <= AT_MOST else '  EXCEEDED'}")
    return 0 if held else 1


if __name__ == "__main__":
    sys.exit(main())
