# Settings of all pictures: size, fonts and a palette for colour-blind readers (Okabe and Ito, 2008).
reset
set encoding utf8
set terminal pngcairo size 1400,800 font "DejaVu Sans,18" linewidth 1.4 background "white"
blue = 0x0072B2; vermilion = 0xD55E00; green = 0x008060; purple = 0xAA4499; grey = 0x777777
set border 3 linewidth 1.2
set tics nomirror out
set grid linetype 1 linewidth 0.6 linecolor rgb "#e4e4e4"
unset key
set lmargin at screen 0.095; set rmargin at screen 0.97; set tmargin at screen 0.92; set bmargin at screen 0.135
# Titles are labels, because they start at the left edge.
heading(text) = sprintf("set label 1 \"%s\" at graph 0,1 left offset 0,1.1 font 'DejaVu Sans,20'", text)
firstLine(file) = system(sprintf("head -n 1 %s | cut -c 3-", file))
