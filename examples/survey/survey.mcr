CALC polyhedra
1.2,2.2
0
CSV all sheet.csv
EXIT
