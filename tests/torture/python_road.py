"""The road of a merge in Python, with the faults of tests/torture/preloaded.cpp: the client's example, run once or, with `serve`, in
a child for each line of standard input that names a folder and a fault.

    python_road.py [serve] FOLDER ARGUMENT ...   # the arguments are those of clients/python/examples/merge.py"""

import atexit
import ctypes
import os
import pathlib
import signal
import sys
import traceback

CLIENT = pathlib.Path(__file__).resolve().parents[2] / "clients" / "python"
sys.path[:0] = [str(CLIENT), str(CLIENT / "examples")]

import hedro34  # noqa: E402
import merge  # noqa: E402

FAULTS = ctypes.CDLL(None)


def main(folder, fault):
    os.chdir(folder)
    os.environ["XDG_DATA_HOME"] = folder  # no class registry
    sys.argv += ["--out", folder]
    FAULTS.hedro34_fault_start(fault.encode() or None)
    code = 0
    try:
        merge.main()
    except SystemExit as end:
        print(end, file=sys.stderr)
        code = 1
    except BaseException:
        traceback.print_exc()
        code = 70
    atexit._run_exitfuncs()
    FAULTS.hedro34_fault_end()
    sys.stdout.flush()
    sys.stderr.flush()
    os._exit(code)


def serve():
    for line in sys.stdin:
        folder, fault = line.rsplit(maxsplit=1)
        child = os.fork()
        if child == 0:
            for number, name in [(1, "out"), (2, "err"), (int(os.environ["HEDRO34_FAULT_TOLD"]), "told")]:
                os.dup2(os.open(f"{folder}.{name}", os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o666), number)
            signal.alarm(60)
            main(folder, fault)
        print(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]), flush=True)


hedro34.load(sys.argv[sys.argv.index("--library") + 1])
if sys.argv[1] == "serve":
    del sys.argv[1]
    serve()
else:
    main(sys.argv.pop(1), os.environ.get("HEDRO34_FAULT", ""))
