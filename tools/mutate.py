#!/usr/bin/env python3
"""Plants small faults in sources, one at a time, and tells which ones no test notices.

    tools/mutate.py [options] FOLDER_OR_FILE... [COUNT]

A fault is one small change at a random place: a comparison, an operator, a number, a condition, a
statement left out, two arguments exchanged, another value returned. The changed file is compiled
beside the build folder and linked in front of the libraries, so sources and libraries stay as they
are whatever happens to this program. Only test programs that link the file's library run, the
folder's own first; a fault is found when a test fails, crashes or does not end. One that no test
finds and that leaves the optimised object code byte for byte as it was is told apart.
"""
import argparse
import collections
import concurrent.futures
import fcntl
import glob
import json
import os
import random
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
BUILD = os.path.join(ROOT, 'build', 'mutate')
SURVIVORS = os.path.join(BUILD, 'survivors.json')

# Without optimisation and debug information: compiling and linking is most of a fault's time. The
# library's own checks find what the sanitizers of the other build would.
CONFIGURE = ['-DCMAKE_BUILD_TYPE=Debug', '-DCMAKE_CXX_FLAGS_DEBUG=-O0 -D_GLIBCXX_ASSERTIONS',
             '-DAVQ1_BENCHES=OFF', '-DAVQ1_TESTS=ON']
# The code as it ships, and nothing in it that tells where its text stood.
OPTIMISED = ['-O2', '-g0', '-DNDEBUG', '-U_GLIBCXX_ASSERTIONS']
MEMORY_LIMIT_BYTES = 4 << 30
FILE_LIMIT_BYTES = 200 << 20
SHORTEST_TIMEOUT_S = 60
TIMEOUT_FACTOR = 20  # of the test program's time without a fault

Fault = collections.namedtuple('Fault', 'file start end text kind')


# ---- reading the sources ----

TOKEN = re.compile(r'''
    (?P<skip>//[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:[^\n\\]|\\.)*(?:\\\n[^\n]*)*)
  | (?P<string>(?:u8|[uUL])?R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)" | "(?:[^"\\\n]|\\.)*" | '(?:[^'\\\n]|\\.)*')
  | (?P<number>(?:0[xX][0-9a-fA-F']+|\d[\d']*(?:\.\d*)?(?:[eE][+-]?\d+)?|\.\d+(?:[eE][+-]?\d+)?)[uUlLfF]*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<mark2>::|->\*?|\.\*|\+\+|--|<=>|<<=?|>=|<=|==|!=|&&|\|\||[-+*/%&|^]=|\[\[|\]\]|[^\s\w])
''', re.X | re.S | re.M)

Token = collections.namedtuple('Token', 'kind text start end')


def tokens_of(text):
    """Words, numbers, strings and marks; comments and preprocessor lines are left out."""
    return [Token('mark' if match.lastgroup in ('mark2', 'mark') else match.lastgroup,
                  match.group(), match.start(), match.end())
            for match in TOKEN.finditer(text) if match.lastgroup != 'skip']


# What says something to the developer, or is checked by the compiler, is not changed.
NOT_CHANGED = {'static_assert', 'assert', 'fprintf', 'cerr', 'template', 'using', 'typedef',
               'namespace', 'friend', 'extern'}
NOT_STATEMENTS = {'return', 'if', 'for', 'while', 'switch', 'case', 'default', 'else', 'do', 'using',
                  'const', 'auto', 'static', 'constexpr', 'goto', 'throw', 'struct', 'class',
                  'enum', 'delete', 'public', 'private', 'protected', 'new'}
SWAPS = {' < ': ('<=', '>='), ' <= ': ('<', '>'), ' > ': ('>=', '<='), ' >= ': ('>', '<'),
         ' == ': ('!=',), ' != ': ('==',), ' && ': ('||',), ' || ': ('&&',), ' + ': ('-',),
         ' - ': ('+',), ' * ': ('/',), ' / ': ('*',), ' += ': ('-=',), ' -= ': ('+=',),
         ' % ': ('/',), ' & ': ('|',), ' | ': ('&',)}
