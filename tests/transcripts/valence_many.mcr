READ cif data/valence_many.cif
Y
CALC poly
0.01,2.1
2

0
CALC valences
Y
-1 1.7 0.37
0 1.7 0.37
2 2.2 0.40


N
0
EXIT
