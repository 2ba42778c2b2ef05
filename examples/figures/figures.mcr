READ cif ../hematite-pressure/hematite.cif
Y
GRAPH cells P ../../docs/figures/hematite.svg
EXIT