KINDS = {'<': 'comparison', '>': 'comparison', '=': 'comparison', '!': 'comparison',
         '&': 'logic', '|': 'logic'}
SYMMETRIC = {'min', 'max', 'hypot', 'EqualsIgnoreCase', 'SmallerAngle'}  # in their arguments
WORDS = {'true': 'false', 'false': 'true', 'min': 'max', 'max': 'min', 'floor': 'ceil',
         'sin': 'cos', 'cos': 'sin', 'break': 'continue'}
OPENING = {'(': ')', '[': ']', '{': '}'}


def matching(tokens):
    """The index of each bracket's partner."""
    partner, open_at = {}, []
    for index, token in enumerate(tokens):
        if token.kind != 'mark':
            continue
        if token.text in OPENING:
            open_at.append(index)
        elif token.text in OPENING.values() and open_at:
            partner[open_at[-1]] = index
            partner[index] = open_at.pop()
    return partner


class Places:
    """Every place of one file where a fault can be planted."""

    def __init__(self, path):
        self.path = path
        with open(os.path.join(ROOT, path), encoding='utf-8') as file:
            self.text = file.read()
        self.tokens = tokens_of(self.text)
        self.partner = matching(self.tokens)
        self.faults = []
        self.mark_unchanged()
        for index in range(len(self.tokens)):
            if index not in self.unchanged:
                self.at_token(index)
                self.at_statement(index)
                self.at_bracket(index)

    def add(self, start, end, text, kind):
        self.faults.append(Fault(self.path, start, end, text, kind))

    def mark_unchanged(self):
        self.unchanged = set()
        statement_end = -1
        for index, token in enumerate(self.tokens):
            if token.kind == 'word' and token.text in NOT_CHANGED and index > statement_end:
                statement_end = index
                while (statement_end < len(self.tokens) - 1 and
                       self.tokens[statement_end].text not in ';{'):
                    statement_end = self.after(statement_end)
            if token.text == 'StateReset' and self.tokens[index + 2].text == '(':
                statement_end = self.partner[index + 2]  # there for the tests
            if index <= statement_end or token.text == '[[':
                self.unchanged.add(index)

    def after(self, index):
        """The next token of the same depth."""
        if self.tokens[index].text in ('(', '['):
            return self.partner.get(index, index) + 1
        return index + 1

    def at_token(self, index):
        token = self.tokens[index]
        if token.kind == 'number':
            if not self.never_read(index):
                self.at_number(token)
        elif token.kind == 'word' and token.text in WORDS:
            if token.text != 'break' or self.in_loop(index):
                self.add(token.start, token.end, WORDS[token.text], 'word')
        elif token.kind == 'mark':
            self.at_mark(index, token)

    def never_read(self, index):
        """Whether this starts a local that a call sets next, or a field of a record at zero."""
        if index < 2 or self.tokens[index - 1].text != '=' or self.tokens[index + 1].text != ';':
            return False
        if self.tokens[index].text == '0' and self.in_record(index):
            return True
        name = self.tokens[index - 2].text
        used = next((at for at in range(index + 1, len(self.tokens) - 1)
                     if self.tokens[at].text == name), None)
        return (used is not None and self.tokens[used - 1].text in ('(', ',') and
                self.tokens[used + 1].text in (')', ','))

    def at_number(self, token):
        digits = token.text.rstrip('uUlLfF') if not token.text.startswith('0x') else token.text
        suffix = token.text[len(digits):]
        if re.fullmatch(r'\d+', digits):
            value = int(digits)
            for other in {value + 1, value - 1 if value > 0 else value + 1}:
                self.add(token.start, token.end, str(other) + suffix, 'number')
        elif digits.startswith(('0x', '0X')):
            other = int(digits.rstrip('uUlL').replace("'", ''), 16) ^ 1
            self.add(token.start, token.end, hex(other), 'number')
        else:
            value = float(digits.replace("'", ''))
            other = value + 1 if value == 0 or value >= 10 else value * 1.1
            self.add(token.start, token.end, repr(other) + suffix, 'number')

    def at_mark(self, index, token):
        spaced = self.text[token.start - 1:token.end + 1]
        before = self.text[self.tokens[index - 1].end:token.start] if index else ''
        if token.text in ('*', '/', '+', '-', '&&', '||', '<', '>') and '\n' in before:
            spaced = f' {token.text} '
        if spaced.endswith('\n'):  # the line was broken behind the operator
            spaced = spaced[:-1] + ' '
        for other in SWAPS.get(spaced, ()):
            self.add(token.start, token.end, other, KINDS.get(token.text[0], 'arithmetic'))
        if token.text in ('++', '--'):
            self.add(token.start, token.end, '--' if token.text == '++' else '++', 'arithmetic')
        elif token.text == '!':
            self.add(token.start, token.end, '', 'logic')

    def in_record(self, index):
        depth = 0
        for at in range(index, -1, -1):
            depth += (self.tokens[at].text == '}') - (self.tokens[at].text == '{')
            if depth < 0:
                return at >= 2 and self.tokens[at - 2].text == 'struct'
        return False

    def in_loop(self, index):
        """Whether the nearest switch or loop around a token is a loop (continue needs one)."""
        depth = 0
        for at in range(index, -1, -1):
            text = self.tokens[at].text
            depth += (text == '}') - (text == '{')
            if depth < 0 and text == 'switch':
                return False
            if depth < 0 and text in ('for', 'while'):
                return True
        return False

    def at_statement(self, index):
        """A statement left out, or another value returned, for the statement that begins here."""
        if index == 0 or self.tokens[index - 1].text not in (';', '{', '}', ')', ':'):
            return
        first = self.tokens[index]
        end = index
        while end < len(self.tokens) and self.tokens[end].text not in (';', '}'):
            end = self.after(end) if self.tokens[end].text != '{' else self.partner.get(end, end) + 1
        if end >= len(self.tokens) or self.tokens[end].text != ';' or end == index:
            return
        inside = self.tokens[index:end]
        if first.text == 'return':
            value = self.text[inside[1].start:inside[-1].end] if len(inside) > 1 else '{}'
            if value not in ('{}', 'true', 'false', '0', 'nullptr', '""'):
                self.add(first.start, self.tokens[end].start, 'return {}', 'return')
        elif self.is_action(inside):
            self.add(first.start, self.tokens[end].start, '', 'statement')

    def is_action(self, inside):
        """An assignment or a call, not a declaration."""
        if inside[0].text in NOT_STATEMENTS or inside[0].kind not in ('word', 'mark'):
            return inside[0].text in ('break', 'continue')
        if inside[0].kind == 'mark' and inside[0].text not in ('++', '--', '*', '('):
            return False
        for first, second in zip(inside, inside[1:]):
            if first.text in ('=', '(', '+=', '-=', '*=', '/=', '|=', '&='):
                return True
            if first.kind == 'word' and second.kind == 'word':
                return False  # a type and a name
            if first.text in ('&', '*', '>') and second.kind == 'word' and first is not inside[0]:
                return False
        return inside[0].text in ('++', '--') or inside[-1].text in ('++', '--')

    def at_bracket(self, index):
        token = self.tokens[index]
        close = self.partner.get(index)
        if token.text not in ('(', '{') or close is None or close < index:
            return
        before = self.tokens[index - 1].text if index else ''
        if token.text == '(' and before in ('if', 'while'):
            inner = self.text[token.end:self.tokens[close].start]
            if ';' not in inner and not re.search(r'\w[&*]* [&*]*\w+ = ', inner):
                self.add(token.end, self.tokens[close].start, f'!({inner})', 'condition')
        elif before not in SYMMETRIC | {'for', 'switch', ')', 'else'} and not any(
                token.text == 'enum' for token in self.tokens[max(index - 6, 0):index]):
            self.at_arguments(index, close)

    def at_arguments(self, index, close):
        """Neighbours in a list of arguments or in a row exchanged."""
        parts, begin, at = [], index + 1, index + 1
        while at < close:
            if self.tokens[at].text == ';':
                return  # a block of statements
            if self.tokens[at].text == ',':
                parts.append((begin, at))
                begin = at + 1
            at = self.partner[at] + 1 if self.tokens[at].text in OPENING and at in self.partner else at + 1
        if begin < close:
            parts.append((begin, close))
        if len(parts) < 2 or any(self.declares(*part) for part in parts):
            return
        for (a, a_end), (b, b_end) in zip(parts, parts[1:]):
            spans = [(self.tokens[a].start, self.tokens[a_end - 1].end),
                     (self.tokens[b].start, self.tokens[b_end - 1].end)]
            left, right = (self.text[start:end] for start, end in spans)
            if left.startswith('{') and right.startswith('{'):
                continue  # whole rows: their order seldom matters
            plausible = self.tokens[a].kind == self.tokens[b].kind or '(' in left + right
            if left != right and plausible:
                between = self.text[spans[0][1]:spans[1][0]]
                self.add(spans[0][0], spans[1][1], right + between + left, 'exchange')

    def declares(self, begin, end):
        """Whether this is a parameter rather than an argument."""
        for first, second in zip(self.tokens[begin:end], self.tokens[begin + 1:end]):
            if first.text in ('(', '{', '['):
                return False
            if first.kind == 'word' and second.kind == 'word':
                return True
            if (first.text in ('&', '*', '&&', '>') and second.kind == 'word' and
                    self.text[first.start - 1] != ' '):
                return True
        return False


