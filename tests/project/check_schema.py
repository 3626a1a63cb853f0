"""Holds project files against the schema of docs/formats: check_schema.py SCHEMA KIGUMI FOLDER SAMPLE...

Besides the samples, files that the program makes in FOLDER: a generated frame, one with supports and loads, and a sketch.
"""
import json
import os
import subprocess
import sys

import jsonschema

schema_file, kigumi, folder, *samples = sys.argv[1:]
os.makedirs(folder, exist_ok=True)
roles = ["--fix", "bottom", "--load", "top:1,-2.5,-200.1"]
for arguments in (
    ["generate", "NX=3", "NY=2", "SumiType=2", "-o", "a.kigumi"],
    ["convert", "a.kigumi", "-o", "b.kigumi", *roles],
    ["convert", "a.kigumi", "-o", "c.tgk"],
    ["convert", "c.tgk", "-o", "c.kigumi"],
):
    subprocess.run([kigumi, *arguments], cwd=folder, check=True, stdout=subprocess.DEVNULL)
with open(schema_file, encoding="utf-8") as file:
    schema = json.load(file)
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
for name in [*samples, *(os.path.join(folder, each) for each in ("a.kigumi", "b.kigumi", "c.kigumi"))]:
    with open(name, encoding="utf-8") as file:
        project = json.load(file)
    validator.validate(project)
    project["nodes"][0][1] = "0"
    assert not validator.is_valid(project), name
