// Published structures with what is known of their sites. Figures said to be close to a publication
// may differ from it in the last digits. The mean lengths of bonds are those commonly given for the
// mineral, to 0.006 angstroms; they betray a coordinate typed wrong. Tests nothing itself.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace PUBLISHED_CRYSTALS {

struct SPECIES {
  std::string LABEL;  // element and charge
  double OCC = 1.0;
};

struct POSITION {
  std::string NAME;
  std::vector<SPECIES> ON_IT;
  std::array<double, 3> X{};
};

// How many bonds, from the shortest on, and their mean in angstroms.
struct BOND_GROUP {
  std::size_t COUNT = 0;
  double MEAN = 0.0;
};

// What is known of a site: the formal charge, how near to it the sum lies, and all its bonds.
struct ENVIRONMENT {
  std::string NAME;
  double CHARGE = 0.0;
  double WITHIN = 0.0;
  std::vector<BOND_GROUP> BONDS;
};

struct PUBLISHED_CRYSTAL {
  std::array<double, 6> CELL{};
  std::string SYMBOL;
  std::vector<std::string> GENERATORS;  // International Tables for Crystallography, volume A
  std::size_t OPERATORS = 0;            // of a cell, centring included
  double DMAX = 0.0;
  std::vector<POSITION> POSITIONS;
  std::vector<ENVIRONMENT> ENVIRONMENTS;
};

inline const std::string face_1 = "x,y+1/2,z+1/2";
inline const std::string face_2 = "x+1/2,y,z+1/2";
inline const std::string body = "x+1/2,y+1/2,z+1/2";
inline const std::string base = "x+1/2,y+1/2,z";
inline const std::string obverse = "x+2/3,y+1/3,z+1/3";
inline const std::string inversion = "-x,-y,-z";

// Close to L. Levien, C. T. Prewitt and D. J. Weidner, American Mineralogist 65 (1980) 920-930, at
// 1 bar; origin of the tables.
inline const PUBLISHED_CRYSTAL quartz{
    {4.916, 4.916, 5.4054, 90, 90, 120},
    "P 32 2 1",
    {"-y,x-y,z+2/3", "y,x,-z"},
    6,
    2.2,
    {{"Si", {{"Si+4"}}, {0.4697, 0, 0.666667}}, {"O", {{"O-2"}}, {0.4135, 0.2669, 0.785767}}},
    {{"Si", 4.0, 0.25, {{2, 1.605}, {2, 1.614}}}, {"O", 2.0, 0.15, {}}}};

// Close to K. Fujino, S. Sasaki, Y. Takeuchi and R. Sadanaga, Acta Cryst. B37 (1981) 513-518. See
// also R. M. Hazen, American Mineralogist 61 (1976) 1280-1293.
inline const PUBLISHED_CRYSTAL forsterite{{4.7535, 10.1943, 5.9807, 90, 90, 90},
                                          "P b n m",
                                          {"-x,-y,z+1/2", "-x+1/2,y+1/2,-z+1/2", inversion},
                                          8,
                                          2.4,
                                          {{"M1", {{"Mg+2"}}, {0, 0, 0}},
                                           {"M2", {{"Mg+2"}}, {0.99169, 0.27739, 0.25}},
                                           {"Si", {{"Si+4"}}, {0.42645, 0.09403, 0.25}},
                                           {"O1", {{"O-2"}}, {0.76580, 0.09156, 0.25}},
                                           {"O2", {{"O-2"}}, {0.22164, 0.44705, 0.25}},
                                           {"O3", {{"O-2"}}, {0.27751, 0.16310, 0.03304}}},
                                          {{"M1", 2.0, 0.2, {{2, 2.068}, {2, 2.084}, {2, 2.131}}},
                                           {"M2", 2.0, 0.2, {}},
                                           {"Si", 4.0, 0.25, {{1, 1.615}, {2, 1.637}, {1, 1.655}}},
                                           {"O1", 2.0, 0.2, {}},
                                           {"O2", 2.0, 0.2, {}},
                                           {"O3", 2.0, 0.2, {}}}};

