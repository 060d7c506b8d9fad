#!/usr/bin/env python3
"""Holds manifests against their JSON Schema, and the schema against the program.

usage: manifest_schema_test.py QUIVER SCHEMA

QUIVER is the built program, SCHEMA is docs/manifest.schema.json. What the program records fits the
schema, and both take and refuse the same documents, but for what a schema cannot say. Ends with
status 77, for "skipped", when Python has no jsonschema.
"""

import json
import os
import subprocess
import sys
import tempfile
import unittest

try:
    import jsonschema
except ImportError:
    jsonschema = None

SKIPPED = 77
SYSTEM_PYTHON = "/usr/bin/python3"  # has what the system's packages bring
MD5 = "22af645d1859cb5ca6da0c484f1f37ea"


def module(**members):
    return {"modules": [{"path": "/a", **members}]}


GOOD = {
    "nothing": {"modules": []},
    "least": module(),
    "everything": {
        "version": 1, "operating_system": "windows", "note": None,
        "modules": [{"path": "C:\\ci\\app.exe", "md5": MD5.upper(), "size": 2**63 - 1, "time": -2**63,
                     "symbol_file": {"path": "app.pdb", "md5": MD5},
                     "sources": [{"path": "\u00e4.c", "size": 0, "time": 2**63 - 1, "colour": [1]}]}]},
    "other system": {"operating_system": "other", "modules": []},
    "long path": {"modules": [{"path": "a" * 32767}]},
}

BAD = {
    "no object": [],
    "no modules": {},
    "modules of another type": {"modules": {}},
    "module of another type": {"modules": ["/a"]},
    "other version": {"version": 2, "modules": []},
    "version of another type": {"version": "1", "modules": []},
    "other system": {"operating_system": "dos", "modules": []},
    "no path": {"modules": [{}]},
    "empty path": {"modules": [{"path": ""}]},
    "path of another type": {"modules": [{"path": 1}]},
    "path with NUL": {"modules": [{"path": "a\0b"}]},
    "path with NUL behind a line": {"modules": [{"path": "a\nb\0"}]},
    "long path": {"modules": [{"path": "a" * 32768}]},
    "short md5": module(md5=MD5[1:]),
    "long md5": module(md5=MD5 + "0"),
    "md5 with a line feed": module(md5=MD5 + "\n"),
    "md5 of other digits": module(md5="g" + MD5[1:]),
    "md5 of nothing": module(md5=None),
    "size below nothing": module(size=-1),
    "size beyond everything": module(size=2**63),
    "size with a fraction": module(size=1.5),
    "size as text": module(size="1"),
    "size as truth": module(size=True),
    "time beyond everything": module(time=2**63),
    "time before everything": module(time=-2**63 - 1),
    "symbol file of another type": module(symbol_file="/b"),
    "symbol file without path": module(symbol_file={"md5": MD5}),
    "sources of another type": module(sources={}),
    "source of another type": module(sources=["/b"]),
    "source without path": module(sources=[{"path": "/b"}, {}]),
    "source with a bad md5": module(sources=[{"path": "/b", "md5": ""}]),
}


class Schema(unittest.TestCase):
    quiver = None
    schema = None

    @classmethod
    def setUpClass(cls):
        with open(cls.schema, encoding="utf-8") as file:
            schema = json.load(file)
        cls.validator_class = jsonschema.validators.validator_for(schema, default=None)
        cls.validator_class.check_schema(schema)
        cls.validator = cls.validator_class(schema)
        cls.folder = tempfile.TemporaryDirectory()

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def run_quiver(self, *arguments):
        return subprocess.run([self.quiver, *arguments], capture_output=True, text=True, check=False)

    def is_taken(self, document):
        with open(self.path("m.json"), "w", encoding="utf-8") as file:
            json.dump(document, file)
        run = self.run_quiver("resolve", self.path("m.json"), "--no-servers")
        self.assertIn(run.returncode, (0, 1, 2), run.stderr)
        return run.returncode != 2

    def test_is_of_a_known_draft(self):
        self.assertIs(self.validator_class, jsonschema.Draft202012Validator)

    def test_fits_what_is_recorded(self):
        source = self.path("a.c")
        with open(source, "w", encoding="utf-8") as file:
            file.write("int main(void) { return 0; }\n")
        for flags in (["-g"], ["-s"]):
            subprocess.run(["cc", *flags, source, "-o", self.path("app")], check=True)
            run = self.run_quiver("record", self.path("app"), self.quiver, "-o", self.path("r.json"))
            self.assertEqual(run.returncode, 0, run.stderr)
            with open(self.path("r.json"), encoding="utf-8") as file:
                document = json.load(file)
            self.assertEqual(len(document["modules"]), 2)
            self.validator.validate(document)

    def test_takes_what_the_program_takes(self):
        for name, document in GOOD.items():
            with self.subTest(name):
                self.assertEqual([error.message for error in self.validator.iter_errors(document)], [])
                self.assertTrue(self.is_taken(document))

    def test_refuses_what_the_program_refuses(self):
        for name, document in BAD.items():
            with self.subTest(name):
                self.assertFalse(self.validator.is_valid(document))
                self.assertFalse(self.is_taken(document))


def has_another_python():
    return os.path.exists(SYSTEM_PYTHON) and not os.path.samefile(sys.executable, SYSTEM_PYTHON)


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    Schema.quiver, Schema.schema = sys.argv[1:]
    if jsonschema is None and has_another_python():
        os.execv(SYSTEM_PYTHON, [SYSTEM_PYTHON, *sys.argv])
    if jsonschema is None:
        print("SKIPPED: Python has no jsonschema; no manifest was held against the schema")
        return SKIPPED
    result = unittest.main(argv=sys.argv[:1], exit=False).result
    return 0 if result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
