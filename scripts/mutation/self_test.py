"""Checks the finder of mutants, and that the list of equivalent mutants fits the sources."""
import os
import pathlib
import subprocess
import tempfile

from mutation import choice, sites

HERE = pathlib.Path(__file__).parent
SAMPLE_OUTPUT = ('51 10 60 a! b? <b> && "x < y"\n'
                 '00 01 01 11 1006 106 58 0.25 1.25 4 ')
# Text in a function body, and the kinds of mutants that are found there.
FOUND = [
    ('a < b;', ['< to <=', '< to >=']),
    ('QList<int> a;', []),
    ('const QString& a = b;', []),
    ('auto* a = b & c;', []),
    ('int* a;', []),
    ('x = a * b;', ['assignment left out', '* to /']),
    ('x = -a;', ['assignment left out']),
    ('return -a;', []),
    ('return a - 2;', ['- to +', 'constant 2']),
    ('a >> b; c << d;', []),
    ('QString a = "x < 1 && !y"; // b < 2', []),
    ('const char a = \'<\';', []),
    ('R"(a < b)"_s;', []),
    ('call();', ['call left out']),
    ('a->b().c();', ['call left out']),
    ('emit a::b(c);', ['call left out']),
    ('Type a(b);', []),
    ('qCWarning(log) << a;', []),
    ('wire::logIgnored(a, b);', []),
    ('if (a) {}', ['condition negated']),
    ('if (auto* a = b) {}', []),
    ('if (int a = b; a) {}', []),
    ('while (!a) {}', ['! left out']),
    ('a = b && c(d, e) || f;', ['assignment left out', '&& without its right side',
                                '|| without its right side']),
    ('if (a) { return; }', ['condition negated', 'return left out']),
    ('return true;', ['constant true']),
    ('switch (a) { case 3: b(); break; }', []),
    ('static const int a[] = {3};', ['constant 3']),
    ('static constexpr int a[] = {3};', []),
    ('constexpr int a = 3 + b;', []),
    ('a = qMin(b, c);', ['assignment left out', 'smaller and larger exchanged']),
    ('for (int i = 0; i < n; i += 2) {}', ['constant 0', '< to <=', '< to >=', 'constant 2']),
    ('x += Bound;', ['assignment left out', 'constant Bound']),
    ('x += Other::Bound;', ['assignment left out']),
]
HEAD = 'constexpr int Bound = 7;\nvoid f()\n{\n'


def check_finder():
    faults = []
    for text, expected in FOUND:
        found = [site.kind for site in sites.find('src/x/x.cpp', f'{HEAD}{text}\n}}\n')]
        if found != expected:
            faults.append(f'{text}: found {found}, expected {expected}')
    return faults


def check_sample():
    """Every mutant of the sample compiles, changes what it prints, and is noted as reached."""
    text = (HERE / 'sample.cpp').read_text()
    found = sites.find('src/x/sample.cpp', text)
    faults = []
    # The other fault of the same operator is tried in a second build.
    builds = [{}, {}]
    for site in found:
        builds[site.start in builds[0]][site.start] = site
    with tempfile.TemporaryDirectory() as place:
        for number, build in enumerate(builds):
            chosen = list(build.values())
            for index, site in enumerate(chosen, 1):
                site.id = index
            source = pathlib.Path(place, f'sample{number}.cpp')
            program = source.with_suffix('')
            source.write_text(sites.instrument(text, chosen))
            subprocess.run(['g++', '-std=c++17', '-w', '-O0', '-I', HERE, source, '-o', program],
                           check=True)
            reached = pathlib.Path(place, 'reached')
            reached.write_bytes(bytes(len(chosen) + 1))
            if output(program, 0, reached) != SAMPLE_OUTPUT:
                faults.append(f'without a mutant: {output(program, 0, reached)!r}')
            hits = reached.read_bytes()
            for site in chosen:
                if output(program, site.id, reached) == SAMPLE_OUTPUT:
                    faults.append(f'the output is the same with {site.place} {site.kind}')
                if not hits[site.id]:
                    faults.append(f'not noted as reached: {site.place} {site.kind}')
    return len(found), faults


def output(program, mutant, reached):
    variables = {**os.environ, 'QN740_MUTANT': str(mutant), 'QN740_MUTANT_REACHED': str(reached)}
    try:
        return subprocess.run([program], env=variables, stdout=subprocess.PIPE, timeout=10,
                              text=True).stdout
    except subprocess.TimeoutExpired:
        return 'hangs'


def check_choice(root):
    found = choice.all_sites(root)
    faults = []
    keys = [site.key for site in found]
    if len(set(keys)) != len(keys):
        faults.append('two mutants have the same key')
    first = [site.key for site in choice.choose(found, 60, 1, list(choice.LOGIC))]
    if first != [site.key for site in choice.choose(choice.all_sites(root), 60, 1,
                                                    list(choice.LOGIC))]:
        faults.append('the same seed chooses other mutants')
    if first == [site.key for site in choice.choose(found, 60, 2, list(choice.LOGIC))]:
        faults.append('another seed chooses the same mutants')
    return set(keys), faults


def check_equivalent(path, keys):
    faults = []
    for key, reason in choice.read_equivalent(path).items():
        if key not in keys:
            faults.append(f'{path.name}: not in the sources (any more): {key}')
        if not reason:
            faults.append(f'{path.name}: no reason above {key}')
    return faults


def main(root, equivalent):
    faults = check_finder()
    count, wrong = check_sample()
    faults += wrong
    keys, wrong = check_choice(root)
    faults += wrong + check_equivalent(equivalent, keys)
    print('\n'.join(faults) or f'mutate: {len(FOUND)} texts, {count} mutants of the sample and '
          f'{len(choice.read_equivalent(equivalent))} equivalent mutants are right')
    return 1 if faults else 0
