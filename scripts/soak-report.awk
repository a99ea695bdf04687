# The figures of a soak as a table, and as a plot of each over time in the file `svg`. A line of figures: seconds,
# frames, pages opened, kB of memory, kB on the heaps, handles, drawing objects, live objects, registry entries.
BEGIN {
    split("memory, kB|heaps, kB|handles|drawing objects|live objects|registry keys and values", names, "|")
}
{
    time[NR] = $1
    frames = $2
    pages = $3
    for (i = 1; i <= 6; ++i) {
        value[i, NR] = $(i + 3)
        if (NR == 1 || $(i + 3) > most[i]) most[i] = $(i + 3)
    }
}
END {
    if (!NR) exit 1
    printf "%d s, %d frames, %d pages opened\n\n", time[NR], frames, pages
    print "| after a round | first | after a third | last | most |\n|---|---|---|---|---|"
    third = int(NR / 3) + 1
    print "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"640\" height=\"480\" font-family=\"sans-serif\" font-size=\"12\">" > svg
    for (i = 1; i <= 6; ++i) {
        printf "| %s | %d | %d | %d | %d |\n", names[i], value[i, 1], value[i, third], value[i, NR], most[i]
        top = 80 * (i - 1)
        printf "<text x=\"4\" y=\"%d\">%s: 0 to %d</text><path fill=\"none\" stroke=\"#069\" d=\"M", top + 14, names[i], most[i] > svg
        step = int(NR / 300) + 1
        for (n = 1; n <= NR; n += step)
            printf("%s%.1f %.1f", (n == 1 ? "" : " L"), 4 + 632 * time[n] / time[NR], top + 76 - (most[i] ? 56 * value[i, n] / most[i] : 0)) > svg
        print "\"/>" > svg
    }
    print "</svg>" > svg
}
