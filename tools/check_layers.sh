#!/usr/bin/env bash
# Proves from the include lines that no file below src/ includes a layer above its own
# (Util < Model < Core < UI), and that Util stays free of widgets and OpenGL. Prints each offending
# line as file:line and exits 1 when there is one.
# Includes start at src/, so a path with ".." could only hide its layer: it is an offence too.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

mapfile -d '' -t files < <(find src -type f \( -name '*.h' -o -name '*.cpp' \) -print0 | sort -z)
if [[ ${#files[@]} -eq 0 ]]; then
    echo "$root/src holds no source files." >&2
    exit 2
fi

# Qt's headers carry no module in their name; the modules' folders tell which are widgets.
graphic=$(find /usr/include/*/qt5/QtWidgets /usr/include/*/qt5/QtOpenGL -maxdepth 1 -name '[Qq]*' \
    -printf '%f ' 2>/dev/null || true)

# The names are given by the environment, as awk -v would read backslashes in them.
GRAPHIC=$graphic awk '
    BEGIN {
        rank["Util"] = 1; rank["Model"] = 2; rank["Core"] = 3; rank["UI"] = 4
        count = split(ENVIRON["GRAPHIC"], names, " ")
        for (i = 1; i <= count; ++i)
            graphic[names[i]] = 1
        # Of use where Qt lies elsewhere
        graphicPattern = "^(QtWidgets|QtOpenGL|GL|GLES[0-9]*|EGL)(/|$)|^Q(GL|OpenGL|Widget|Application$)|" \
            "^Q[A-Za-z]*(Widget|Dialog|Window)$|^q(gl|opengl|widget|application\\.)"
    }
    function offence(text) {
        printf "%s:%d: %s: %s\n", FILENAME, FNR, text, $0
        bad = 1
    }
    /^[ \t]*#[ \t]*(include|import)/ {
        if (!match($0, /["<][^">]*[">]/))
            next
        path = substr($0, RSTART + 1, RLENGTH - 2)
        split(FILENAME, own, "/")
        layer = own[2]
        split(path, parts, "/")
        if (path ~ /(^|\/)\.\.(\/|$)/)
            offence("an include path starts at src/")
        if ((layer in rank) && (parts[1] in rank) && rank[parts[1]] > rank[layer])
            offence(layer " includes " parts[1] ", a layer above it")
        if (layer == "Util" && ((path in graphic) || path ~ graphicPattern))
            offence("Util includes no widgets and no OpenGL")
    }
    END { exit bad }
' "${files[@]}"
