"""A mold of hexahedra, wedges, pyramids and tetrahedra: exact volumes in, all six variants entry by entry out."""
import os
import subprocess
import tempfile

from support import ORVMESH, SOURCE


def run(*words):
    subprocess.run(words, check=True)


with tempfile.TemporaryDirectory() as folder:
    for factor in ("1", "2"):
        mesh = os.path.join(folder, f"mixed{factor}.msh")
        run("/usr/bin/python3", f"{SOURCE}/examples/mold/make_mixed.py", mesh, "--refine", factor)
        run("/usr/bin/python3", f"{SOURCE}/scripts/demo_summary.py", ORVMESH, mesh, f"{folder}/out{factor}")
