"""Kills, fails and shortens every call with which a command touches a file, one after another.

Killed, a command leaves under every target's name the old or the complete new bytes, and nothing else but its
own temporary file (TARGET.PID-NUMBER.tmp) and the log of a transfer. Failing, it says so in one line and with its
exit code, leaves the old targets (the new ones where the fault came after the renaming) and nothing beside them;
or it does its work all the same. Interrupted calls and short writes are no failure at all.

They also run with files that may not grow beyond a limit and on disks that are too small for the target; the latter
needs the right to mount one.

Without options: a mold of five elements, and of errors that mean the same one. --long: every error, the example mold
too, there of more than three calls alike in a row only the first, one in the middle and the last (some ten
minutes of one processor). --kills 1000: so many kills at random times.
"""
import argparse
import concurrent.futures
import errno
import itertools
import os
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import inputs

SHIM = os.environ.get("ORVMESH_FAULT_SHIM", "build/release/tests/campaigns/libfault_shim.so")
LASTING = (errno.ENOSPC, errno.EDQUOT, errno.EIO)
TEMPORARY = re.compile(r"(.+)\.\d+-\d+\.tmp")


class Campaign:
    """One command in a folder of its own."""

    def __init__(self, name, example, thorough):
        self.name, self.example, self.thorough = name, example, thorough
        self.words, self.targets = inputs.COMMANDS[name]
        self.problems, self.runs = [], 0
        self.home = tempfile.TemporaryDirectory(dir=inputs.scratch_root())
        self.folder = os.path.realpath(self.home.name)
        (inputs.example_inputs if example else inputs.small_inputs)(self.folder)
        for target in self.targets:
            if not os.path.exists(os.path.join(self.folder, target)):
                inputs.put(self.folder, target, "the old bytes")
        self.before = inputs.contents(self.folder)
        self.calls = self.trace()
        self.after = inputs.contents(self.folder)

    def environment(self, **settings):
        return {**os.environ, "LD_PRELOAD": os.path.abspath(SHIM), "FAULT_FOLDER": self.folder,
                **{f"FAULT_{key.upper()}": str(value) for key, value in settings.items()}}

    def trace(self):
        """Of a run without faults: the name of every call, the errors it can give, its path."""
        with tempfile.NamedTemporaryFile("r") as file:
            done = inputs.orvmesh(self.words, self.folder, self.environment(trace=file.name))
            if done.returncode != 0:
                raise SystemExit(f"{self.name}: {done.stderr.decode()}")
            lines = [line.rstrip("\n").split(" ") for line in file]
        if not lines:
            raise SystemExit(f"{SHIM}: sees no call of {self.name}; was it built, does ORVMESH_FAULT_SHIM name it?")
        return [(words[0], [int(word) for word in words[1:] if word.isdigit()], words[-1]) for words in lines]

    def problem(self, what, fault):
        self.problems.append(f"{self.name}: {fault}: {what}")

    def check_files(self, fault, may_be_new, leftover):
        """The files after a run. leftover tells whether a name may be left over; the number of new targets."""
        now = inputs.contents(self.folder)
        for name in self.before.keys() | now.keys():
            if name in self.targets:
                if now.get(name) == self.after[name] != self.before[name] and not may_be_new:
                    self.problem(f"{name} is new already", fault)
                elif now.get(name) not in (self.before[name], self.after[name]):
                    self.problem(f"{name} is neither the old file nor the new one", fault)
            elif name in self.before:
                if now.get(name) != self.before[name]:
                    self.problem(f"{name} was changed", fault)
            elif not leftover(name):
                self.problem(f"{name} was left behind", fault)
        return all(now.get(name) == self.after[name] for name in self.targets)

    def check_outcome(self, fault, done, whole, must_work):
        errors = [line for line in done.stderr.decode().splitlines() if ": warning: " not in line]
        if done.returncode == 0:
            if not whole:
                self.problem("exit code 0 without the complete targets", fault)
            if errors:
                self.problem(f"exit code 0 and {errors}", fault)
        elif done.returncode != 1:
            self.problem(f"exit code {done.returncode}: {errors}", fault)
        elif len(errors) != 1 or not errors[0].startswith("orvmesh: "):
            self.problem(f"error lines {errors}", fault)
        elif must_work:
            self.problem(f"refused: {errors[0]}", fault)

    def run(self, mode, call, error=0):
        self.runs += 1
        fault = f"{mode} {errno.errorcode.get(error, '')} at call {call} ({' '.join(map(str, self.calls[call - 1]))})"
        done = inputs.orvmesh(self.words, self.folder, self.environment(mode=mode, call=call, errno=error))
        # A name can only stay where the call that removes it fails.
        stuck = [path for name, _, path in (self.calls[call - 1:] if mode == "from" else self.calls[call - 1:call])
                 if error == errno.EIO and name in ("unlink", "remove")]
        renamed = done.returncode == 0 or any(name == "rename" for name, *_ in self.calls[:call])
        if mode == "kill":
            if done.returncode != -signal.SIGKILL:
                self.problem(f"not killed: {done.returncode}", fault)
            self.check_files(fault, renamed, self.is_leftover)
        elif mode == "from" and error == errno.EIO:
            # Nothing can be removed any more.
            whole = self.check_files(fault, renamed, self.is_leftover)
            self.check_outcome(fault, done, whole, False)
        else:
            harmless = mode == "short" or error == errno.EINTR
            whole = self.check_files(fault, renamed or harmless, lambda name: name in map(os.path.basename, stuck))
            self.check_outcome(fault, done, whole, harmless)
        inputs.restore(self.folder, self.before)

    def is_leftover(self, name):
        temporary = TEMPORARY.fullmatch(name)
        return name == inputs.LOG or temporary is not None and temporary[1] in self.targets

    def chosen_calls(self):
        """Every call with its number; of many alike in a row in the example mold only three."""
        for _, alike in itertools.groupby(enumerate(self.calls, 1), key=lambda numbered: numbered[1]):
            alike = list(alike)
            yield from (alike[0], alike[len(alike) // 2], alike[-1]) if self.example and len(alike) > 3 else alike

    def every_call(self):
        inputs.restore(self.folder, self.before)
        for call, (_, errors, _) in self.chosen_calls():
            self.run("kill", call)
            self.run("short", call)
            if not self.thorough and errno.ENOSPC in errors:  # the others of its kind take the same way
                errors = [error for error in errors if error not in (errno.EIO, errno.EDQUOT)]
            for error in errors:
                self.run("once", call, error)
                if error in LASTING:
                    self.run("from", call, error)

    def every_size(self):
        """Files that may not grow beyond a limit, from none to the whole target."""
        largest = max(len(self.after[name]) for name in self.targets)
        for limit in range(0, largest, max(1, largest // (50 if self.thorough else 10))):
            self.runs += 1
            done = inputs.orvmesh(self.words, self.folder, preexec_fn=lambda size=limit: resource.setrlimit(
                resource.RLIMIT_FSIZE, (size, size)))
            whole = self.check_files(f"limit {limit}", True, lambda name: False)
            self.check_outcome(f"limit {limit}", done, whole, False)
            inputs.restore(self.folder, self.before)

    def every_room(self):
        """A disk with room for ever more blocks, until the targets fit; False where none can be mounted."""
        def mount(options):
            return subprocess.run(["mount", "-t", "tmpfs", "-o", options, "tmpfs", disk], stderr=subprocess.DEVNULL,
                                  check=False).returncode == 0
        block, wide, whole = 4096, "size=1g", False
        home, disk = self.folder, tempfile.mkdtemp()
        if not mount(wide):
            os.rmdir(disk)
            return False
        try:
            self.folder = disk
            inputs.restore(disk, self.before)
            for name in self.before:  # the time of a mesh file is the date of what is imported
                shutil.copystat(os.path.join(home, name), os.path.join(disk, name))
            status = os.statvfs(disk)
            used = (status.f_blocks - status.f_bfree) * status.f_frsize
            room = 8 * block + sum(len(self.after[name]) for name in self.targets)
            step = max(block, room // 20 // block * block)
            for free in range(0, room + step, step):
                self.runs += 1
                mount(f"remount,size={used + free}")
                done = inputs.orvmesh(self.words, disk)
                whole = self.check_files(f"{free} bytes of room", True, lambda name: False)
                self.check_outcome(f"{free} bytes of room", done, whole, free >= room)
                if free == 0 and done.returncode == 0:
                    self.problem("works without any room", "small disk")
                mount("remount," + wide)
                inputs.restore(disk, self.before)
        finally:
            self.folder = home
            subprocess.run(["umount", disk], check=True)
            os.rmdir(disk)
        return True

    def random_kills(self, count):
        inputs.restore(self.folder, self.before)
        began = time.monotonic()
        inputs.orvmesh(self.words, self.folder)
        usual = time.monotonic() - began
        inputs.restore(self.folder, self.before)
        for _ in range(count):
            self.runs += 1
            process = subprocess.Popen([inputs.ORVMESH, *self.words], cwd=self.folder, stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL)
            time.sleep(random.uniform(0, 1.2 * usual))
            process.kill()
            process.wait()
            self.check_files("killed at a random time", True, self.is_leftover)
            inputs.restore(self.folder, self.before)


def examine(job):
    name, example, long, kills = job
    mounted = True
    campaign = Campaign(name, example, long)
    if kills:
        campaign.random_kills(kills)
    else:
        campaign.every_call()
        campaign.every_size()
        mounted = campaign.every_room()
    title = name + (", example mold" if example else "")
    return title, len(campaign.calls), campaign.runs, campaign.problems, mounted


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("--long", action="store_true", help="every error, the example mold too")
    options.add_argument("--kills", type=int, default=0, metavar="N",
                         help="nothing but N kills at random times, on the example mold")
    options.add_argument("commands", nargs="*", default=list(inputs.COMMANDS), help="as the table names them")
    given = options.parse_args()
    each = -(-given.kills // len(given.commands))
    molds = (True,) if given.kills else (False, True) if given.long else (False,)
    jobs = [(name, example, given.long, each) for example in molds for name in given.commands]
    total, problems = 0, []
    with concurrent.futures.ProcessPoolExecutor() as pool:
        for name, calls, runs, found, mounted in pool.map(examine, jobs):
            print(f"{name}: {calls} calls, {runs} runs, {len(found)} problems"
                  + ("" if mounted else "; small disks not tried: no right to mount them"), flush=True)
            total += runs
            problems += found
    print("\n".join(problems[:200]))
    print(f"{total} runs, {len(problems)} problems")
    return 1 if problems or total == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
