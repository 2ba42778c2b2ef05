CHECK data/mixed.cif
data/required.cif
Y
PTEDIT
x
P
1 2.5 0.01
1,-2 3.5
2 -1 1.0
9 1.0
1.5 2
2
1 -3
1 -0.5(2)
1 2.50E0(3)
1 1,54

T
1 0
1 350 2

B
2 1.25 400 0.02 5
2 1.25(4) 400 6


LIST block
CHECK data/mixed.cif
data/none
data/mixed.cif
N
EXIT
