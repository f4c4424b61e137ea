"""Every command that writes, in other surroundings: the bytes of its targets must not change.

A locale with decimal commas, names that are no ASCII, paths of some 3,000 characters, the same run again, and the command
of another build (ORVMESH_OTHER). Targets that cannot be written (a missing folder, a path below a file, a folder in the
target's place, a read-only file system where this user may mount one) are refused in one line and change nothing.
"""
import os
import shutil
import subprocess
import sys
import tempfile

import inputs

OTHER = os.environ.get("ORVMESH_OTHER")


class Checks:
    def __init__(self):
        self.count, self.problems = 0, []

    def check(self, good, what):
        self.count += 1
        if not good:
            self.problems.append(what)
            print("WRONG:", what, flush=True)


def comma_locale(folder):
    """An environment whose numbers have decimal commas; None where no such locale can be made."""
    made = subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", os.path.join(folder, "de_DE.UTF-8")],
                          capture_output=True, check=False)
    environment = {**os.environ, "LOCPATH": folder, "LC_ALL": "de_DE.UTF-8", "LANG": "de_DE.UTF-8"}
    seen = subprocess.run(["locale", "decimal_point"], capture_output=True, check=False, env=environment).stdout
    return environment if made.returncode in (0, 1) and seen.strip() == b"," else None


def results(words, targets, folder, env=None, program=None):
    """Bytes of the targets of a run in a folder that then is as before."""
    before = inputs.contents(folder)
    done = subprocess.run([program or inputs.ORVMESH, *words], cwd=folder, env=env, stdin=subprocess.DEVNULL,
                          capture_output=True, check=False, timeout=300)
    now = inputs.contents(folder)
    inputs.restore(folder, before)
    return (done.returncode, {name: now.get(name) for name in targets}, sorted(now), done.stderr.decode())


def same_bytes(checks, name, folder, comma):
    words, targets = inputs.COMMANDS[name]
    usual = results(words, targets, folder)
    checks.check(usual[0] == 0 and None not in usual[1].values(), f"{name}: {usual[3]}")
    checks.check(results(words, targets, folder) == usual, f"{name}: another result the second time")
    if comma:
        checks.check(results(words, targets, folder, env=comma) == usual, f"{name}: another result with commas")
    if OTHER:
        checks.check(results(words, targets, folder, program=OTHER) == usual, f"{name}: another result of {OTHER}")
    return usual


def under_other_names(checks, name, folder, top, usual):
    """The folder under a name, the paths given from outside of it."""
    words, targets = inputs.COMMANDS[name]
    files = set(os.listdir(folder)) | set(targets)
    if name == "export":
        files.add("out.vtu")
    for what, parts in (("not ASCII", ["H\u00f6he \u6e29\u5ea6 '\" \U0001f642"]), ("long", ["n" * 240] * 12)):
        place = os.path.join(top, *parts)
        shutil.copytree(folder, place)
        with_paths = [os.path.join(place, word) if word in files else word for word in words]
        done = inputs.orvmesh(with_paths, top)
        now = inputs.contents(place)
        wanted = {target: usual[1][target] for target in targets}
        same = {target: now.get(target) for target in targets} == wanted
        checks.check(done.returncode == 0 and same,
                     f"{name}: {what} path of {len(place)}: exit code {done.returncode} {done.stderr.decode()[:300]}")
        shutil.rmtree(os.path.join(top, parts[0]))


def refuse(checks, name, folder, place, why):
    """The command with its targets in a place where none can be."""
    words, targets = inputs.COMMANDS[name]
    outputs = [word for word in words if word in targets and word not in inputs.contents(folder)]
    if not outputs:
        return
    before = inputs.contents(folder)
    for bad in outputs:
        done = inputs.orvmesh([os.path.join(place, word) if word == bad else word for word in words], folder)
        lines = [line for line in done.stderr.decode().splitlines() if ": warning: " not in line]
        checks.check(done.returncode == 1 and len(lines) == 1 and lines[0].startswith("orvmesh: "),
                     f"{name}: {why}: exit code {done.returncode} {lines}")
        now = inputs.contents(folder)
        # Of two targets the first one may stand when the second cannot.
        extra = {key for key in now.keys() | before.keys() if now.get(key) != before.get(key)} - set(targets)
        checks.check(not extra, f"{name}: {why}: changed {extra}")
        inputs.restore(folder, before)


def read_only_folder(top):
    """A folder that takes no file, from root neither; None where such a one cannot be mounted."""
    place = os.path.join(top, "read-only")
    os.mkdir(place)
    done = subprocess.run(["mount", "-t", "tmpfs", "-o", "ro", "none", place], capture_output=True, check=False)
    return place if done.returncode == 0 else None


def main():
    checks = Checks()
    with tempfile.TemporaryDirectory(dir=inputs.scratch_root()) as top:
        folder, locales = os.path.join(top, "inputs"), os.path.join(top, "locales")
        os.mkdir(folder)
        os.mkdir(locales)
        inputs.small_inputs(folder)
        comma, read_only = comma_locale(locales), read_only_folder(top)
        print(f"comma locale: {'made' if comma else 'cannot be made'}; read-only file system: "
              f"{'mounted' if read_only else 'cannot be mounted'}; other build: {OTHER or 'none given'}")
        places = {"a missing folder": os.path.join(top, "missing"), "below a file": os.path.join(folder, "mold.json"),
                  "folders in their places": os.path.join(top, "taken")}
        for _, targets in inputs.COMMANDS.values():
            for target in targets:
                os.makedirs(os.path.join(top, "taken", target), exist_ok=True)
        if read_only:
            places["a read-only folder"] = read_only
        try:
            for name in inputs.COMMANDS:
                usual = same_bytes(checks, name, folder, comma)
                under_other_names(checks, name, folder, top, usual)
                for why, place in places.items():
                    refuse(checks, name, folder, place, why)
        finally:
            if read_only:
                subprocess.run(["umount", read_only], check=False)
    print(f"{checks.count} checks, {len(checks.problems)} problems")
    return 1 if checks.problems else 0


if __name__ == "__main__":
    sys.exit(main())
