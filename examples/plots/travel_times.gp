# The travel-time curves of the nineteen phases of the IASP91 tables: gnuplot travel_times.gp
load "style.gp"
set terminal pngcairo size 1400,1100
set output "travel_times.png"
file = "travel_times.txt"
# In the order of the file: names, colours and label positions (degrees, then the offset in characters).
phases  = "P PP PcP pP sP S SS ScS sS pS SP PS PcS ScP SKSac SKSdf PKPab PKPdf PKiKP"
colours = "1 1  1   1  1  2 2  2   2  2  3  3  3   3   4     4     5     5     5"
degrees = "143 150 5 98 94 143 150 5 70 91 133 135 61 61 101 170 172 165 8"
right   = "1.7 1 1 2.2 -0.8 1.7 -1.5 1 -0.4 -1.4 -1 1.5 2.8 2.8 4.5 0 -1 0 2"
up      = "0 -1 0.8 0.1 0.9 0.2 0.7 -0.9 0.8 1.9 0.8 -0.9 0.5 -0.2 -1.1 0.8 0.8 -0.9 0.8"
colour(i) = word("0x0072B2 0xD55E00 0x008060 0xAA4499 0x222222", int(word(colours, i))) + 0
dashed(i) = 1 + (i == 4 || i == 5 || i == 9 || i == 10)
set bmargin at screen 0.1; set tmargin at screen 0.94
eval heading("{/:Bold Travel times in IASP91,} " . firstLine(file)[4:] . " (phases reflected above the source dashed)")
set xlabel "epicentral distance, degrees"
set ylabel "travel time, minutes"
set xrange [0:180]; set yrange [0:50]
set xtics 20; set ytics 5
plot for [i = 1:19] file index (i - 1) using 1:($2 / 60) \
       with lines linewidth 2 dashtype dashed(i) linecolor rgb colour(i), \
     file index 9 using ($1 == 91 ? $1 : NaN):($2 / 60):(-2.6):(2.4) with vectors nohead linecolor rgb grey, \
     for [i = 1:19] file index (i - 1) using ($1 == word(degrees, i) + 0 ? $1 : NaN):($2 / 60):(word(phases, i)) \
       with labels textcolor rgb colour(i) offset word(right, i) + 0, word(up, i) + 0 font "DejaVu Sans Bold,18"
