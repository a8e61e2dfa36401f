# SPDX-License-Identifier: MIT
"""The types that the package declares: what they name is there, and what is there is named."""

import ast
import dataclasses
import inspect
import pathlib
import re
import unittest

import orvan_svg
from support import TestCase

# What every class has, or what type checkers know by themselves.
COMMON = set(dir(object)) | {"__dict__", "__weakref__", "__slots__", "__orig_bases__", "__annotations__", "__match_args__",
                             "__dataclass_fields__", "__dataclass_params__", "__bool__", "__getnewargs__"}


def read_stubs():
    """The members of each class by their names, those of the stub's own base classes included, and the names of the
    module."""
    tree = ast.parse(pathlib.Path(orvan_svg.__file__).with_name("__init__.pyi").read_text())
    classes, names = {}, set()
    for node in tree.body:
        if isinstance(node, ast.ClassDef):
            members = {}
            for base in node.bases:
                members |= classes.get(base.id, {}) if isinstance(base, ast.Name) and base.id.startswith("_") else {}
            for member in node.body:
                if isinstance(member, ast.AnnAssign):
                    members[member.target.id] = member
                elif isinstance(member, ast.FunctionDef):
                    members.setdefault(member.name, member)
            classes[node.name] = members
        elif isinstance(node, ast.AnnAssign):
            names.add(node.target.id)
        elif isinstance(node, ast.FunctionDef):
            names.add(node.name)
    classes = {name: members for name, members in classes.items() if not name.startswith("_")}
    return classes, names | set(classes)


def arguments_of(function):
    """Names of arguments with whether they can be left out, as a stub or the function says it."""
    if isinstance(function, ast.FunctionDef):
        given = function.args
        optional = len(given.args) - len(given.defaults)
        return ([(argument.arg, i >= optional) for i, argument in enumerate(given.args)] +
                [(argument.arg, default is not None) for argument, default in zip(given.kwonlyargs, given.kw_defaults)])
    try:
        return [(name, one.default is not inspect.Parameter.empty)
                for name, one in inspect.signature(function).parameters.items()
                if one.kind not in (one.VAR_KEYWORD, one.VAR_POSITIONAL)]
    except ValueError:
        # Compiled: the first line of the docstring is "name(self: X, a: Y = Z, *, b: W) -> V".
        line = function.__doc__.splitlines()[0]
        arguments = re.sub(r"\[[^\]]*\]|\([^()]*\)", "", line[line.index("(") + 1:line.rindex(") ->")]).split(",")
        return [(argument.split(":")[0].strip(), "=" in argument) for argument in arguments if argument.strip() != "*"]


class Stubs(TestCase):
    def test_name_what_is_there(self):
        classes, names = read_stubs()
        self.assertEqual({name for name in names if not name.startswith("_")} | {"__version__"},
                         set(orvan_svg.__all__) | {"__version__"})
        for name, members in classes.items():
            there = getattr(orvan_svg, name)
            is_record = dataclasses.is_dataclass(there) or issubclass(there, tuple)
            own = {member for base in there.__mro__[:-1] for member in vars(base)
                   if base.__module__.startswith("orvan_svg") and not issubclass(base, Exception) or base is there}
            inherited = {member for base in there.__mro__[1:] if base.__name__ in classes for member in classes[base.__name__]}
            shown = {member for member in own if (not member.startswith("_") or member in members) and member not in COMMON}
            if is_record:
                shown |= {field for field in getattr(there, "__annotations__", {})}
                shown -= {"count"} if name != "Hit" else {"count", "index"}
            missing = shown - set(members) - inherited - ({"index"} if is_record else set())
            self.assertFalse(missing, f"{name}: not declared")
            for member in members:
                self.assertTrue(hasattr(there, member) or member in getattr(there, "__annotations__", {}) or
                                issubclass(there, Exception), f"{name}.{member}: declared, but not there")

    def test_name_arguments_as_they_are(self):
        classes, _ = read_stubs()
        compared = 0
        for name, members in classes.items():
            for member, declared in members.items():
                if not isinstance(declared, ast.FunctionDef) or declared.decorator_list or member.startswith("__"):
                    continue
                there = inspect.getattr_static(getattr(orvan_svg, name), member)
                self.assertEqual(arguments_of(declared), arguments_of(there), f"{name}.{member}")
                compared += 1
        self.assertGreater(compared, 40)

    def test_everything_explains_itself(self):
        for name in orvan_svg.__all__:
            there = getattr(orvan_svg, name)
            if not callable(there):
                continue
            self.assertTrue(there.__doc__, name)
            for member, value in vars(there).items() if isinstance(there, type) else ():
                if not member.startswith("_") and not isinstance(value, (type(None), staticmethod)) and \
                        not issubclass(there, tuple) and not dataclasses.is_dataclass(there):
                    self.assertTrue(getattr(value, "__doc__", None), f"{name}.{member}")
                    self.assertNotIn("orvan::", value.__doc__, f"{name}.{member}: a class of C++")


if __name__ == "__main__":
    unittest.main()