def choose(places, rng):
    """Faults in random order: a random line first, so that a dense table weighs no more."""
    by_line = collections.defaultdict(list)
    for place in places:
        for fault in place.faults:
            by_line[fault.file, place.text.count('\n', 0, fault.start)].append(fault)
    lines = sorted(by_line)
    rng.shuffle(lines)
    for line in lines:
        kinds = sorted({fault.kind for fault in by_line[line]})
        kind = rng.choice(kinds)
        yield rng.choice([fault for fault in by_line[line] if fault.kind == kind])


# ---- building and running ----

def run(command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          errors='replace', **options)


def must(command, what):
    result = run(command)
    if result.returncode != 0:
        sys.exit(f'mutate: {what} failed\n{result.stdout[-4000:]}')
    return result.stdout


def limit_resources():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT_BYTES, MEMORY_LIMIT_BYTES))
    resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_LIMIT_BYTES, FILE_LIMIT_BYTES))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def run_test(program, timeout):
    """What went wrong in a test program, or None. It leaves no files and no processes behind."""
    with tempfile.TemporaryDirectory(prefix='avq1_mutate_') as folder:
        process = subprocess.Popen(
            [program, '--gtest_brief=1', '--gtest_fail_fast'], cwd=folder,
            env=dict(os.environ, TMPDIR=folder), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, text=True, errors='replace', start_new_session=True,
            preexec_fn=limit_resources)
        try:
            output, _ = process.communicate(timeout=timeout)
        except subprocess.TimeoutExpired:
            output = None
        finally:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()
    if output is None:
        return 'does not end'
    if process.returncode == 0:
        return None
    failed = re.search(r'\[  FAILED  \] (\S+)', output)
    return failed.group(1) if failed else f'ends with {process.returncode}'


