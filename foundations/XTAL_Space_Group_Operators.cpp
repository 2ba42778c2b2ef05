// Single operators: exact and real, as text and back, applied, compared, named by codes.
#include <algorithm>  // for count, max
#include <cmath>      // for floor, round, abs
#include <limits>
#include <optional>

#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Space_Group_Parts.h"

namespace XTAL {

using namespace KVA_UTILITIES;

void SET_ERR_SYMM(const std::string& text) {
  constexpr int message_length = 150;
  ERR_SYMM = true;
  ERR_SYMM_MESS = CUT_TEXT(text, message_length);
}

// ---- exact operators ----

namespace {

int REDUCED_UNITS(int units) {
  const int rest = units % TRANSLATION_UNITS;
  return rest < 0 ? rest + TRANSLATION_UNITS : rest;
}

// The n that a translation close to n/24 is meant to be: files write 0.3333 for 1/3.
std::optional<double> MEANT_24THS(double translation) {
  constexpr double close = 0.002;
  const double nearest = std::round(translation * 24.0);
  if (std::abs(translation - nearest / 24.0) < close) return nearest;
  return std::nullopt;
}

// A finite translation in units, 0 up to 1.
int UNITS_OF(float translation) {
  const double wide = static_cast<double>(translation);
  const double rest = wide - std::floor(wide);
  if (const std::optional<double> n = MEANT_24THS(rest))
    return REDUCED_UNITS(static_cast<int>(*n) * UNITS_OF_24TH);
  constexpr double units_of_4_decimals = TRANSLATION_UNITS / 10000.0;
  return REDUCED_UNITS(static_cast<int>(std::round(rest * 10000.0) * units_of_4_decimals));
}

float FRACTION_OF(int units) {
  return static_cast<float>(static_cast<double>(units) / TRANSLATION_UNITS);
}

}  // namespace

EXACT_OP EXACT_FROM(const IMATRIX3& rot, const VECTOR3& tr) {
  return {rot, {UNITS_OF(tr[0]), UNITS_OF(tr[1]), UNITS_OF(tr[2])}};
}

SYM_OP REAL_FROM(const EXACT_OP& op) {
  return {op.ROT, {FRACTION_OF(op.TR[0]), FRACTION_OF(op.TR[1]), FRACTION_OF(op.TR[2])}};
}

EXACT_OP PRODUCT(const EXACT_OP& second, const EXACT_OP& first) {
  EXACT_OP product{MULTIPLY(second.ROT, first.ROT), second.TR};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) product.TR[i] += second.ROT[i][k] * first.TR[k];
    product.TR[i] = REDUCED_UNITS(product.TR[i]);
  }
  return product;
}

IMATRIX3 NEGATIVE(const IMATRIX3& rot) {
  return MULTIPLY(INVERSION, rot);
}

int ROTATION_TYPE(const IMATRIX3& rot) {
  for (const auto& row : rot)
    for (int element : row)
      if (std::abs(element) > LARGEST_ELEMENT) return 0;
  const int sign = DETERMINANT(rot);
  if (sign != 1 && sign != -1) return 0;
  const IMATRIX3 proper = sign == 1 ? rot : NEGATIVE(rot);
  IMATRIX3 power = proper;
  for (int order = 1; order <= 6; ++order) {
    if (power == IDENTITY) return order == 5 ? 0 : sign * order;
    power = MULTIPLY(power, proper);
  }
  return 0;
}

bool EQUAL_MATRIX(const IMATRIX3& a, const IMATRIX3& b) {
  return a == b;
}

VECTOR3 APPLY_OP(const SYM_OP& op, const VECTOR3& x_frac) {
  VECTOR3 image = op.TR;
  for (std::size_t i = 0; i < 3; ++i) {
    float rotated = 0.0f;
    for (std::size_t k = 0; k < 3; ++k) rotated += static_cast<float>(op.ROT[i][k]) * x_frac[k];
    image[i] = rotated + op.TR[i];
  }
  return image;
}

// ---- reading an operator text ----

namespace {

// A number as it is read character by character: 1/2, 0.5, .5.
struct NUMBER_READER {
  enum class PART { WHOLE, DECIMALS, DENOMINATOR };
  double VALUE = 0.0;
  double DENOMINATOR = 0.0;
  double DECIMAL_PLACE = 1.0;
  PART AT = PART::WHOLE;

  void TAKE_DIGIT(int digit) {
    switch (AT) {
      case PART::WHOLE:
        VALUE = VALUE * 10.0 + digit;
        break;
      case PART::DECIMALS:
        DECIMAL_PLACE /= 10.0;
        VALUE += digit * DECIMAL_PLACE;
        break;
      case PART::DENOMINATOR:
        DENOMINATOR = DENOMINATOR * 10.0 + digit;
        break;
    }
  }

