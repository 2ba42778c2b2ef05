set terminal svg size 321,263 font 'Helvetica,10.5' background 'white' noenhanced
set output 'sites.svg'
set encoding utf8
set datafile separator ','
set datafile commentschars ''
set xlabel 'Mean Si-O-Si (°)' offset 0,0.6
set ylabel 'Mean Si-O (Å)' offset 1,0
set key off
plot 'sites.csv' skip 1 using 6:5 with points pt 7 ps 0.5 lc rgb '#000000'
