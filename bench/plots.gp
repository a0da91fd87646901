# Draws the plots of a run; "data" is the folder of the plots' data, "output" that of the plots. What
# has not been measured has no data.
set terminal svg noenhanced size 800,450 font "sans,13" background "white"
set datafile missing "?"
set grid ytics
set style data histograms
set style fill solid 0.8 border -1
set boxwidth 0.9
set key top left
measured(file) = int(system("test -e '".data."/".file."' && echo 1 || echo 0"))

# The bar is the median, the line on it ends at the 99th percentile.
set style histogram errorbars gap 2 linewidth 1.5

if (measured("call.dat")) {
    set output output."/call.svg"
    set title "A call of 60 characters, one thread, no reader: p50, and p99 above it"
    set xlabel "gap between calls"
    set ylabel "nanoseconds"
    set logscale y
    set yrange [10:*]
    plot for [bar=0:4] data."/call.dat" using 2+2*bar:2+2*bar:3+2*bar:xtic(1) \
        title columnhead(2+2*bar)
    unset logscale y
}
if (measured("latency.dat")) {
    set output output."/latency.svg"
    set title "From the call to the reader in another process: p50, and p99 above it"
    set xlabel "gap between messages"
    set ylabel "microseconds"
    set yrange [0:*]
    plot for [bar=0:1] data."/latency.dat" using 2+2*bar:2+2*bar:3+2*bar:xtic(1) \
        title columnhead(2+2*bar)
}
if (measured("rate.dat")) {
    set output output."/rate.svg"
    set title "Messages to a reader in another process, none lost"
    unset xlabel
    set ylabel "thousand messages per second"
    set yrange [0:*]
    unset key
    set style histogram clustered gap 1
    plot data."/rate.dat" using 2:xtic(1)
}
