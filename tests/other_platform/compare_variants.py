"""All six variants of the example mold, once over the embedded platform and once over that of examples/platform."""
import os
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "cli"))
from support import EXAMPLE, MOLD, VARIANTS, done, read  # noqa: E402


def main():
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        os.mkdir("other")
        done("import", "--quiet", "--roles", os.path.join(MOLD, "roles.json"), EXAMPLE, "source.ofe")
        done("dump", "source.ofe", "-o", "source.json")
        subprocess.run([os.environ["ORVMESH_DUMP"], "source.json", "other"], check=True)
        for variant in VARIANTS:
            done("transfer", variant, "source.ofe", f"{variant}.ofe")
            done("dump", f"{variant}.ofe", "-o", f"{variant}.json")
        for name in ("source", *VARIANTS):
            if read(f"{name}.json") != read(os.path.join("other", f"{name}.json")):
                sys.exit(f"{name}: the two platforms differ")


main()
