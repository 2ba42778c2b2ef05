READ cif pyroxenes.cif
Y
MEASURE
chain = angle(O3, O3, O3)
bridge = angle(Si, O3, Si)
kink = 180 - chain

CLEAR
READ cif lanthanum-aluminate.cif
Y
MEASURE
joint = angle(Al1, O1, Al1)
tilt = atan(2*sqrt(3)*(x(O1) - 1/2))

EXIT
