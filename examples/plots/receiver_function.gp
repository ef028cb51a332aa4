# A receiver function with the depths where P would convert to S: gnuplot receiver_function.gp
load "style.gp"
set output "receiver_function.png"
file = "receiver_function.txt"
stats file index 0 using 1:2 nooutput
low = STATS_min_y; high = STATS_max_y; span = high - low
eval heading("{/:Bold Receiver function,} peaks labelled with their apparent depth of conversion from P to S")
set xlabel "lag behind P, s"
set ylabel "radial against vertical amplitude"
set xrange [-3:30]
set yrange [low - 0.05 * span:high + 0.12 * span]
set xzeroaxis linetype 1 linewidth 1 linecolor rgb "black"
height(label) = label eq "P" ? 1.01 : 0.5
plot file index 0 using 1:($2 > 0 ? $2 : 0) with filledcurves y1=0 linecolor rgb blue fillstyle solid 0.45, \
     file index 0 using 1:($2 < 0 ? $2 : 0) with filledcurves y1=0 linecolor rgb vermilion fillstyle solid 0.45, \
     file index 0 using 1:2 with lines linewidth 1.6 linecolor rgb "black", \
     file index 1 using 1:(0):(0):(high * height(strcol(2))) with vectors nohead dashtype 2 linecolor rgb grey, \
     file index 1 using 1:(high * height(strcol(2))):2 with labels center offset 0,0.8 font "DejaVu Sans Bold,19"
