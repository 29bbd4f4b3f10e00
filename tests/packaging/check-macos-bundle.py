#!/usr/bin/env python3
"""Checks the files of the Mac application that are made without a Mac.

   check-macos-bundle.py INFO_PLIST ENTITLEMENTS SWIFT VERSION UI_INFO_PLIST SIGN
"""
import os
import pathlib
import plistlib
import re
import subprocess
import sys
import tempfile

info_file, entitlements_file, swift_file, version, ui_info_file, sign = sys.argv[1:]
faults = []


def expect(condition, fault):
    if not condition:
        faults.append(fault)


with open(info_file, "rb") as file:
    text = file.read()
expect(b"@" not in text, "Info.plist: a placeholder was not replaced")
info = plistlib.loads(text)
for key, value in {
    "CFBundlePackageType": "APPL",
    "CFBundleShortVersionString": version,
    "CFBundleVersion": version,
    "LSUIElement": True,
    "LSMinimumSystemVersion": "13.0",
    "NSPrincipalClass": "NSApplication",
    # The agent shows hidden windows again when it ends, so the system must not kill it without notice.
    "NSSupportsSuddenTermination": False,
    "NSSupportsAutomaticTermination": False,
}.items():
    expect(info.get(key) == value, f"Info.plist: {key} is {info.get(key)!r}")
expect(re.fullmatch(r"\d+(\.\d+){0,2}", info["CFBundleVersion"]), "Info.plist: the version has more than three numbers")
expect(re.fullmatch(r"[A-Za-z0-9.-]+", info["CFBundleIdentifier"]), "Info.plist: the identifier has invalid characters")
schemes = [scheme for kind in info["CFBundleURLTypes"] for scheme in kind["CFBundleURLSchemes"]]
expect(schemes == ["kova"], f"Info.plist: URL schemes {schemes}")

with open(ui_info_file, "rb") as file:
    text = file.read()
expect(b"@" not in text, "kova-ui.plist: a placeholder was not replaced")
helper = plistlib.loads(text)
for key, value in {
    "CFBundleExecutable": "kova-ui",
    "CFBundleIdentifier": info["CFBundleIdentifier"] + ".ui",
    "CFBundleShortVersionString": version,
    "LSMinimumSystemVersion": info["LSMinimumSystemVersion"],
    "LSUIElement": True,
}.items():
    expect(helper.get(key) == value, f"kova-ui.plist: {key} is {helper.get(key)!r}")

with open(entitlements_file, "rb") as file:
    text = file.read()
entitlements = plistlib.loads(text)
expect(b"<!--" not in text, "entitlements: the parser that the system uses at a program's start rejects comments")
expect(not entitlements.get("com.apple.security.app-sandbox"), "entitlements: a sandboxed program cannot move windows of other applications")

with open(swift_file, encoding="utf-8") as file:
    swift = file.read()
without_texts = re.sub(r'"(\\.|[^"\\])*"', '""', swift)
for opening, closing in ("{}", "()", "[]"):
    expect(without_texts.count(opening) == without_texts.count(closing), f"Swift: {opening} and {closing} do not match")
intents = re.findall(r"^struct (\w+): AppIntent \{(.*?)^\}", swift, re.M | re.S)
expect(len(intents) == 4, f"Swift: {len(intents)} intents")
for name, body in intents:
    expect(re.search(r'title: LocalizedStringResource = "[^"\\]+"', body), f"Swift: {name} has no literal title")
    expect(re.search(r'openURL\("kova://', body), f"Swift: {name} opens no URL")
    expect(re.search(r"\.result\(dialog: \"", body), f"Swift: {name} shows no result")
    parameters = set(re.findall(r"var (\w+): String", body))
    used = set(re.findall(r"\\\((\w+)\)", body)) | set(re.findall(r"percentEncoded\((\w+)\)", body))
    expect(parameters == used, f"Swift: {name} asks for {parameters} and uses {used}")
phrase_lists = re.findall(r"phrases: \[(.*?)\]", swift, re.S)
expect(len(phrase_lists) == 6, f"Swift: {len(phrase_lists)} shortcuts, for systems with short titles and for those without")
before, _, older = swift.partition("} else {")
expect("#available(macOS 14.0, *)" in before and "shortTitle" not in older, "Swift: short titles are used without macOS 14")
expect("NSWorkspace" not in swift, "Swift: NSWorkspace is used, which activates KOVA when it opens a URL")
for phrases in phrase_lists:
    for phrase in re.findall(r'"(.*)"', phrases):
        expect(phrase.count(r"\(.applicationName)") == 1, f"Swift: the application is not named once in {phrase!r}")
for name in re.findall(r"intent: (\w+)\(\)", swift):
    expect(name in dict(intents), f"Swift: no intent is called {name}")



def signed_paths(folder, parts, target):
    """The paths that the script signs if the application has those parts: relative to the folder, in order of signing."""
    for part in parts:
        (folder / part).mkdir(parents=True, exist_ok=True)
    (folder / "KOVA.app/Contents/Helpers/kova").touch()
    (folder / "codesign").write_text('#!/bin/sh\nfor last; do :; done\n[ "$1" = --verify ] || echo "$last"\n')
    (folder / "codesign").chmod(0o755)
    path = f"{folder}:{os.environ['PATH']}"
    run = subprocess.run([sign, folder / target, "-"], env={**os.environ, "PATH": path}, capture_output=True, text=True)
    expect(run.returncode == 0, f"sign: {run.stderr}")
    return [str(pathlib.Path(line).relative_to(folder)) for line in run.stdout.split()]


app, helper = "KOVA.app", "KOVA.app/Contents/Helpers/kova-ui.app"
of_helper = [f"{helper}/Contents/Frameworks/QtCore.framework", f"{helper}/Contents/PlugIns/platforms/libqcocoa.dylib"]
of_app = [f"{app}/Contents/Frameworks/Sparkle.framework/Versions/B/Updater.app",
          f"{app}/Contents/Frameworks/Sparkle.framework"]
for target, expected in {
    app: {app, helper, f"{app}/Contents/Helpers/kova", *of_app, *of_helper},
    helper: {helper, *of_helper}, # the build signs it after copying Qt into it
}.items():
    with tempfile.TemporaryDirectory() as folder:
        signed = signed_paths(pathlib.Path(folder), of_app + of_helper, target)
    expect(set(signed) == expected, f"sign {target}: signs {signed}")
    for place, outer in enumerate(signed):
        late = [inner for inner in signed[place + 1:] if inner.startswith(outer + "/")]
        expect(not late, f"sign {target}: {outer} is signed before {late}, which invalidates its signature")

print("\n".join(faults))
sys.exit(1 if faults else 0)
