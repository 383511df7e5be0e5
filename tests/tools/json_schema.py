"""Reads what the command writes with --json, and holds every line to its schema."""

import json
import os

import jsonschema

SCHEMA = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../tools/schema/wenlolib-1.json")


def closed(schema):
    """The schema without the freedom to add members: that one is for later versions."""
    if isinstance(schema, list):
        return [closed(part) for part in schema]
    if not isinstance(schema, dict):
        return schema
    parts = {name: closed(part) for name, part in schema.items()}
    if isinstance(parts.get("properties"), dict) and "type" in parts:
        parts["additionalProperties"] = False
    return parts


def validator(definition=None):
    with open(SCHEMA, encoding="utf-8") as file:
        schema = closed(json.load(file))
    jsonschema.Draft202012Validator.check_schema(schema)
    if definition is not None:
        del schema["oneOf"]
        schema["$ref"] = f"#/$defs/{definition}"
    return jsonschema.Draft202012Validator(schema)


ANY = validator()
TYPES = [part["$ref"].rpartition("/")[2] for part in ANY.schema["oneOf"]]
OF_TYPE = {name: validator(name) for name in TYPES}


def object_in(line):
    """The object on a line. Complaints name the member, since its type is known."""
    found = json.loads(line)
    OF_TYPE[found["type"]].validate(found)
    ANY.validate(found)
    return found


def objects_in(output):
    return [object_in(line) for line in output.splitlines()]
