HELP
INFO
MODE
7
1
MODE

nonsense
S
LOG dialogue.log
READ cif examples/gypsum-pressure/gypsum.cif
Y
SORT
P
D
LIST block
OMIT 2,-6

USE 3
SET hide
LIST block
UNSORT
OMIT all
CLEAR
LIST block
EXIT
