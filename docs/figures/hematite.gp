set terminal svg size 321,263 font 'Helvetica,10.5' background 'white' noenhanced
set output 'hematite.svg'
set encoding utf8
set datafile separator ','
set datafile commentschars ''
set key below Left reverse samplen 1 height 0.5 autotitle columnheader
set autoscale xfix
set offsets graph 0.05, graph 0.05, graph 0.05, graph 0.05
set xlabel 'P (GPa)' offset 0,0.6
set ylabel 'Cell relative to the reference' offset 1,0
set errorbars 0
esd(n) = valid(n) ? column(n) : 0
plot 'hematite.csv' using 5:8:(esd(6)):(esd(9)) with xyerrorbars pt 7 ps 0.6 lc rgb '#000000' title 'a/a0 ×2', \
     '' using 5:10:(esd(6)):(esd(11)) with xyerrorbars pt 4 ps 0.6 lc rgb '#D55E00' title 'c/c0', \
     '' using 5:12:(esd(6)):(esd(13)) with xyerrorbars pt 9 ps 0.6 lc rgb '#0072B2' title 'V/V0', \
     for [n = 8:12:2] '' using 5:($1 == 1 ? column(n) : NaN) with points pt 6 ps 1.2 lw 0.7 lc rgb '#000000' title (n == 8 ? 'reference' : '')
