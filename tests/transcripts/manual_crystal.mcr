READ Crystal17 data/periclase.out
225
Y
CALC polyhedra

0
WRITE cif periclase
Y
Y
SYS
sed -n 22,23p periclase.cif
tail -n 2 periclase.cif
PROG
EXIT