// Close to J. Lewis, D. Schwarzenbach and H. D. Flack, Acta Cryst. A38 (1982) 733-739, and R. E.
// Newnham and Y. M. de Haan, Zeitschrift fuer Kristallographie 117 (1962) 235-237.
inline const std::vector<std::string> r_3bar_c{"-y,x-y,z", "y,x,-z+1/2", inversion, obverse};
inline const PUBLISHED_CRYSTAL corundum{
    {4.7602, 4.7602, 12.9933, 90, 90, 120},
    "R -3 c",
    r_3bar_c,
    36,
    2.2,
    {{"Al", {{"Al+3"}}, {0, 0, 0.35216}}, {"O", {{"O-2"}}, {0.30624, 0, 0.25}}},
    {{"Al", 3.0, 0.3, {{3, 1.856}, {3, 1.972}}}, {"O", 2.0, 0.2, {}}}};

// L. W. Finger and R. M. Hazen, Journal of Applied Physics 51 (1980) 5362-5367, at 1 bar.
inline const PUBLISHED_CRYSTAL hematite{
    {5.0347, 5.0347, 13.7473, 90, 90, 120},
    "R -3 c",
    r_3bar_c,
    36,
    2.2,
    {{"Fe", {{"Fe+3"}}, {0, 0, 0.35534}}, {"O", {{"O-2"}}, {0.3056, 0, 0.25}}},
    {{"Fe", 3.0, 0.2, {{3, 1.945}, {3, 2.113}}}, {"O", 2.0, 0.15, {}}}};

// Close to H. Effenberger, K. Mereiter and J. Zemann, Zeitschrift fuer Kristallographie 156 (1981)
// 233-243.
inline const PUBLISHED_CRYSTAL calcite{
    {4.9896, 4.9896, 17.0610, 90, 90, 120},
    "R -3 c",
    r_3bar_c,
    36,
    2.5,
    {{"Ca", {{"Ca+2"}}, {0, 0, 0}},
     {"C", {{"C+4"}}, {0, 0, 0.25}},
     {"O", {{"O-2"}}, {0.2568, 0, 0.25}}},
    {{"Ca", 2.0, 0.15, {{6, 2.360}}}, {"C", 4.0, 0.1, {{3, 1.281}}}, {"O", 2.0, 0.1, {}}}};

// Close to E. P. Meagher and G. A. Lager, Canadian Mineralogist 17 (1979) 77-85, at 25 degrees.
inline const PUBLISHED_CRYSTAL rutile{
    {4.5937, 4.5937, 2.9587, 90, 90, 90},
    "P 42/m n m",
    {"-y+1/2,x+1/2,z+1/2", "-x+1/2,y+1/2,-z+1/2", inversion},
    16,
    2.2,
    {{"Ti", {{"Ti+4"}}, {0, 0, 0}}, {"O", {{"O-2"}}, {0.3048, 0.3048, 0}}},
    {{"Ti", 4.0, 0.2, {{4, 1.949}, {2, 1.980}}}, {"O", 2.0, 0.1, {}}}};

// Close to R. M. Hazen and L. W. Finger, American Mineralogist 64 (1979) 196-201, at 1 bar.
inline const PUBLISHED_CRYSTAL zircon{{6.6042, 6.6042, 5.9796, 90, 90, 90},
                                      "I 41/a m d :2",
                                      {"-y+1/4,x+3/4,z+1/4", "-x+1/2,y,-z+1/2", inversion, body},
                                      32,
                                      2.4,
                                      {{"Zr", {{"Zr+4"}}, {0, 0.75, 0.125}},
                                       {"Si", {{"Si+4"}}, {0, 0.25, 0.375}},
                                       {"O", {{"O-2"}}, {0, 0.0661, 0.1953}}},
                                      {{"Zr", 4.0, 0.2, {{4, 2.130}, {4, 2.268}}},
                                       {"Si", 4.0, 0.1, {{4, 1.622}}},
                                       {"O", 2.0, 0.1, {}}}};

