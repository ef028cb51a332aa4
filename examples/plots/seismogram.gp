# A seismogram before and after processing, with the picks of its header: gnuplot seismogram.gp
load "style.gp"
set terminal pngcairo size 1280,780
set output "seismogram.png"
colourOf(label) = label[1:1] eq "P" ? blue : label[1:1] eq "S" ? vermilion : grey
set multiplot layout 2,1 margins 0.14,0.97,0.12,0.93 spacing 0.03,0.14
# The label has a fixed position for any width of the numbers.
set label 2 "amplitude, counts" at screen 0.018,graph 0.5 center rotate by 90
do for [i = 1:2] {
  file = i == 1 ? "seismogram_before.txt" : "seismogram_after.txt"
  set autoscale
  stats file index 0 using 1:2 nooutput
  low = STATS_min_y; span = STATS_max_y - STATS_min_y
  if (i == 1) { set xrange [STATS_min_x:STATS_max_x]; start = STATS_min_x; end = STATS_max_x }
  set xrange [start:end]
  set yrange [low - 0.05 * span:low + 1.25 * span]
  eval heading((i == 1 ? "{/:Bold As recorded:} " : "{/:Bold Processed:} ") . firstLine(file))
  if (i == 2) { set xlabel "time, s" }
  plot file index 1 using 1:(low):(0):(1.1 * span):(colourOf(strcol(2))) \
         with vectors nohead linewidth 2.2 linecolor rgb variable, \
       file index 0 using 1:2 with lines linewidth 0.7 linecolor rgb "black", \
       file index 1 using 1:(low + 1.18 * span):2:(colourOf(strcol(2))) \
         with labels center textcolor rgb variable font "DejaVu Sans Bold,19"
}
unset multiplot
