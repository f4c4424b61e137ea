"""What the tests of the command share."""
import os
import subprocess
import sys

ORVMESH = os.environ["ORVMESH"]
SOURCE = os.environ["ORVMESH_SOURCE"]
EXAMPLE = os.path.join(SOURCE, "examples", "mold", "mold.msh")
VARIANTS = ("channels", "hot-runner", "stream-line", "moldbase", "part-inserts", "part-inserts-channels")
sys.path.append(os.path.join(SOURCE, "scripts"))


def orvmesh(*words, **options):
    """The finished process, both outputs as text."""
    return subprocess.run([ORVMESH, *words], capture_output=True, text=True, timeout=120, **options)


def done(*words):
    """Standard output of a call that must succeed."""
    process = orvmesh(*words)
    if process.returncode != 0:
        sys.exit(f"orvmesh {' '.join(words)}: exit code {process.returncode}\n{process.stdout}{process.stderr}")
    return process.stdout