// S. A. T. Redfern, R. J. Harrison, H. St C. O'Neill and D. R. R. Wood, American Mineralogist 84
// (1999) 299-310, at 299 K: magnesium and aluminium on both sites.
inline const PUBLISHED_CRYSTAL spinel{
    {8.0836, 8.0836, 8.0836, 90, 90, 90},
    "F d -3 m :2",
    {"-x+3/4,-y+1/4,z+1/2", "-x+1/4,y+1/2,-z+3/4", "z,x,y", "y+3/4,x+1/4,-z+1/2", inversion, face_1,
     face_2},
    192,
    2.2,
    {{"T", {{"Mg+2", 0.782}, {"Al+3", 0.218}}, {0.125, 0.125, 0.125}},
     {"M", {{"Al+3", 0.891}, {"Mg+2", 0.109}}, {0.5, 0.5, 0.5}},
     {"O", {{"O-2"}}, {0.26171, 0.26171, 0.26171}}},
    {{"T", 2.218, 0.2, {}}, {"M", 2.891, 0.3, {}}, {"O", 2.0, 0.2, {}}}};

// Close to G. V. Gibbs and J. V. Smith, American Mineralogist 50 (1965) 2023-2039.
inline const PUBLISHED_CRYSTAL pyrope{
    {11.459, 11.459, 11.459, 90, 90, 90},
    "I a -3 d",
    {"-x+1/2,-y,z+1/2", "-x,y+1/2,-z+1/2", "z,x,y", "y+3/4,x+1/4,-z+1/4", inversion, body},
    96,
    2.45,
    {{"Mg", {{"Mg+2"}}, {0.125, 0, 0.25}},
     {"Al", {{"Al+3"}}, {0, 0, 0}},
     {"Si", {{"Si+4"}}, {0.375, 0, 0.25}},
     {"O", {{"O-2"}}, {0.0329, 0.0502, 0.6534}}},
    {{"Mg", 2.0, 0.35, {{4, 2.198}, {4, 2.343}}},
     {"Al", 3.0, 0.2, {{6, 1.887}}},
     {"Si", 4.0, 0.15, {{4, 1.635}}},
     {"O", 2.0, 0.15, {}}}};

// Close to G. E. Harlow and G. E. Brown, American Mineralogist 65 (1980) 986-995, by neutrons.
inline const PUBLISHED_CRYSTAL albite{{8.142, 12.785, 7.159, 94.19, 116.61, 87.68},
                                      "C -1",
                                      {inversion, base},
                                      4,
                                      2.9,
                                      {{"Al", {{"Al+3"}}, {0.00887, 0.16835, 0.20815}},
                                       {"Si1", {{"Si+4"}}, {0.00370, 0.82030, 0.23700}},
                                       {"Si2", {{"Si+4"}}, {0.69205, 0.11022, 0.31495}},
                                       {"Si3", {{"Si+4"}}, {0.68121, 0.88180, 0.36041}},
                                       {"Na", {{"Na+1"}}, {0.26824, 0.98866, 0.14624}},
                                       {"O1", {{"O-2"}}, {0.00491, 0.13110, 0.96684}},
                                       {"O2", {{"O-2"}}, {0.59219, 0.99714, 0.28036}},
                                       {"O3", {{"O-2"}}, {0.81226, 0.10971, 0.19092}},
                                       {"O4", {{"O-2"}}, {0.82010, 0.85098, 0.25847}},
                                       {"O5", {{"O-2"}}, {0.01325, 0.30222, 0.27046}},
                                       {"O6", {{"O-2"}}, {0.02365, 0.69345, 0.22945}},
                                       {"O7", {{"O-2"}}, {0.20787, 0.10920, 0.38914}},
                                       {"O8", {{"O-2"}}, {0.18412, 0.86799, 0.43604}}},
                                      {{"Al", 3.0, 0.15, {{4, 1.742}}},
                                       {"Si1", 4.0, 0.25, {{4, 1.609}}},
                                       {"Si2", 4.0, 0.25, {{4, 1.614}}},
                                       {"Si3", 4.0, 0.25, {{4, 1.615}}},
                                       {"Na", 1.0, 0.25, {}}}};

