# Reads what `ctest --verbose` prints, shows a line per test program and all output of those that fail, and
# counts single test cases from GoogleTest's own summaries. Variables: preset, tally (file to append counts to).
#
# A program without such a summary counts as one case. A program that fails without naming a failed case
# (it crashed, hung or never started), or that began a GoogleTest run and never summed it up, is one failure.

{ sub(/\r$/, "") }

# Output of test number N: "N: text".
match($0, /^[0-9]+: /) {
    id = substr($0, 1, RLENGTH - 2)
    text = substr($0, RLENGTH + 1)
    output[id] = output[id] text "\n"
    if (text ~ /^\[==========\] Running /) began[id] = 1
    else if (text ~ /^\[==========\] .* ran\./) summed[id] = 1
    else if (text ~ /^\[  PASSED  \] [0-9]+ test/) passed[id] = number(text)
    else if (text ~ /^\[  FAILED  \] [0-9]+ test/) failed[id] = number(text)
    else if (text ~ /^\[  SKIPPED \] [0-9]+ test/) skipped[id] = number(text)
    else if (text ~ /^\[  SKIPPED \] [^ ]+$/ && summed[id]) names[id] = names[id] "     skipped: " substr(text, 14) "\n"
    next
}

# Result of a test: "1/3 Test #1: name ....   Passed    0.12 sec".
match($0, /Test +#[0-9]+: /) && /sec *$|Not Run|Disabled/ {
    line = substr($0, RSTART)
    id = line
    sub(/^Test +#/, "", id)
    sub(/:.*/, "", id)
    good = line ~ / Passed +[0-9.]+ sec/
    left = line ~ /\*\*\*Skipped|\(Disabled\)/
    if (left) skipped[id] = skipped[id] ? skipped[id] : 1
    else if (good && !summed[id] && !began[id]) passed[id] = 1
    else if (good && !summed[id] || !good && !failed[id]) { failed[id]++; good = 0 }
    all_passed += passed[id]
    all_failed += failed[id]
    all_skipped += skipped[id]
    bad = !left && (!good || failed[id])
    if (bad) printf "%s", output[id]
    print "   " line (bad ? "" : count_text(id))
    printf "%s", names[id]
    fflush()
    next
}

/^CMake Error|^Unable to|^Could not|^No tests were found/ { print "   " $0 }

function number(text) {
    sub(/^\[[^]]*\] /, "", text)
    return text + 0
}

function count_text(id) {
    return "  (" passed[id] + 0 " passed" (skipped[id] ? ", " skipped[id] " skipped" : "") ")"
}

END {
    if (all_passed + all_failed + all_skipped == 0) {
        print "   no test ran"
        all_failed = 1
    }
    print preset, all_passed + 0, all_failed + 0, all_skipped + 0 >> tally
    exit all_failed > 0
}
