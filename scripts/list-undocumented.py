#!/usr/bin/python3
"""Lists the declarations in the public headers that have no comment line
directly above them (or on the same line), as file:line: text."""
import re
import sys
from pathlib import Path

SKIP = re.compile(r'^\s*(#|//|/\*|\*|$|public:|private:|protected:|\}|namespace\b|extern "C"|friend\b|using\b|typedef\b.*;\s*$)')
DECL = re.compile(r'^\s*(?:VIRELINE_EXPORT\s+|static\s+|virtual\s+|explicit\s+|inline\s+|const\s+|extern\s+)*[\w:<>,*&~ ]+\(|^\s*(class|struct|enum)\b')


def undocumented(path):
    lines = path.read_text().splitlines()
    private = False
    # The access of each enclosing scope, so that a type nested in a private
    # section gives that section back when it closes.
    outer = []
    for i, line in enumerate(lines):
        stripped = line.strip()
        if re.match(r'^(class|struct)\b.*\{$', stripped):
            outer.append(private)
            private = stripped.startswith('class')
        elif re.match(r'^(union|enum)\b.*\{$', stripped):
            outer.append(private)
        elif re.match(r'^\}.*;$', stripped) and outer:
            private = outer.pop()
        if stripped in ('public:', 'protected:'):
            private = False
        elif stripped == 'private:':
            private = True
        # Private members, deleted copies and destructors state no contract of their own.
        if private or '= delete' in line or '~' in line:
            continue
        if SKIP.match(line) or not DECL.match(line):
            continue
        prev = lines[i - 1].strip() if i > 0 else ''
        if prev.startswith('//') or prev.endswith('*/') or '//' in line:
            continue
        # a continuation of a declaration that started on an earlier line
        if prev.endswith(',') or prev.endswith('(') or stripped.startswith('__attribute__'):
            continue
        # a statement in the body of an inline function
        if prev.endswith('{') and not re.match(r'^(class|struct|union|enum|namespace|extern)\b', prev):
            continue
        if re.match(r'^\s*(class|struct)\s+\w+\s*;', line):
            continue
        yield i + 1, line.strip()


def main(argv):
    root = Path(argv[1] if len(argv) > 1 else 'include/vireline')
    count = 0
    for header in sorted(root.glob('*.h')):
        for number, text in undocumented(header):
            print(f'{header}:{number}: {text}')
            count += 1
    return 1 if count else 0


if __name__ == '__main__':
    sys.exit(main(sys.argv))
