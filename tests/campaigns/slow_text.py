"""Pathological text for every text reader: twice the size takes at most 2.5 times as long.

Time is the processor time of the command (user and system), the median of three runs, less that of a tiny file of the
same kind. A refusal is as good as a result; a crash or a call for more memory than 64 MiB plus 40 times the file's size is
not.
"""
import os
import resource
import statistics
import subprocess
import sys
import tempfile

import inputs

HEAD = {"msh": "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n", "dmp": "1\n[HEADER]\n1023 5\n1 1 1\n2 1\n0 1\n0 0\n",
        "snc": "9\n[HEADER] t\n", "ctg": "[Header]\n", "json": '{"format": "ofe-json", "version": 1, "nodes": ['}
READ = {"msh": ["import", "FILE", "out"], "dmp": ["dmp", "dump", "FILE", "-o", "out"], "ctg": ["info", "FILE"],
        "snc": ["snc", "FILE", "mold.ofe", "-o", "out"], "json": ["load", "FILE", "out"],
        "roles": ["import", "mold.msh", "out", "--roles", "FILE"]}
HEAD["roles"] = '{"groups": {'
MILLION = 1_000_000

# Name, what is repeated, how often at full size, what stands around it.
SHAPES = [("one line of 50 MB", "x1 2 ", 10 * MILLION), ("digits without an end", "7", 50 * MILLION),
          ("a million empty lines", "\n", MILLION), ("a million empty records", "0 0\n", MILLION),
          ("a million empty values", "[],", MILLION), ("deep nesting", "[", MILLION), ("deep objects", '{"a":', MILLION),
          ("zero bytes", "\0", 10 * MILLION), ("an open quotation", '"' + "a" * 999, 50_000)]
SECTIONS = {"msh": "$Comments\n$EndComments\n", "dmp": "[NODE MAP]\n", "snc": "[HEADER]\n", "ctg": "[Node]\n",
            "json": "[0,0,0],", "roles": '"a": "part",'}
with open(os.path.join(inputs.DATA, "history.snc")) as history:
    HISTORY = history.read()
HEADERS_ALONE = {"msh": "$MeshFormat\n2.2 0 8\n$EndMeshFormat\n$Nodes\n1000000\n", "dmp": HEAD["dmp"] + "[NODE MAP]\n",
                 "snc": HISTORY.split("35.00")[0], "ctg": "[Header]\n1004\n[Node]\n"}


def processor_time(words, folder, limit):
    def limited():
        resource.setrlimit(resource.RLIMIT_AS, (limit, limit))
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    done = subprocess.run([inputs.ORVMESH, *words], cwd=folder, stdin=subprocess.DEVNULL, capture_output=True,
                          preexec_fn=limited, check=False, timeout=300)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime, done


def measure(kind, text, folder):
    path = inputs.put(folder, "text." + kind, text)
    words = [path if word == "FILE" else word for word in READ[kind]]
    limit = (512 << 20) + 40 * os.path.getsize(path)
    runs = [processor_time(words, folder, limit) for _ in range(3)]
    done = runs[0][1]
    problem = ""
    lines = [line for line in done.stderr.decode(errors="replace").splitlines() if ": warning: " not in line]
    if done.returncode not in (0, 1):
        problem = f"exit code {done.returncode}"
    elif done.returncode == 1 and (len(lines) != 1 or len(lines[0]) > 1000 or "out of memory" in lines[0]):
        problem = f"{len(lines)} error lines: {' '.join(lines)[:200]}"
    return statistics.median(time for time, _ in runs), problem


def main():
    problems, worst = 0, 0.0
    with tempfile.TemporaryDirectory(dir=inputs.scratch_root()) as folder:
        inputs.small_inputs(folder)
        for kind in READ:
            tiny = measure(kind, HEAD[kind], folder)[0]
            shapes = SHAPES + [("a million tiny sections", SECTIONS[kind], MILLION)]
            heads = [HEAD[kind]] + ([HEADERS_ALONE[kind]] if kind in HEADERS_ALONE else [])
            for number, head in enumerate(heads):
                for name, piece, count in shapes:
                    for _ in range(3):  # a busy machine disturbs one measurement, hardly three
                        half, whole = (measure(kind, head + piece * n, folder) for n in (count // 2, count))
                        # Below fifty milliseconds a ratio says nothing.
                        ratio = max(whole[0] - tiny, 0.05) / max(half[0] - tiny, 0.05)
                        if ratio <= 2.5:
                            break
                    worst = max(worst, ratio)
                    problem = whole[1] or half[1] or (f"{ratio:.1f} times as long" if ratio > 2.5 else "")
                    problems += bool(problem)
                    print(f"{kind}, {name}{' in a section' if number else ''}: {whole[0]:.2f} s, ratio {ratio:.2f}"
                          f"{', WRONG: ' + problem if problem else ''}", flush=True)
    print(f"worst ratio {worst:.2f}, {problems} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
