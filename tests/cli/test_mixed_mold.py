"""A mold of hexahedra, wedges, pyramids and tetrahedra: exact volumes in, all six variants entry by entry out."""
import os
import subprocess
import sys
import tempfile

ORVMESH, SOURCE = os.environ["ORVMESH"], os.environ["ORVMESH_SOURCE"]


def run(*words):
    done = subprocess.run(words, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode != 0:
        sys.exit(f"{' '.join(words)}: exit code {done.returncode}\n{done.stdout}")
    return done.stdout


with tempfile.TemporaryDirectory() as folder:
    for factor in ("1", "2"):
        mesh = os.path.join(folder, f"mixed{factor}.msh")
        print(run("/usr/bin/python3", f"{SOURCE}/examples/mold/make_mixed.py", mesh, "--refine", factor))
        print(run("/usr/bin/python3", f"{SOURCE}/scripts/demo_summary.py", ORVMESH, mesh, f"{folder}/out{factor}"))
