"""Runs test programs with a mutant switched on, and says which of them noticed it."""
import concurrent.futures
import os
import pathlib
import queue
import re
import selectors
import signal
import subprocess
import tempfile
import threading
import time

FAILED = re.compile(rb'^(?:FAIL!  |XPASS  ): \w+::(\w+)', re.MULTILINE)
EXTRA_S, LIMIT_FACTOR = 15, 3  # a program may take this much longer with a mutant


class Outcome:
    """How a run of a test program ended: 'passed', or 'failed', 'crashed', 'hung', all noticed."""

    def __init__(self, word, function=None, seconds=0.0):
        self.word, self.function, self.seconds = word, function, seconds


class Runner:
    """Runs test programs, each worker with a home directory of its own."""

    def __init__(self, programs, jobs, everywhere):
        self.programs, self.jobs, self.everywhere = programs, jobs, everywhere
        self.seconds = {}  # program: how long it takes
        self.reached = {}  # program: numbers of the sites that it reaches
        self.homes = queue.Queue()
        self.lock = threading.Lock()
        self.place = tempfile.TemporaryDirectory(prefix='qn740-mutate-')
        for number in range(jobs):
            home = pathlib.Path(self.place.name, f'home{number}')
            home.mkdir(mode=0o700)
            self.homes.put(str(home))

    def run(self, name, variables, limit, arguments=()):
        """Runs a program until it ends, says that a check failed, or exceeds the limit (seconds)."""
        command, own, folder = self.programs[name]
        home = self.homes.get()
        environment = {**os.environ, **own, **variables, 'QTEST_FUNCTION_TIMEOUT': '600000'}
        for word in ('HOME', 'XDG_RUNTIME_DIR', 'XDG_CONFIG_HOME'):
            environment[word] = home
        start = time.monotonic()
        process = subprocess.Popen([*command, *arguments], cwd=folder, env=environment,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   stderr=subprocess.STDOUT, start_new_session=True)
        try:
            outcome = self.watch(process, start + limit)
        finally:
            # The program and what it started: it is a process group of its own.
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.stdout.close()
            process.wait()
            self.homes.put(home)
        outcome.seconds = time.monotonic() - start
        return outcome

    def watch(self, process, end):
        words = b''
        with selectors.DefaultSelector() as selector:
            selector.register(process.stdout, selectors.EVENT_READ)
            while True:
                left = end - time.monotonic()
                if left <= 0:
                    return Outcome('hung')
                if not selector.select(left):
                    continue
                piece = os.read(process.stdout.fileno(), 65536)
                if not piece:
                    break
                words = words[-400:] + piece
                match = FAILED.search(words)
                if match:
                    return Outcome('failed', match[1].decode())
        try:
            status = process.wait(max(1.0, end - time.monotonic()))
        except subprocess.TimeoutExpired:
            return Outcome('hung')
        if status == 0:
            return Outcome('passed')
        return Outcome('crashed' if status < 0 else 'failed')

    def record(self, count, progress):
        """Runs every program without a mutant, and notes its time and the sites that it reaches.

        Returns the programs that fail as they are.
        """
        def one(name):
            file = pathlib.Path(self.place.name, name + '.reached')
            file.write_bytes(bytes(count + 1))
            for _ in range(2):
                outcome = self.run(name, {'QN740_MUTANT': '0', 'QN740_MUTANT_REACHED': str(file)},
                                   300)
                if outcome.word == 'passed':
                    break
            hits = file.read_bytes()
            with self.lock:
                self.seconds[name] = outcome.seconds
                self.reached[name] = {number for number in range(1, count + 1) if hits[number]}
                progress(name, outcome)
            return name, outcome

        with concurrent.futures.ThreadPoolExecutor(self.jobs) as pool:
            outcomes = list(pool.map(one, sorted(self.programs)))
        return [name for name, outcome in outcomes if outcome.word != 'passed']

    def programs_for(self, site):
        """Returns the programs that reach this site: those of its room, the quick ones first, and
        then those of the other rooms if they are asked as well."""
        def is_other(name):
            return name.split('.')[0] != site.room

        return sorted((name for name, hits in self.reached.items()
                       if site.id in hits and (self.everywhere or not is_other(name))),
                      key=lambda name: (is_other(name), self.seconds[name]))

    def judge(self, site):
        """Returns who noticed this mutant, "program: how"; 'survived'; or 'not reached'."""
        programs = self.programs_for(site)
        variables = {'QN740_MUTANT': str(site.id)}
        for name in programs:
            limit = EXTRA_S + LIMIT_FACTOR * self.seconds[name]
            outcome = self.run(name, variables, limit)
            if outcome.word == 'failed' and outcome.function not in (None, 'initTestCase'):
                # Once more, that function alone: it is the mutant and not the load of the machine.
                again = self.run(name, variables, limit, [outcome.function])
                if again.word == 'passed':
                    again = self.run(name, variables, limit)
                outcome = again
            if outcome.word != 'passed':
                return f'{name}: {outcome.word}'
        return 'survived' if programs else 'not reached'

    def judge_all(self, chosen, note):
        def one(site):
            verdict = self.judge(site)
            with self.lock:
                note(site, verdict)

        with concurrent.futures.ThreadPoolExecutor(self.jobs) as pool:
            list(pool.map(one, chosen))
