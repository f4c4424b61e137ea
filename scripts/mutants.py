#!/usr/bin/python3
"""Changes one constant or condition at a time and expects the test named for it in scripts/mutants.tsv to fail.

Works on copies of the tree in build/mutants. Exit code 1: a change survived or did not build, or its text is not found
once in its file."""
import argparse
import concurrent.futures
import os
import queue
import re
import resource
import shutil
import subprocess
import sys
import threading
import time
from typing import NamedTuple

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
TABLE = os.path.join(ROOT, "scripts", "mutants.tsv")
WORK = os.path.join(ROOT, "build", "mutants")
COPIED = ("CMakeLists.txt", "cmake", "include", "src", "tests", "examples", "scripts", "docs", "fuzz")
TEST_SECONDS = 60  # a change may make a test run for ever
CONFIGURE = ("-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -w",
             "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST")


class Mutant(NamedTuple):
    line: int
    subject: str
    rule: str
    file: str
    before: str
    after: str
    program: str
    test: str

    @property
    def name(self):
        return f"mutants.tsv:{self.line}: {self.rule}"


def unescaped(text):
    """A backslash and n stand for a line end, two backslashes for one."""
    return re.sub(r"\\(.)", lambda escape: "\n" if escape[1] == "n" else escape[1], text)


def read_table():
    mutants, subject = [], ""
    with open(TABLE, encoding="utf-8") as table:
        for number, line in enumerate(table, 1):
            line = line.rstrip("\n")
            if line.startswith("# "):
                subject = line[2:]
            elif line:
                fields = line.split("\t")
                if len(fields) != 6:
                    sys.exit(f"mutants.tsv:{number}: {len(fields)} columns, not 6")
                rule, file, before, after, program, test = fields
                mutants.append(Mutant(number, subject, rule, file, unescaped(before), unescaped(after), program, test))
    return mutants


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def tests_of(program):
    folder = os.path.join(ROOT, "tests", program.removeprefix("test_"))
    return "".join(read(os.path.join(folder, name)) for name in sorted(os.listdir(folder)) if name.endswith(".cpp"))


def complaints(mutants):
    """What does not fit: a text that is not there just once, a test that does not exist."""
    sources = {m.file: None for m in mutants}
    for file in sources:
        path = os.path.join(ROOT, file)
        sources[file] = read(path) if os.path.exists(path) else ""
    tests = {program: tests_of(program) for program in {m.program for m in mutants if m.program.startswith("test_")}}
    seen = set()
    for m in mutants:
        count = sources[m.file].count(m.before)
        if count != 1:
            yield f"{m.name}: the text before is {count} times in {m.file}, not once"
        if m.before == m.after or (m.file, m.before, m.after) in seen:
            yield f"{m.name}: no change, or that of another line"
        seen.add((m.file, m.before, m.after))
        if m.program in tests:
            suite, test = (part for part in m.test.split("/") if "." in part).__next__().split(".")
            if not re.search(rf"\(\s*{suite}\s*,\s*{test}\s*\)", tests[m.program]):
                yield f"{m.name}: no test {m.test} in tests/{m.program.removeprefix('test_')}"


def print_list(mutants):
    subject = None
    for m in mutants:
        if m.subject != subject:
            subject = m.subject
            print(f"\n{subject}")
        print(f"  {m.rule}\n      {m.file}: {m.program} {m.test}")
    print(f"\n{len(mutants)} changes")