  double RESULT() const {
    if (AT != PART::DENOMINATOR) return VALUE;
    return DENOMINATOR > 0.0 ? VALUE / DENOMINATOR : 0.0;
  }
};

// One field of an operator text, such as 1/2-x or x-2z.
struct FIELD_READER {
  std::array<int, 3> ROW{};
  double TRANSLATION = 0.0;
  int SIGN = 1;
  NUMBER_READER NUMBER;
  bool IN_NUMBER = false;  // a number has begun and may still be the factor of an axis
  bool WHOLE = true;       // no axis has a factor that is no small whole number

  void FINISH_NUMBER() {
    TRANSLATION += SIGN * NUMBER.RESULT();
    NUMBER = NUMBER_READER{};
    IN_NUMBER = false;
  }

  void TAKE_SIGN(char c) {
    FINISH_NUMBER();
    SIGN = c == '-' ? -1 : 1;
  }

  void TAKE_AXIS(std::size_t axis) {
    const double sum = ROW[axis] + SIGN * (IN_NUMBER ? NUMBER.RESULT() : 1.0);
    NUMBER = NUMBER_READER{};
    IN_NUMBER = false;
    WHOLE = WHOLE && std::abs(sum) <= LARGEST_ELEMENT && sum == std::floor(sum);
    if (WHOLE) ROW[axis] = static_cast<int>(sum);
  }

  // False when the character is no part of an operator.
  bool TAKE(char c) {
    constexpr std::string_view axes = "xyz";
    const std::size_t axis = axes.find(static_cast<char>(c | 0x20));
    if (c == '+' || c == '-')
      TAKE_SIGN(c);
    else if (axis != std::string_view::npos)
      TAKE_AXIS(axis);
    else
      return TAKE_OF_NUMBER(c);
    return true;
  }

  bool TAKE_OF_NUMBER(char c) {
    if (ISDIGIT(c))
      NUMBER.TAKE_DIGIT(c - '0');
    else if (c == '.')
      NUMBER.AT = NUMBER_READER::PART::DECIMALS;
    else if (c == '/' && IN_NUMBER)
      NUMBER.AT = NUMBER_READER::PART::DENOMINATOR;
    else
      return c == '*' && IN_NUMBER;
    IN_NUMBER = true;
    return true;
  }
};

// A translation as it is stored: close to n/24 it is that, with its whole cells.
float SNAPPED(double translation) {
  const std::optional<double> n = MEANT_24THS(translation);
  return static_cast<float>(n ? *n / 24.0 : translation);
}

}  // namespace

void READ_XSYM(std::string_view text, int& start, IMATRIX3& rot, VECTOR3& tr, bool proper) {
  ERR_SYMM = false;
  ERR_SYMM_MESS.clear();
  rot = IMATRIX3{};
  tr = VECTOR3{};
  const std::size_t first = static_cast<std::size_t>(std::max(start, 1)) - 1;
  if (first >= text.size() || LENTRIM(text.substr(first)) == 0)
    return SET_ERR_SYMM(" Blank operator field");

  constexpr auto largest_real = static_cast<double>(std::numeric_limits<float>::max());
  // Between commas a star stands for a product, as in x-2*z; without them it divides the fields.
  const char divider = std::count(text.begin(), text.end(), ',') < 2 ? '*' : ',';
  std::size_t fields = 0;
  FIELD_READER field;
  bool finite = true;
  bool whole = true;
  const auto finish_field = [&] {
    field.FINISH_NUMBER();
    whole = whole && field.WHOLE;
    if (fields < 3) {
      rot[fields] = field.ROW;
      finite = finite && std::abs(field.TRANSLATION) <= largest_real;
      if (finite) tr[fields] = SNAPPED(field.TRANSLATION);
    }
    ++fields;
    field = FIELD_READER{};
  };
  for (std::size_t at = first; at < text.size(); ++at) {
    const char c = text[at];
    start = static_cast<int>(at) + 2;
    if (c == ' ') continue;
    if (c == ',' || c == divider)
      finish_field();
    else if (!field.TAKE(c))
      return SET_ERR_SYMM(" Invalid character... " + std::string(1, c) + " in operator string");
  }
  finish_field();
  const int determinant = DETERMINANT(rot);
  if (fields != 3 || !finite || !whole || determinant == 0 || (proper && determinant < 0))
    SET_ERR_SYMM(" The above operator is wrong: " + TRIM(text));
}

// ---- codes ----

float SYMTRANS_CODE(int op, const std::array<int, 3>& t) {
  constexpr int largest_operator = 196;
  if (op < 1 || op > largest_operator) return 0.0f;
  int digits = 0;
  for (int cells : t) {
    if (cells < -5 || cells > 4) return 0.0f;
    digits = digits * 10 + 5 + cells;
  }
  return static_cast<float>(op + digits / 1000.0);
}

}  // namespace XTAL
