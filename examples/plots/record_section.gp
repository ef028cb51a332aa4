# A record section with the predicted times of P, PP, S and SS: gnuplot record_section.gp
load "style.gp"
set terminal pngcairo size 1400,1000
set output "record_section.png"
file = "record_section.txt"
set bmargin at screen 0.11; set tmargin at screen 0.93
eval heading("{/:Bold Record section,} vertical component, each trace normalised")
set xlabel "time after the origin, minutes"
set ylabel "epicentral distance, degrees"
stats file index 0 using 1:2 nooutput
least = STATS_min_y; greatest = STATS_max_y
set xrange [0:ceil(STATS_max_x / 60)]
set yrange [least - 4:greatest + 6]
set xtics 5; set ytics 10
colour(i) = i < 3 ? blue : vermilion
set linetype 101 dashtype solid
set linetype 102 dashtype (12, 6)
plot for [i = 1:4] file index i using ($1 / 60):2 with lines linetype 102 - i % 2 linewidth 3 linecolor rgb colour(i), \
     file index 0 using ($1 / 60):($2 + 3 * $3) with lines linewidth 0.6 linecolor rgb "#222222", \
     for [i = 1:4] file index i using ($2 >= greatest ? $1 / 60 : NaN):(greatest + 4):(word("P PP S SS", i)) \
       with labels center textcolor rgb colour(i) font "DejaVu Sans Bold,19"