class Copy:
    """A tree of its own with a build of its own."""

    def __init__(self, number, jobs):
        self.folder = os.path.join(WORK, str(number))
        self.tree, self.build = os.path.join(self.folder, "tree"), os.path.join(self.folder, "build")
        self.jobs = str(jobs)
        # Copies share what ccache holds: their paths are of one length and taken relative to the copy.
        self.environment = os.environ | {"CCACHE_BASEDIR": self.folder, "CCACHE_NOHASHDIR": "1",
                                         "PYTHONDONTWRITEBYTECODE": "1"}

    def run(self, *words, seconds=None):
        return subprocess.run(words, cwd=self.folder, env=self.environment, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, errors="replace", timeout=seconds, check=False)

    def refresh(self):
        """Makes the tree that of the project; files that did not change keep their times."""
        wanted = set()
        for top in COPIED:
            start = os.path.join(ROOT, top)
            names = [start] if os.path.isfile(start) else [
                os.path.join(folder, name) for folder, _, files in os.walk(start) for name in files]
            for source in names:
                target = os.path.join(self.tree, os.path.relpath(source, ROOT))
                wanted.add(target)
                os.makedirs(os.path.dirname(target), exist_ok=True)
                with open(source, "rb") as new:
                    same = os.path.exists(target) and open(target, "rb").read() == new.read()
                if not same:
                    shutil.copy(source, target)
        for folder, _, files in os.walk(self.tree):
            for name in files:
                if os.path.join(folder, name) not in wanted:
                    os.remove(os.path.join(folder, name))

    def make(self, programs):
        configured = self.run("cmake", "-S", self.tree, "-B", self.build, *CONFIGURE)
        built = self.run("ninja", "-C", self.build, "-j", self.jobs, *programs)
        if configured.returncode or built.returncode:
            sys.exit(configured.stdout[-2000:] + built.stdout[-4000:])

    def test(self, mutant):
        """True when the test passes; None when there is no such test."""
        if mutant.program.startswith("test_"):
            words = [os.path.join(self.build, "tests", mutant.program), "--gtest_filter=" + mutant.test]
        else:
            words = ["ctest", "--test-dir", self.build, "--no-tests=error", "-R", f"^{re.escape(mutant.test)}$"]
        try:
            done = self.run(*words, seconds=TEST_SECONDS)
        except subprocess.TimeoutExpired:
            return False
        return None if "Running 0 tests" in done.stdout else done.returncode == 0

    def judge(self, mutant):
        path = os.path.join(self.tree, mutant.file)
        text = read(path)
        try:
            with open(path, "w", encoding="utf-8") as file:
                file.write(text.replace(mutant.before, mutant.after))
            if self.run("ninja", "-C", self.build, "-j", self.jobs, mutant.program).returncode:
                return "does not build"
            return "SURVIVED" if self.test(mutant) else "killed"
        finally:
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)


def prepare(mutants, workers):
    programs = sorted({m.program for m in mutants})
    cores = os.cpu_count() or 1
    copies = [Copy(number, cores) for number in range(workers)]
    for copy in copies:
        copy.refresh()
    for copy in copies:
        copy.make(programs)
        copy.jobs = str(max(1, cores // workers))
    for m in {(m.program, m.test): m for m in mutants}.values():
        if not copies[0].test(m):
            sys.exit(f"{m.name}: {m.test} does not pass, or does not exist, in the unchanged tree")
    return copies


def judge_all(mutants, copies):
    """Files are handed out whole, so that a change compiles no other file anew; headers, which cost most, go first."""
    groups, results, stopped, started = queue.SimpleQueue(), {}, threading.Event(), time.monotonic()
    by_file = {}
    for m in mutants:
        by_file.setdefault(m.file, []).append(m)
    for group in sorted(by_file.values(), key=lambda group: (group[0].file.endswith(".h"), len(group)), reverse=True):
        groups.put(group)

    def work(copy):
        while not groups.empty():
            try:
                group = groups.get_nowait()
            except queue.Empty:
                return
            for m in group:
                if stopped.is_set():
                    return
                results[m] = copy.judge(m)
                print(f"{len(results):4}/{len(mutants)} {time.monotonic() - started:5.0f} s  {results[m]:14}  {m.name}",
                      flush=True)

    with concurrent.futures.ThreadPoolExecutor(len(copies)) as pool:
        try:
            for done in [pool.submit(work, copy) for copy in copies]:
                done.result()
        finally:
            stopped.set()
    return results


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--list", action="store_true",
                        help="print the rules and their tests; checks the table, builds nothing")
    parser.add_argument("--only", metavar="REGEX", default="",
                        help="only changes whose subject, rule, file or test it is found in")
    parser.add_argument("--workers", type=int, default=min(2, os.cpu_count() or 1), help="copies of the tree at work")
    options = parser.parse_args()

    table = read_table()
    wrong = list(complaints(table))
    mutants = [m for m in table if re.search(options.only, f"{m.subject}\n{m.rule}\n{m.file}\n{m.test}")]
    if options.list:
        print_list(mutants)
    for line in wrong:
        print(line, file=sys.stderr)
    if wrong or not mutants:
        return 1
    if options.list:
        return 0
    results = judge_all(mutants, prepare(mutants, max(1, min(options.workers, len({m.file for m in mutants})))))
    counts = {state: list(results.values()).count(state) for state in ("killed", "SURVIVED", "does not build")}
    spent = resource.getrusage(resource.RUSAGE_CHILDREN)
    print(", ".join(f"{count} {state}" for state, count in counts.items()) +
          f"; {(spent.ru_utime + spent.ru_stime) / 60:.0f} minutes of one core, building the copies included")
    for m, state in results.items():
        if state != "killed":
            print(f"{state}: {m.name} ({m.test})")
    return 0 if counts["killed"] == len(mutants) else 1


if __name__ == "__main__":
    sys.exit(main())
