CLEAR
READ cif $1
Y
SET dmin
$2 $3
CALC poly

0
TABLE bond lengths
$4

