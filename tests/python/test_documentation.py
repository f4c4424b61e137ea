"""Every public name is documented, its arrays with their shapes, and the stub has the names of the module."""
import ast
import inspect
import os
import unittest

import orvmesh
from orvmesh import _orvmesh

from support import SOURCE


def own_members(thing):
    for name, member in vars(thing).items():
        if name.startswith("_") and name != "__init__" or name == "__init__" and "__init__" not in vars(thing):
            continue
        if isinstance(member, property):
            yield name, member.fget
        elif inspect.isfunction(member) or isinstance(member, (classmethod, staticmethod)):
            yield name, getattr(member, "__func__", member)


def documented():
    for name in orvmesh.__all__:
        thing = getattr(orvmesh, name)
        if not inspect.isclass(thing) and not callable(thing):
            continue
        yield name, thing
        if inspect.isclass(thing):
            for member, function in own_members(thing):
                if not (member == "__init__" and issubclass(thing, tuple)):
                    yield f"{name}.{member}", function


class Documentation(unittest.TestCase):
    def test_every_public_name(self):
        for name, thing in documented():
            text = inspect.getdoc(thing) or ""
            self.assertGreaterEqual(len(text.split()), 3, name)
            self.assertIn(".", text, name)
            annotations = str(getattr(thing, "__annotations__", {}))
            if "ndarray" in annotations and inspect.isfunction(thing):
                self.assertRegex(text, r"\([\w\s+]+,[^()]*\)", f"{name}: no shape")

    def test_every_field_and_error(self):
        for name in orvmesh.__all__:
            thing = getattr(orvmesh, name)
            for field in getattr(thing, "_fields", ()):
                self.assertRegex(thing.__doc__.lower().replace("_", " "), field.replace("_", " ").rstrip("s"),
                                 f"{name}.{field}")
            if inspect.isclass(thing) and "ndarray" in str(thing.__annotations__ if "_fields" in vars(thing) else ""):
                self.assertRegex(thing.__doc__, r"\([\w\s+]+,[^()]*\)", f"{name}: no shape")
            if inspect.isfunction(thing) and name not in ("to_meshio",):
                self.assertRegex(thing.__doc__, r"(Error|ImportError)", name)

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
