# The figures of a soak as a table, and as a plot of each over time in the file `svg`. A line of figures: seconds,
# frames, pages opened, kB of memory, kB on the heaps, handles, drawing objects, 1 while the module is in use, registry entries.
BEGIN {
    count = split("memory, kB|heaps, kB|handles|drawing objects|module in use|registry entries", names, "|")
}
{
    time[NR] = $1
    frames = $2
    pages = $3
    for (i = 1; i <= count; ++i) {
        value[i, NR] = $(i + 3)
        if (NR == 1 || $(i + 3) > most[i]) most[i] = $(i + 3)
    }
}

# A strip of 60 pixels: the name, the line of 0, the curve up to the largest value, and that value.
function plot(i, n, base, x, y, step) {
    step = int(NR / 260) + 1
    base = 60 * i - 8
    printf "<text x=\"8\" y=\"%d\">%s</text><text x=\"712\" y=\"%d\" text-anchor=\"end\">%d</text>\n", base - 14, names[i], base - 14, most[i] > svg
    printf "<path stroke=\"#bbb\" d=\"M140 %dH660\"/><path fill=\"none\" stroke=\"#069\" stroke-width=\"1.5\" d=\"", base > svg
    for (n = 1; n <= NR; n += n < NR && n + step > NR ? NR - n : step) {
        x = 140 + 520 * time[n] / time[NR]
        y = base - (most[i] ? 40 * value[i, n] / most[i] : 0)
        printf("%s%.0f %.1f", n == 1 ? "M" : "L", x, y) > svg
    }
    print "\"/>" > svg
}

END {
    if (!NR) exit 1
    printf "%d s, %d frames, %d pages opened\n\n", time[NR], frames, pages
    print "| after a round | first | after a third | last | most |\n|---|---|---|---|---|"
    third = int(NR / 3) + 1
    for (i = 1; i <= count; ++i) printf "| %s | %d | %d | %d | %d |\n", names[i], value[i, 1], value[i, third], value[i, NR], most[i]
    print "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"720\" height=\"390\" font-family=\"sans-serif\" font-size=\"12\">" > svg
    print "<rect width=\"720\" height=\"390\" fill=\"#fff\"/>" > svg
    for (i = 1; i <= count; ++i) plot(i)
    printf "<text x=\"140\" y=\"378\">0 s</text><text x=\"660\" y=\"378\" text-anchor=\"end\">%d s</text></svg>\n", time[NR] > svg
}
