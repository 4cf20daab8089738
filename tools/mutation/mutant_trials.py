"""Runs tests against one mutant after the other."""
from dataclasses import dataclass, field
import os
from pathlib import Path
import queue
import shutil
import subprocess
import threading
import time

SLOWER_AT_MOST = 5
SPARE_SECONDS = 10


@dataclass
class Outcome:
    number: int
    found_by: str = ''
    seconds: float = 0
    tried: list = field(default_factory=list)


def properties_of(test):
    return {each['name']: each['value'] for each in test.get('properties', [])}


class Bench:
    """A place of its own to run tests in: others do not see its network, nor its profile."""

    def __init__(self, root, folder, name):
        self.root, self.profile = root, folder / f'profile-{name}'

    def _forget_profile(self):
        """What one test stores is nothing for the next."""
        shutil.rmtree(self.profile, ignore_errors=True)
        self.profile.mkdir(mode=0o700, parents=True)

    def passes(self, test, timeout_s, **environment):
        self._forget_profile()
        properties = properties_of(test)
        variables = dict(line.split('=', 1) for line in properties.get('ENVIRONMENT', []))
        for variable in ('HOME', 'XDG_CONFIG_HOME', 'XDG_RUNTIME_DIR'):
            variables[variable] = str(self.profile)
        # A build that counts coverage keeps its own counts.
        variables['GCOV_PREFIX'] = str(self.profile)
        command = [str(self.root / 'tests/in-namespace'), *test['command']]
        process = subprocess.Popen(command, env={**os.environ, **variables, **environment},
                                   cwd=properties.get('WORKING_DIRECTORY', '/'),
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   start_new_session=True)
        try:
            return process.wait(timeout_s) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            self._end(process)

    def _end(self, process):
        try:
            os.killpg(process.pid, 9)
        except ProcessLookupError:
            pass
        process.wait()


class Trials:
    """First every test as it is, then each mutant with the tests that reach it."""

    def __init__(self, root, programs, budget_s):
        self.programs, self.budget_s = programs, budget_s
        # Tests wait for half of their time.
        count = 2 * os.cpu_count()
        self.benches = [Bench(root, programs.folder, number) for number in range(count)]
        self.reached, self.seconds, self.broken = {}, {}, []

    def run_unchanged(self):
        self._on_all_benches(self.programs.tests, self._run_unchanged)

    def run_mutants(self, told):
        outcomes = []

        def run(bench, number):
            outcome = self._run_mutant(bench, number)
            outcomes.append(outcome)
            told(len(outcomes), outcome)
        self._on_all_benches(sorted(self.programs.sites), run)
        return outcomes

    def _on_all_benches(self, work, function):
        waiting = queue.Queue()
        for piece in work:
            waiting.put(piece)

        def serve(bench):
            while True:
                try:
                    piece = waiting.get_nowait()
                except queue.Empty:
                    return
                function(bench, piece)
        threads = [threading.Thread(target=serve, args=(bench,)) for bench in self.benches]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()

    def _run_unchanged(self, bench, test):
        map_file = self.programs.folder / 'reached' / test['name']
        map_file.parent.mkdir(exist_ok=True)
        map_file.write_bytes(bytes(max(self.programs.sites, default=0) + 1))
        started = time.monotonic()
        if not bench.passes(test, 300, TARVIO_MUTANTS_REACHED=str(map_file)):
            self.broken.append(test['name'])
            return
        self.seconds[test['name']] = time.monotonic() - started
        self.reached[test['name']] = {number for number, seen in enumerate(map_file.read_bytes())
                                      if seen}

    def _run_mutant(self, bench, number):
        outcome = Outcome(number)
        tests = [test for test in self.programs.tests
                 if number in self.reached.get(test['name'], ())]
        for test in sorted(tests, key=lambda each: self.seconds[each['name']]):
            if outcome.seconds > self.budget_s:
                break
            timeout = SLOWER_AT_MOST * self.seconds[test['name']] + SPARE_SECONDS
            started = time.monotonic()
            passed = bench.passes(test, timeout, TARVIO_MUTANT=str(number))
            outcome.seconds += time.monotonic() - started
            outcome.tried.append(test['name'])
            if not passed:
                outcome.found_by = test['name']
                break
        return outcome