// Close to M. Cameron, S. Sueno, C. T. Prewitt and J. J. Papike, American Mineralogist 58 (1973)
// 594-618, at 24 degrees.
inline const PUBLISHED_CRYSTAL diopside{
    {9.746, 8.899, 5.251, 90, 105.63, 90},
    "C 1 2/c 1",
    {"-x,y,-z+1/2", inversion, base},
    8,
    2.8,
    {{"Mg", {{"Mg+2"}}, {0, 0.9082, 0.25}},
     {"Ca", {{"Ca+2"}}, {0, 0.3015, 0.25}},
     {"Si", {{"Si+4"}}, {0.2862, 0.0933, 0.2293}},
     {"O1", {{"O-2"}}, {0.1156, 0.0873, 0.1422}},
     {"O2", {{"O-2"}}, {0.3611, 0.2500, 0.3180}},
     {"O3", {{"O-2"}}, {0.3505, 0.0176, 0.9953}}},
    {{"Mg", 2.0, 0.15, {{2, 2.050}, {2, 2.065}, {2, 2.115}}},
     {"Ca", 2.0, 0.15, {{2, 2.353}, {2, 2.360}, {2, 2.561}, {2, 2.717}}},
     {"Si", 4.0, 0.15, {{1, 1.585}, {1, 1.602}, {1, 1.664}, {1, 1.687}}},
     {"O1", 2.0, 0.2, {}},
     {"O2", 2.0, 0.45, {}},
     {"O3", 2.0, 0.4, {}}}};

// Cells of R. W. G. Wyckoff, Crystal Structures, second edition, volume 1 (1963): halite, periclase
// and fluorite. The lengths are a/2, a/2 and a times the root of 3 over 4.
inline const std::vector<std::string> f_m_3bar_m{"-x,-y,z", "-x,y,-z", "z,x,y", "y,x,-z",
                                                 inversion, face_1,    face_2};
inline const PUBLISHED_CRYSTAL halite{
    {5.64056, 5.64056, 5.64056, 90, 90, 90},
    "F m -3 m",
    f_m_3bar_m,
    192,
    3.0,
    {{"Na", {{"Na+1"}}, {0, 0, 0}}, {"Cl", {{"Cl-1"}}, {0.5, 0.5, 0.5}}},
    {{"Na", 1.0, 0.05, {{6, 2.82028}}}, {"Cl", 1.0, 0.05, {{6, 2.82028}}}}};
inline const PUBLISHED_CRYSTAL periclase{
    {4.2112, 4.2112, 4.2112, 90, 90, 90},
    "F m -3 m",
    f_m_3bar_m,
    192,
    2.2,
    {{"Mg", {{"Mg+2"}}, {0, 0, 0}}, {"O", {{"O-2"}}, {0.5, 0.5, 0.5}}},
    {{"Mg", 2.0, 0.1, {{6, 2.1056}}}, {"O", 2.0, 0.1, {{6, 2.1056}}}}};
inline const PUBLISHED_CRYSTAL fluorite{
    {5.46295, 5.46295, 5.46295, 90, 90, 90},
    "F m -3 m",
    f_m_3bar_m,
    192,
    2.5,
    {{"Ca", {{"Ca+2"}}, {0, 0, 0}}, {"F", {{"F-1"}}, {0.25, 0.25, 0.25}}},
    {{"Ca", 2.0, 0.1, {{8, 2.3655}}}, {"F", 1.0, 0.05, {{4, 2.3655}}}}};

