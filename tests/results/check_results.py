"""check_results.py SCHEMA FOLDER [BRANCH...]: the results in the folder's files are as the schema says.

Each line of a file is a result that a test met. Fails, too, when there is none, when a branch of
the schema was never met that is not named, and when the schema takes what no command prints: a
result with a key too many, with one too few, or with a value of another kind.
"""

import json
import sys
from pathlib import Path

import jsonschema
from jsonschema import Draft202012Validator as Validator

MAY_BE_ABSENT = {("choose-folder-events", "choosePoint")}


def branches_of(schema):
    """A validator for each branch, by its name."""
    names = [branch["$ref"].rsplit("/", 1)[1] for branch in schema["oneOf"]]
    definitions = {"$defs": schema["$defs"]}
    return {name: Validator({"$ref": f"#/$defs/{name}", **definitions}) for name in names}


def mutants_of(name, result):
    yield "a key too many", {**result, "another": 1}
    for key, value in result.items():
        if (name, key) not in MAY_BE_ABSENT:
            yield f"no {key}", {k: v for k, v in result.items() if k != key}
        yield f"{key} of another kind", {**result, key: None}
        if isinstance(value, dict):
            yield f"{key} with a key too many", {**result, key: {**value, "another": 1}}


def mistakes_in(file, schema, branches, met):
    for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
        result = json.loads(line)
        errors = list(schema.iter_errors(result))
        if errors:
            best = jsonschema.exceptions.best_match(errors)
            yield f"{file}:{number}: {best.message} at {best.json_path} of {line[:300]}"
            continue
        name = next(name for name, branch in branches.items() if branch.is_valid(result))
        met.setdefault(name, result)


def main(schema_file, folder, *not_expected):
    document = json.loads(Path(schema_file).read_text(encoding="utf-8"))
    Validator.check_schema(document)
    schema = Validator(document)
    branches = branches_of(document)
    met = {}
    mistakes = []
    files = sorted(Path(folder).glob("*.jsonl"))
    for file in files:
        mistakes += mistakes_in(file, schema, branches, met)
    mistakes += [f"no test met {name}" for name in branches if name not in {*met, *not_expected}]
    for name, result in met.items():
        for mutation, mutant in mutants_of(name, result):
            if schema.is_valid(mutant):
                mistakes.append(f"the schema takes {name} with {mutation}")
    lines = sum(len(file.read_text(encoding="utf-8").splitlines()) for file in files)
    print(*mistakes, f"{lines} results in {len(files)} files, {len(met)} branches", sep="\n")
    return 1 if mistakes or not lines else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