class Tests:
    """The test programs and how to link each with one object of ours in front."""

    def __init__(self, own_only):
        self.own_only, self.links, self.baseline = own_only, {}, {}
        with open(os.path.join(BUILD, 'compile_commands.json'), encoding='utf-8') as file:
            self.compiles = {os.path.relpath(row['file'], ROOT): row for row in json.load(file)}
        listed = must(['ninja', '-C', BUILD, '-t', 'targets', 'all'], 'listing the targets')
        for name in sorted(set(re.findall(r'^(test_\w+): CXX_EXECUTABLE', listed, re.M))):
            commands = must(['ninja', '-C', BUILD, '-t', 'commands', name], f'reading {name}')
            last = commands.strip().splitlines()[-1]
            self.links[name] = next(part for part in last.split(' && ') if f' -o {name} ' in part)

    def target_of(self, source):
        return re.search(r'CMakeFiles/([^/]+)\.dir/', self.compiles[source]['command']).group(1)

    def that_link(self, source):
        """Programs whose link line names the source's library: its folder's own, then the fastest."""
        target = self.target_of(source)
        own = 'test_' + target.removeprefix('avq1_').removeprefix('panelhost_')
        if self.own_only and own in self.links:
            return [own]
        return sorted((name for name, link in self.links.items() if f'lib{target}.a' in link),
                      key=lambda name: (name != own, self.baseline.get(name, 0)))

    def measure(self, names):
        for name in names:
            begin = time.monotonic()
            wrong = run_test(os.path.join(BUILD, name), 600)
            if wrong:
                sys.exit(f'mutate: {name} fails without a fault: {wrong}')
            self.baseline[name] = time.monotonic() - begin

    def compile(self, source, text, folder, flags=()):
        """The object file of a source with another text, or None. Its paths are always the same."""
        row = self.compiles[source]
        path, result = os.path.join(folder, os.path.basename(source)), os.path.join(folder, 'fault.o')
        with open(path, 'w', encoding='utf-8') as file:
            file.write(text)
        command = shlex.split(row['command']) + list(flags)
        command[command.index('-c') + 1] = path
        command[command.index('-o') + 1] = result
        command[1:1] = ['-iquote', os.path.dirname(row['file'])]
        return result if run(command, cwd=row['directory']).returncode == 0 else None

    def same_code(self, source, text, changed, folder):
        """Whether the optimiser makes the same of both texts: then no test could find the change."""
        codes = []
        for version in (text, changed):
            result = self.compile(source, version, folder, OPTIMISED)
            if result is None:
                return False
            with open(result, 'rb') as file:
                codes.append(file.read())
        return codes[0] == codes[1]

    def link(self, name, folder):
        program = os.path.join(folder, name)
        command = self.links[name].replace(
            f' -o {name} ', f' -o {shlex.quote(program)} {shlex.quote(folder)}/fault.o ')
        return program if run(command, shell=True, cwd=BUILD).returncode == 0 else None


