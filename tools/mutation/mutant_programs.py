"""Builds the test programs anew, with all mutants in them at once, beside an ordinary build."""
import json
import os
from pathlib import Path
import re
import shlex
import subprocess
from concurrent.futures import ThreadPoolExecutor

import mutation_sites

HERE = Path(__file__).resolve().parent


class OrdinaryBuild:
    """What a finished build folder tells of its sources and programs."""

    def __init__(self, root, folder):
        self.root, self.folder = root, folder
        commands = json.loads((folder / 'compile_commands.json').read_text())
        self.commands = {self._relative(each['file']): each for each in commands}

    def _relative(self, file):
        try:
            return str(Path(file).relative_to(self.root))
        except ValueError:
            return file

    def compile_arguments(self, source):
        return shlex.split(self.commands[source]['command'])

    def parse_arguments(self, source):
        """What matters to a reader of the source: language, folders, definitions."""
        arguments = self.compile_arguments(source)
        kept = [each for each in arguments if re.match(r'-(I|D|std=)', each)]
        for flag, folder in zip(arguments, arguments[1:]):
            if flag == '-isystem':
                kept += [flag, folder]
        return ['-x', 'c++', *kept]

    def archive_of(self, source):
        """The library that holds the source's object, and the object's name in it."""
        output = self._output(source)
        match = re.fullmatch(r'(.*?)CMakeFiles/([^/]+)\.dir/(?:.*/)?([^/]+)', output)
        return f'{match.group(1)}lib{match.group(2)}.a', match.group(3)

    def _output(self, source):
        arguments = self.compile_arguments(source)
        return arguments[arguments.index('-o') + 1]

    def link_command(self, program):
        text = subprocess.run(['ninja', '-C', self.folder, '-t', 'commands', program],
                              check=True, capture_output=True, text=True).stdout
        last = text.strip().splitlines()[-1]
        return shlex.split(last.removeprefix(': && ').removesuffix(' && :'))

    def tests(self):
        """What ctest would run, its programs of our own alone."""
        listing = subprocess.run(['ctest', '--show-only=json-v1'], cwd=self.folder, check=True,
                                 capture_output=True, text=True).stdout
        for test in json.loads(listing)['tests']:
            command = test.get('command', [''])
            if Path(command[0]).is_relative_to(self.folder / 'tests'):
                yield test


class MutantPrograms:
    """The programs below one folder, and the sites whose mutants they hold."""

    def __init__(self, build, folder):
        self.build, self.folder = build, folder
        self.sites = {}
        self.tests = []

    def make(self, sites):
        numbered = dict(enumerate(sites))
        sources = sorted({site.path for site in sites})
        with ThreadPoolExecutor(os.cpu_count()) as pool:
            for kept in pool.map(lambda path: self._compile(path, numbered), sources):
                self.sites.update(kept)
        archives = self._archives(sources)
        with ThreadPoolExecutor(os.cpu_count()) as pool:
            linked = pool.map(lambda test: self._link(test, archives), self.build.tests())
            self.tests = [test for test in linked if test]

    def _compile(self, path, numbered):
        """Compiles one source with its mutants, without those that do not compile."""
        wanted = {n: site for n, site in numbered.items() if site.path == path}
        original = (self.build.root / path).read_bytes()
        mutated = self.folder / path
        mutated.parent.mkdir(parents=True, exist_ok=True)
        while wanted:
            mutated.write_bytes(mutation_sites.mutated_text(original, wanted))
            errors = self._errors(path, mutated)
            if not errors:
                return wanted
            kept = {n: site for n, site in wanted.items()
                    if not any(site.first_line <= line <= site.last_line for line in errors)}
            wanted = kept if len(kept) < len(wanted) else {}
        mutated.write_bytes(original)
        self._errors(path, mutated)
        return {}

    def _errors(self, path, mutated):
        """The lines at which the compiler stumbles; the object is made when there are none."""
        arguments = self.build.compile_arguments(path)
        arguments[arguments.index('-o') + 1] = str(mutated) + '.o'
        arguments[arguments.index('-c') + 1] = str(mutated)
        command = [*arguments, '-w', '-include', HERE / 'mutants.h',
                   '-iquote', (self.build.root / path).parent]
        result = subprocess.run(command, cwd=self.build.folder, capture_output=True, text=True,
                                env={**os.environ, 'LC_ALL': 'C'})
        if result.returncode == 0:
            return set()
        lines = re.findall(rf'{re.escape(str(mutated))}:(\d+):', result.stderr)
        return {int(line) for line in lines} or {0}

    def _archives(self, sources):
        """Copies of the libraries with the mutated objects in them, by their usual names."""
        objects = {}
        for source in sources:
            archive, name = self.build.archive_of(source)
            objects.setdefault(archive, []).append((name, self.folder / f'{source}.o'))
        copies = {}
        for archive, members in objects.items():
            copy = self.folder / archive
            copy.parent.mkdir(parents=True, exist_ok=True)
            copy.write_bytes((self.build.folder / archive).read_bytes())
            for name, mutated in members:
                mutated.rename(mutated.with_name(name))
                subprocess.run(['ar', 'r', copy, mutated.with_name(name)], check=True)
            copies[archive] = copy
        return copies

    def _link(self, test, archives):
        """The test with its program linked anew, or None when no mutant can be in it."""
        program = str(Path(test['command'][0]).relative_to(self.build.folder))
        command = self.build.link_command(program)
        if not any(word in archives for word in command):
            return None
        mutated = self.folder / program
        mutated.parent.mkdir(parents=True, exist_ok=True)
        command = [str(archives.get(word, word)) for word in command]
        command[command.index('-o') + 1] = str(mutated)
        subprocess.run([*command, '-fuse-ld=gold', '-Wl,-s'], cwd=self.build.folder, check=True)
        return {**test, 'command': [str(mutated), *test['command'][1:]]}
