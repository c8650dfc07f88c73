"""The copy of the tree that the mutants are built in."""
import json
import os
import pathlib
import re
import subprocess
import sys

from mutation import choice, sites

HEADER = 'qn740_mutant.h'
PLACE = re.compile(r'(src/\w+/\w+\.cpp):(\d+):')


def write_if_new(path, data):
    """Leaves the time of a file that is the same already, so that it is not built again."""
    if not path.exists() or path.read_bytes() != data:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)


def listed_files(root):
    done = subprocess.run(['git', 'ls-files', '-z', '--cached', '--others', '--exclude-standard'],
                          cwd=root, stdout=subprocess.PIPE, check=True)
    return [name for name in done.stdout.decode().split('\0') if name]


class Tree:
    """A copy of the tree with the mutants in it, and its build."""

    def __init__(self, root, place, rooms):
        self.root, self.place, self.rooms = pathlib.Path(root), pathlib.Path(place), rooms
        self.build = self.place / 'build' / 'mutation'

    def copy(self, chosen):
        """Copies what has changed, the sources of the sites with the mutants."""
        by_file = {}
        for site in chosen:
            by_file.setdefault(site.file, []).append(site)
        wanted = {HEADER}
        for name in listed_files(self.root):
            source = self.root / name
            if not source.is_file():
                continue
            wanted.add(name)
            data = source.read_bytes()
            if name in by_file:
                data = sites.instrument(data.decode(), by_file[name]).encode()
            target = self.place / name
            write_if_new(target, data)
            if os.access(source, os.X_OK):
                target.chmod(0o755)
        write_if_new(self.place / 'src' / HEADER,
                     (pathlib.Path(__file__).parent / HEADER).read_bytes())
        self.remove_others(wanted | {'src/' + HEADER})

    def remove_others(self, wanted):
        for folder in ('src', 'sim', 'tools', 'tests'):
            for path in (self.place / folder).rglob('*'):
                if path.is_file() and path.relative_to(self.place).as_posix() not in wanted:
                    path.unlink()

    def configure(self, launcher):
        command = ['cmake', '-S', self.place, '-B', self.build, '-G', 'Ninja',
                   '-DCMAKE_BUILD_TYPE=Mutation', '-DCMAKE_CXX_FLAGS=-w -O1',
                   '-DQN740_WERROR=OFF', f'-DQN740_TEST_ROOMS={";".join(self.rooms)}']
        if launcher:
            command.append(f'-DCMAKE_CXX_COMPILER_LAUNCHER={launcher}')
        subprocess.run(command, stdout=subprocess.DEVNULL, check=True)

    def compile(self, targets, jobs):
        """Returns what the compiler wrote when it failed, or None."""
        done = subprocess.run(['cmake', '--build', self.build, f'-j{jobs}', '--target', *targets,
                               '--', '-k', '0', '--quiet'],
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        return None if done.returncode == 0 else done.stdout

    def compile_library(self, chosen, jobs):
        """Compiles the sources; returns the sites that compile. The others are taken out again."""
        left = list(chosen)
        while True:
            words = self.compile(['qn740'], jobs)
            if words is None:
                return left
            # Any line of the sources that a diagnostic names may have the mutant that is wrong; if
            # none of them has one, a statement that began some lines before.
            named = {(file, int(line)) for file, line in PLACE.findall(words)}
            wrong = []
            for lines in (0, 4):
                wrong = wrong or [site for site in left for file, line in named
                                  if site.file == file and line - lines <= site.line <= line]
            if not wrong:
                sys.exit(f'{words}\nmutate: the sources do not compile')
            left = [site for site in left if site not in wrong]
            self.copy(left)

    def tests(self):
        """Returns what ctest says of the tests of the rooms, by "room.class"."""
        done = subprocess.run(['ctest', '--show-only=json-v1'], cwd=self.build,
                              stdout=subprocess.PIPE, check=True)
        tests = {}
        for test in json.loads(done.stdout)['tests']:
            kind, _, name = test['name'].partition('.')
            room, _, program = name.partition('.')
            if kind == 'plain' and room in self.rooms and \
                    program in choice.PROGRAMS.get(room, [program]):
                tests[name] = test
        return tests

    def compile_tests(self, jobs):
        """Builds the test programs; returns each one's command, environment and folder."""
        words = self.compile([f'tst_{name.split(".")[1]}' for name in self.tests()], jobs)
        if words is not None:
            sys.exit(f'{words}\nmutate: the tests do not compile')
        programs = {}
        for name, test in self.tests().items():
            properties = {item['name']: item['value'] for item in test['properties']}
            variables = dict(item.split('=', 1) for item in properties.get('ENVIRONMENT', ()))
            programs[name] = (test['command'], variables,
                              properties.get('WORKING_DIRECTORY', str(self.build)))
        return programs
