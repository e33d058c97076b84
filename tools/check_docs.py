#!/usr/bin/env python3
"""Runs the examples in the pages and compares what they print.

    tools/check_docs.py BUILD_FOLDER

A fenced block that names its language is an example, and a block without a language right after it,
or after a single line such as "prints", is what it prints. `cpp` is a whole program, or lines of one
within a `main` that has the umbrella header; `c` is lines of a host with the classes registered;
`python` and `js` go on from what stands before them in the page. What is not installed is skipped,
with a line. Links must lead to a file, and the page of failures lists what the library has.
"""
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BUILD = Path(sys.argv[1]).resolve()
PAGES = [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md")),
         ROOT / "python/README.md", ROOT / "node/README.md"]
BLOCK = re.compile(r"^```(\w+)\n(.*?)^```\n(?:\n(?:[^\n`]{1,40}\n\n)?```\n(.*?)^```\n)?", re.M | re.S)
PROGRAM = """#include <iostream>
#include "quorl/quorl.hpp"
using namespace quorl;
using namespace quorl::literals;
int main() {
%s}
"""
HOST = """#include <stdlib.h>
#include <uchar.h>
#include "quorl/abi/quorl.h"
%s
int main(void) {
  BSTR path = NULL;
  if (QuorlSetStore(NULL, NULL) != 0 || QuorlFromUtf8("%s", &path) != 0) return 1;
  if (QuorlRegister(path) != 0) return 1;
  SysFreeString(path);
%s  return 0;
}
"""


def compiled(compiler, suffix, source, folder, library):
    """The command that runs `source`, once it is compiled."""
    file, program = folder / f"example{suffix}", folder / "example"
    file.write_text(source)
    subprocess.run([*compiler, f"-I{ROOT}", "-o", program, file, f"-L{BUILD}",
                    f"-Wl,-rpath,{BUILD}:{BUILD}/examples/parity", *library], check=True)
    return [program]


def cpp(code, folder):
    source = code if "int main" in code else PROGRAM % code
    return compiled(["c++", "-std=c++20"], ".cpp", source, folder, [BUILD / "libquorl.a", "-lquorl_runtime"])


def c(code, folder):
    heads = "".join(re.findall(r"^#include .*\n", code, re.M))
    source = HOST % (heads, BUILD / "libquorl.so", code.removeprefix(heads))
    recorder = [BUILD / "examples/parity/libquorl_parity.so"] if "recorder.h" in heads else []
    return compiled(["cc", "-std=c11"], ".c", source, folder, [*recorder, "-lquorl_runtime"])


def python(code, folder):
    return [sys.executable, "-B", "-c", code]


def js(code, folder):
    if not (ROOT / "node/node_modules").is_dir() or not shutil.which("node"):
        return None
    (folder / "node_modules").mkdir()
    (folder / "node_modules/quorl").symlink_to(ROOT / "node")
    (folder / "example.mjs").write_text(code)
    return ["node", folder / "example.mjs"]


def outcome(page, language, code, expected):
    """What is wrong with an example; nothing when all is well."""
    runner = {"cpp": cpp, "c": c, "python": python, "js": js}.get(language)
    if runner is None:
        return f"no way to run {language}"
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        environment = {**os.environ, "LC_ALL": "C.UTF-8", "XDG_DATA_HOME": name,
                       "QUORL_LIBRARY": str(BUILD), "PYTHONPATH": str(ROOT / "python")}
        try:
            command = runner(code, folder)
        except subprocess.CalledProcessError:
            return "it does not compile"
        if command is None:
            print(f"{page}: an example in {language} is skipped, there is no node with its packages")
            return None
        ran = subprocess.run(command, cwd=folder, env=environment, capture_output=True, text=True)
    if ran.returncode != 0:
        return f"it ends with {ran.returncode}: {ran.stderr.strip()}"
    if expected is not None and ran.stdout != expected:
        return f"it prints\n{ran.stdout}instead of\n{expected}"
    return None


def examples(text):
    """The examples of a page, each with its line: language, code, and what it prints."""
    scripts = {}
    for block in BLOCK.finditer(text):
        line = text.count("\n", 0, block.start()) + 1
        language, code, printed = block.groups()
        if language in ("python", "js"):
            former = scripts.setdefault(language, (line, "", None))
            outputs = [output for output in (former[2], printed) if output is not None]
            scripts[language] = (former[0], former[1] + code, "".join(outputs) if outputs else None)
        else:
            yield line, (language, code, printed)
    for language, (line, code, printed) in scripts.items():
        yield line, (language, code, printed)


def wrong_failures():
    """What the page of failures lists and the library has not, or the other way round."""
    def found(pattern, text):
        return set(re.findall(pattern, text, re.M))

    sections = dict(re.findall(r"^## Of (?:the )?(\w+)(.*?)(?=^## |\Z)",
                               (ROOT / "docs/failures.md").read_text(), re.M | re.S))
    failures = json.loads((ROOT / "docs/quorl.json").read_text())["failures"]
    status = (ROOT / "quorl/store/status.hpp").read_text()
    header = (ROOT / "quorl/abi/quorl.h").read_text()
    pairs = [
        (found(r"^\| (\d+ \| .*?) \|", sections["runtime"]),
         {f"{row['number']} | {row['description']}" for row in failures}),
        (found(r"^\| (\d+) \|", sections["store"]), found(r"^  k\w+ = (\d+),", status) - {"0"}),
        (found(r"^\| `(0x\w+)` \|", sections["calls"]), found(r"QUORL_CODE\((0x\w+)\)", header)),
    ]
    return ([f"docs/failures.md lacks {row}" for listed, known in pairs for row in known - listed]
            + [f"docs/failures.md alone has {row}"
               for listed, known in pairs for row in listed - known])


def main():
    wrong = wrong_failures()
    count = 0
    for page in PAGES:
        text = page.read_text()
        name = page.relative_to(ROOT)
        for line, example in examples(text):
            count += 1
            found = outcome(name, *example)
            if found:
                wrong.append(f"{name}:{line}: {found}")
        for target in re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", text):
            if not (page.parent / target).exists():
                wrong.append(f"{name}: there is no {target}")
    print("\n".join(wrong) or f"{count} examples do what the pages say")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
