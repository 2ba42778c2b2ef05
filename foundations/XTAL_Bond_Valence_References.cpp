// References of the bond-valence parameters, 0 to 36, in the order of the published compilation's
// list (letters a to z, aa, ab, ac, ae to ak).
#include "foundations/XTAL_Bond_Valence_Tables.h"

// clang-format off
namespace XTAL {

const std::array<std::string_view, 37> BVS_REFERENCES{
    /*  0 */ "Unknown  (provided by the user)",
    /*  1 */ "Brown and Altermatt (1985) Acta Cryst. B41, 244-247",
    /*  2 */ "Brese and O'Keeffe (1991) Acta Cryst. B47, 192-197",
    /*  3 */ "Adams (2001) Acta Cryst. B57, 278-287",
    /*  4 */ "Hu et al. (1995) Inorg. Chim. Acta 232, 161-165",
    /*  5 */ "Brown, I.D., private communication",
    /*  6 */ "Brown et al. (1984) Inorg. Chem. 23, 4506-4508",
    /*  7 */ "Palenik (1997) Inorg. Chem. 36, 4888-4890",
    /*  8 */ "Kanowitz and Palenik (1998) Inorg. Chem. 37, 2086-2088",
    /*  9 */ "Wood and Palenik (1998) Inorg. Chem. 37, 4149-4151",
    /* 10 */ "Liu and Thorp (1993) Inorg. Chem. 32, 4102-4105",
    /* 11 */ "Palenik (1997) Inorg. Chem. 36, 3394-3397",
    /* 12 */ "Shields, Raithby, Allen and Motherwell (2000) Acta Cryst. B56, 455-465",
    /* 13 */ "Chen, Zhou and Hu (2002) Chinese Sci. Bull. 47, 978-980",
    /* 14 */ "Kihlborg (1963) Ark. Kemi 21, 471; Schroeder (1975) Acta Cryst. B31, 2294",
    /* 15 */ "Allmann (1975) Monatsh. Chem. 106, 779",
    /* 16 */ "Zachariasen (1978) J. Less-Common Met. 62, 1",
    /* 17 */ "Krivovichev and Brown (2001) Z. Krist. 216, 245",
    /* 18 */ "Burns, Ewing and Hawthorne (1997) Can. Mineral. 35, 1551-1570",
    /* 19 */ "Garcia-Rodriguez et al. (2000) Acta Cryst. B56, 565-569",
    /* 20 */ "Mahapatra et al. (1996) J. Am. Chem. Soc. 118, 11555",
    /* 21 */ "Wood and Palenik (1999) Inorg. Chem. 38, 1031-1034",
    /* 22 */ "Wood and Palenik (1999) Inorg. Chem. 38, 3926-3930",
    /* 23 */ "Wood, Abboud, Palenik and Palenik (2000) Inorg. Chem. 39, 2065-2068",
    /* 24 */ "Tytko, Mehmke and Kurad (1999) Struct. Bonding 93, 1-66",
    /* 25 */ "Gruendemann et al. (1999) J. Phys. Chem. A 103, 4752-4754",
    /* 26 */ "Zocchi (2000) Solid State Sci. 2, 383-387",
    /* 27 */ "Jensen, Palenik and Tiekink (2001) Polyhedron 20, 2137",
    /* 28 */ "Roulhac and Palenik (2003) Inorg. Chem. 42, 118-121",
    /* 29 */ "Holsa et al. (2002) J. Solid State Chem. 165, 48-55",
    /* 30 */ "Trzesowska, Kruszynski and Bartczak (2004) Acta Cryst. B60, 174-178",
    /* 31 */ "Locock and Burns (2004) Z. Krist. 219, 259-266",
    /* 32 */ "Hu and Zhou (2004) Z. Krist. 219, 614-620",
    /* 33 */ "Trzesowska, Kruszynski and Bartczak (2005) Acta Cryst. B61, 429-434",
    /* 34 */ "Palenik (2003) Inorg. Chem. 42, 2725-2728",
    /* 35 */ "Hong, Zhou and Hu (2004) Acta Chim. Sinica 62, 1733-1737",
    /* 36 */ "Sidey (2006) Acta Cryst. B62, 949-951",
};

}  // namespace XTAL
