// numberops: operations on two bodies, dispatched on the pair of representations.
#pragma once

#include <cstdint>

#include "number/numberrepbody.h"

namespace corbel {

class doublenumber;
class mpnumber;

// The four pairs:
//   double, double: IEEE arithmetic in the left body;
//   multiprecision, multiprecision: MPFR into the left body at its precision;
//   double, multiprecision: the left value moves into a new multiprecision body at the
//     right's precision, which is returned (the left operand is promoted);
//   multiprecision, double: the right value is rounded to the left's precision first.
// Every multiprecision result rounds to nearest. Comparisons are exact after the same
// rounding of a double operand and change nothing.
class numberops {
 public:
  static numberrepbody& plusequals(numberrepbody& l, const numberrepbody& r);
  static numberrepbody& minusequals(numberrepbody& l, const numberrepbody& r);
  static numberrepbody& timesequals(numberrepbody& l, const numberrepbody& r);
  static numberrepbody& divideequals(numberrepbody& l, const numberrepbody& r);
  static numberrepbody& mod(numberrepbody& l, const numberrepbody& r);
  static numberrepbody& setvalue(numberrepbody& l, const numberrepbody& r);
  static bool lessthan(const numberrepbody& l, const numberrepbody& r);
  static bool lessthanorequal(const numberrepbody& l, const numberrepbody& r);
  static bool greaterthan(const numberrepbody& l, const numberrepbody& r);
  static bool greaterthanorequal(const numberrepbody& l, const numberrepbody& r);
  static bool equal(const numberrepbody& l, const numberrepbody& r);
  static bool notequal(const numberrepbody& l, const numberrepbody& r);
  // this = sqrt(a^2 + b^2). Multiprecision when any of the three is, at the largest
  // multiprecision precision among them.
  static numberrepbody& _hypot(numberrepbody& self, const numberrepbody& a, const numberrepbody& b);
  // Without force: a double body asked for more than 52 bits is promoted, a
  // multiprecision body is re-rounded in place and never demoted. With force: always a
  // new multiprecision body of that precision, built from the value as a double.
  static numberrepbody& setprecision(numberrepbody& b, unsigned long precision, bool force);

  static std::int8_t fixed2int8(const numberrepbody& b, long wordlength, long fractionlength);
  static std::int16_t fixed2int16(const numberrepbody& b, long wordlength, long fractionlength);
  static std::int32_t fixed2int32(const numberrepbody& b, long wordlength, long fractionlength);
  static std::int64_t fixed2int64(const numberrepbody& b, long wordlength, long fractionlength);
  static std::uint8_t fixed2uint8(const numberrepbody& b, long wordlength, long fractionlength);
  static std::uint16_t fixed2uint16(const numberrepbody& b, long wordlength, long fractionlength);
  static std::uint32_t fixed2uint32(const numberrepbody& b, long wordlength, long fractionlength);
  static std::uint64_t fixed2uint64(const numberrepbody& b, long wordlength, long fractionlength);

 private:
  template <class Op>
  static numberrepbody& arithmetic(numberrepbody& l, const numberrepbody& r);
  template <class Cmp>
  static bool compare(const numberrepbody& l, const numberrepbody& r);
  template <class T>
  static T fixed2int(const numberrepbody& b, long fractionlength);
};

}  // namespace corbel