NOT_BUILT, SURVIVED, NO_DIFFERENCE = 'not built', 'survived', 'no difference in the compiled code'


def try_fault(tests, fault, source):
    """NOT_BUILT, SURVIVED, NO_DIFFERENCE, or what found the fault."""
    changed = source[:fault.start] + fault.text + source[fault.end:]
    with tempfile.TemporaryDirectory(dir=BUILD, prefix='fault_') as folder:
        if tests.compile(fault.file, changed, folder) is None:
            return NOT_BUILT
        for name in tests.that_link(fault.file):
            program = tests.link(name, folder)
            if program is None:
                return f'{name} does not link'
            wrong = run_test(program, max(SHORTEST_TIMEOUT_S, TIMEOUT_FACTOR * tests.baseline[name]))
            if wrong:
                return f'{name}: {wrong}'
        same = tests.same_code(fault.file, source, changed, folder)
        return NO_DIFFERENCE if same else SURVIVED


def describe(fault, text):
    line = text.count('\n', 0, fault.start) + 1
    begin = text.rfind('\n', 0, fault.start) + 1
    finish = text.find('\n', fault.end)
    before = ' '.join(text[begin:finish].split())
    after = ' '.join((text[begin:fault.start] + fault.text + text[fault.end:finish]).split())
    return f'{fault.file}:{line}: {before}  ->  {after}'


# ---- the campaign ----

def sources_below(arguments):
    listed = must(['git', '-C', ROOT, 'ls-files', '-co', '--exclude-standard', '--']
                  + [os.path.relpath(os.path.abspath(path), ROOT) for path in arguments],
                  'listing the sources')
    return sorted(path for path in set(listed.split()) if path.endswith('.cpp'))


def take_build_folder():
    os.makedirs(BUILD, exist_ok=True)
    lock = open(os.path.join(BUILD, 'lock'), 'w', encoding='utf-8')
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        sys.exit('mutate: it runs already: one campaign at a time')
    return lock


