"""validate.py SCHEMA FOLDER: validates good*.json and bad*.json of a folder against a JSON Schema."""
import json
import pathlib
import sys

import jsonschema

with open(sys.argv[1], encoding='utf-8') as file:
    schema = json.load(file)
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
counts = {'good': 0, 'bad': 0}
for path in sorted(pathlib.Path(sys.argv[2]).glob('*.json')):
    is_valid = validator.is_valid(json.loads(path.read_text(encoding='utf-8')))
    if is_valid != path.name.startswith('good'):
        sys.exit(f'{path.name}: {"valid" if is_valid else "not valid"}: {path.read_text()[:2000]}')
    counts['good' if is_valid else 'bad'] += 1
print(f'{counts["good"]} good, {counts["bad"]} bad')
