"""Every public name is documented, its arrays with their shapes, and the stub has the names of the module."""
import ast
import inspect
import os
import unittest

import orvmesh
from orvmesh import _orvmesh

from support import SOURCE


def documented():
    for name in filter(lambda name: callable(getattr(orvmesh, name)), orvmesh.__all__):
        thing = getattr(orvmesh, name)
        yield name, thing
        for member, value in vars(thing).items() if inspect.isclass(thing) else ():
            if not member.startswith("_") and (isinstance(value, (property, classmethod)) or inspect.isfunction(value)):
                yield f"{name}.{member}", value


class Documentation(unittest.TestCase):
    def test_every_public_name(self):
        for name, thing in documented():
            text = inspect.getdoc(thing) or ""
            self.assertGreaterEqual(len(text.split()), 3, name)
            self.assertIn(".", text, name)
            annotations = str(getattr(thing, "__annotations__", {}))
            if "ndarray" in annotations and inspect.isfunction(thing):
                self.assertRegex(text, r"\([\w\s+]+,[^()]*\)", f"{name}: no shape")

    def test_compiled_half(self):
        with open(os.path.join(SOURCE, "python", "orvmesh", "_orvmesh.pyi")) as file:
            stub = ast.parse(file.read()).body
        functions = {node.name: [a.arg for a in node.args.args] for node in stub if isinstance(node, ast.FunctionDef)}
        others = {node.name for node in stub if isinstance(node, ast.ClassDef)}
        others |= {node.target.id for node in stub if isinstance(node, ast.AnnAssign)}
        there = {name for name in vars(_orvmesh) if not name.startswith("_")}
        self.assertEqual(set(functions) | others, there)
        for name, arguments in functions.items():
            signature = getattr(_orvmesh, name).__doc__.splitlines()[0]
            self.assertEqual(signature[len(name) + 1:].rpartition(") -> ")[0].count(": "), len(arguments), signature)
            for argument in arguments:
                self.assertIn(f"{argument}: ", signature)
            self.assertGreater(len(getattr(_orvmesh, name).__doc__.split("\n", 2)[2].split()), 4, name)

    def test_all_is_all(self):
        public = {name for name, value in vars(orvmesh).items()
                  if not name.startswith("_") and not inspect.ismodule(value)}
        self.assertEqual(public, set(orvmesh.__all__))


if __name__ == "__main__":
    unittest.main()
