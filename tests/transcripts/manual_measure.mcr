READ cif examples/measures/pyroxenes.cif
Y
MEASURE
chain = angle(O3, O3, O3)
kink = 180 - chain

CLEAR
READ cif examples/measures/quartz.cif
Y
MEASURE chain
MEASURE kink =
MEASURE chain =
MEASURE
bridge = angle(Si1, O1, Si1)
gap = dist(Si1, Si1)

CLEAR
READ cif examples/measures/lepidolite.cif
Y
MEASURE bridge =
MEASURE gap =
MEASURE
ring = angle(O1, O2, O2)
ring = angle(O1, O2, O2[2])

CLEAR
READ cif examples/measures/perovskite.cif
Y
MEASURE ring =
MEASURE
joint = angle(Ti, O1, Ti)
tilt = (180 - joint)/2

CLEAR
READ cif examples/measures/lanthanum-aluminate.cif
Y
MEASURE
joint = angle(Al1, O1, Al1)
tilt = atan(2*sqrt(3)*(x(O1) - 1/2))

CLEAR
READ cif examples/hematite-pressure/hematite.cif
Y
MEASURE tilt =
MEASURE joint =
MEASURE
shrink = V/ref(V)
base = c/a
V0 = 301.78(6)
ratio = V/V0

CLEAR
READ cif examples/sodium-nickelate-pressure/nanio2.cif
Y
MEASURE shape = baur(Ni1)
CALC poly


MEASURE
shrink =
base =
V0 =
ratio =
V0 =
shape = baur(Ni1)
near = econ(Ni1)

LIST measures
TABLE measures
EXIT