// X. Liu and R. C. Liebermann, Physics and Chemistry of Minerals 20 (1993) 171-175, at 298 K.
inline const PUBLISHED_CRYSTAL perovskite{{5.3785, 5.4419, 7.6400, 90, 90, 90},
                                          "P b n m",
                                          {"-x,-y,z+1/2", "-x+1/2,y+1/2,-z+1/2", inversion},
                                          8,
                                          2.8,
                                          {{"Ca", {{"Ca+2"}}, {0.99280, 0.03300, 0.25}},
                                           {"Ti", {{"Ti+4"}}, {0, 0.5, 0}},
                                           {"O1", {{"O-2"}}, {0.07220, 0.48930, 0.25}},
                                           {"O2", {{"O-2"}}, {0.71740, 0.28420, 0.03460}}},
                                          {{"Ca", 2.0, 0.2, {}}, {"Ti", 4.0, 0.25, {}}}};

// F. C. Hawthorne and R. B. Ferguson, Canadian Mineralogist 13 (1975) 289-292.
inline const PUBLISHED_CRYSTAL anhydrite{
    {6.993, 6.995, 6.245, 90, 90, 90},
    "A m m a",
    {"-x+1/2,-y,z", "x+1/2,-y,-z", inversion, face_1},
    16,
    2.7,
    {{"Ca", {{"Ca+2"}}, {0.75, 0, 0.34760}},
     {"S", {{"S+6"}}, {0.25, 0, 0.15556}},
     {"O1", {{"O-2"}}, {0.25, 0.16990, 0.01620}},
     {"O2", {{"O-2"}}, {0.08190, 0, 0.29750}}},
    {{"Ca", 2.0, 0.2, {{2, 2.345}, {2, 2.466}, {2, 2.511}, {2, 2.563}}},
     {"S", 6.0, 0.25, {{2, 1.473}, {2, 1.474}}},
     {"O1", 2.0, 0.2, {}},
     {"O2", 2.0, 0.2, {}}}};

// P. Comodi, S. Nazzareni, P. F. Zanazzi and S. Speziale, American Mineralogist 93 (2008)
// 1530-1537, at 0.25 GPa. Without its hydrogen, the oxygen of the water is far from 2.
inline const PUBLISHED_CRYSTAL gypsum{{6.282, 15.175, 5.673, 90, 114.13, 90},
                                      "C 2/c",
                                      {"-x,y,-z+1/2", inversion, base},
                                      8,
                                      2.7,
                                      {{"Ca", {{"Ca+2"}}, {0, 0.16970, 0.25}},
                                       {"S", {{"S+6"}}, {0, 0.32850, 0.75}},
                                       {"O1", {{"O-2"}}, {0.08400, 0.27200, 0.59200}},
                                       {"O2", {{"O-2"}}, {0.20000, 0.38300, 0.91400}},
                                       {"OW", {{"O-2"}}, {-0.21100, 0.06600, -0.08100}}},
                                      {{"Ca", 2.0, 0.2, {}}, {"S", 6.0, 0.25, {}}}};

// L. A. V. Nagle-Cocco, C. L. Bull, C. J. Ridley and S. E. Dutton, Inorganic Chemistry 61 (2022)
// 4312-4321, under the least load.
inline const PUBLISHED_CRYSTAL sodium_nickelate{{5.3197, 2.84614, 5.5824, 90, 110.447, 90},
                                                "C 2/m",
                                                {"-x,y,-z", inversion, base},
                                                8,
                                                2.5,
                                                {{"Ni", {{"Ni+3"}}, {0, 0, 0}},
                                                 {"O", {{"O-2"}}, {0.2828, 0, 0.8043}},
                                                 {"Na", {{"Na+1"}}, {0, 0.5, 0.5}}},
                                                {{"Ni", 3.0, 0.25, {{4, 1.916}, {2, 2.146}}}}};

}  // namespace PUBLISHED_CRYSTALS