def prepare(arguments, own_only=False):
    for left in glob.glob(os.path.join(BUILD, 'fault_*')):  # by a run that was stopped
        shutil.rmtree(left, ignore_errors=True)
    must(['cmake', '-G', 'Ninja', '-S', ROOT, '-B', BUILD] + CONFIGURE, 'configuring')
    tests = Tests(own_only)
    sources = [path for path in sources_below(arguments)
               if path in tests.compiles and tests.that_link(path)]
    if not sources:
        sys.exit('mutate: no source there is linked into a test program')
    needed = sorted({name for path in sources for name in tests.that_link(path)})
    print(f'Building {" ".join(needed)}', flush=True)
    must(['cmake', '--build', BUILD, '--target'] + needed, 'the build')
    tests.measure(needed)
    return tests, sources


def faults_to_try(options, sources):
    places = [Places(path) for path in sources]
    texts = {place.path: place.text for place in places}
    if options.again:
        with open(SURVIVORS, encoding='utf-8') as file:
            rows = json.load(file)
        faults = [Fault(*row[:5]) for row in rows
                  if texts.get(row[0], '')[row[1]:row[2]] == row[5]]
        return texts, iter(faults), len(faults)
    return texts, choose(places, random.Random(options.seed)), options.count


def campaign(options):
    tests, sources = prepare(options.paths, options.own)
    texts, faults, count = faults_to_try(options, sources)
    tried, survivors, uncounted, begin = 0, [], collections.Counter(), time.monotonic()
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        running = {}
        while True:
            # Never more under way than may still count, so the seed alone decides which are tried.
            while len(running) < min(options.jobs, count - tried):
                fault = next(faults, None)
                if fault is None:
                    break
                running[pool.submit(try_fault, tests, fault, texts[fault.file])] = fault
            if not running:
                break
            done, _ = concurrent.futures.wait(
                running, return_when=concurrent.futures.FIRST_COMPLETED)
            for future in done:
                fault, outcome = running.pop(future), future.result()
                if outcome in (NOT_BUILT, NO_DIFFERENCE):
                    uncounted[outcome] += 1
                else:
                    tried += 1
                if outcome == SURVIVED:
                    survivors.append(fault)
                if options.verbose or outcome in (SURVIVED, NO_DIFFERENCE):
                    print(f'[{outcome}] {describe(fault, texts[fault.file])}', flush=True)
    with open(SURVIVORS, 'w', encoding='utf-8') as file:
        json.dump([[*fault, texts[fault.file][fault.start:fault.end]] for fault in survivors], file)
    report(tried, survivors, uncounted, texts, time.monotonic() - begin)


def report(tried, survivors, uncounted, texts, seconds):
    print(f'\n{tried} faults tried ({uncounted[NOT_BUILT]} more did not compile, '
          f'{uncounted[NO_DIFFERENCE]} left the code as it was), '
          f'{seconds / max(tried, 1):.1f} s each')
    for fault in sorted(survivors):
        print(describe(fault, texts[fault.file]))
    print(f'{len(survivors)} of {tried} survived')


def read_options():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument('paths', nargs='+', metavar='FOLDER_OR_FILE',
                        help='what to plant faults in; a number at the end is their count')
    parser.add_argument('--seed', default='1', help='other faults for another seed (default 1)')
    parser.add_argument('--jobs', type=int, default=os.cpu_count(), help='faults tried at a time')
    parser.add_argument('--own', action='store_true',
                        help="run only the test program of the changed file's own folder")
    parser.add_argument('--again', action='store_true',
                        help='try only what survived the last time')
    parser.add_argument('--verbose', action='store_true', help='tell what found each fault')
    options = parser.parse_args()
    options.count = int(options.paths.pop()) if options.paths[-1].isdigit() else 20
    if not options.paths:
        parser.error('name a folder')
    return options


if __name__ == '__main__':
    if not shutil.which('ninja'):
        sys.exit('mutate: ninja is missing: ./avq mutate installs what is needed')
    chosen = read_options()
    with take_build_folder():
        campaign(chosen)
