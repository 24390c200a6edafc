// fi: the fixed-point array. Every element shares one NumericType and one fimath; every
// stored element is a legal value of the type, kept as a number.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/host_array.h"
#include "host/messages.h"
#include "number/number.h"
#include "quantize/loggingquantizer.h"
#include "quantize/qlogger.h"
#include "quantize/quantizer.h"
#include "types/fimath.h"
#include "types/numeric_type.h"

namespace corbel {

struct WideElements;

// Element form: each element holds its real-world value with the type's bias removed and
// divided by the slope adjustment factor, that is, the stored integer times 2^FixedExponent.
// For binary-point types (factor 1, bias 0) that is the real-world value itself.
//
// Sharing: aliases share the data arrays with their root through a share count; the
// arrays live while any sharer does. The imaginary data are read through a slot that, in
// an alias, points at the root's field, so an alias sees its root become complex.
//
// Storage: the elements are numbers, except that an array of a binary-point type of 53 to 252
// bits made by construction from doubles or by a whole-array sum or product holds stored
// integers instead (WideElements) until an element is first asked for; every accessor below
// turns them into numbers first, and an alias is only ever made of numbers.
//
// Element-at-a-time operations work on the current element, chosen with setIndex.
class fi {
 public:
  enum CopyMode { WholeCopy = 0, CurrentElement = 1 };
  enum CopyIndex { Alias = 0 };
  // The code of the property set last; -1 through 47.
  using PropertyEnum = std::int32_t;
  static constexpr PropertyEnum kFirstProperty = -1;
  static constexpr PropertyEnum kLastProperty = 47;

  // ---- Construction (fi_construction.cpp) -----------------------------------------------
  // 1x1 real zero, signed 16-bit fraction length 15, default fimath.
  fi();
  // 1x1 holding the quantized value; precision: the least precision for the element.
  fi(double value, const NumericType& type, const fimath& math, unsigned long precision = 0);
  fi(double value, bool issigned, int wordLength, int fractionLength, const fimath& math,
     unsigned long precision = 0);
  // From a host numeric array of any numeric class, real or complex, with its dimensions.
  fi(const HostArray& values, const NumericType& type, const fimath& math);
  // From doubles in column-major order (im may be null for a real array).
  fi(const double* re, const double* im, const int* dims, int ndims, const NumericType& type,
     const fimath& math);
  // Every element the same value.
  fi(double re, double im, bool complex, const int* dims, int ndims, const NumericType& type,
     const fimath& math);
  // Zeros.
  fi(const int* dims, int ndims, const NumericType& type, const fimath& math, bool complex);
  fi(const int* dims, int ndims, const NumericType& type, const fimath& math, bool complex,
     const qlogger& log);
  fi(int m, int n, const NumericType& type, const fimath& math, bool complex);
  // Whole copy, or a 1x1 copy of the current element.
  fi(const fi& source, CopyMode mode);
  fi(const fi&) = delete;
  virtual ~fi();

  // Re-makes this object as zeros of a new shape, type and math.
  void resizeAndZero(const int* dims, int ndims, const NumericType& type, const fimath& math,
                     bool complex);
  void resizeAndZero(int m, int n, const NumericType& type, const fimath& math, bool complex);

  // ---- Elements and shape ---------------------------------------------------------------
  virtual void setIsReal(bool isreal);
  virtual void setIndex(int i) const;
  virtual void coordinateComplexity(bool complex);
  virtual bool isreal() const { return isreal_; }
  virtual bool iscomplex() const { return !isreal_; }
  virtual const qlogger& getfilog() const { return filog_; }

  int getIndex() const { return index_; }
  const number& real(int i) const {
    if (wide_) [[unlikely]]
      materialize();
    return realData_[i];
  }
  // An alias that still answers complex after its root dropped an all-zero imaginary
  // array reads zeros, and a write through it brings back a zero array for every sharer.
  const number& imag(int i) const {
    if (wide_) [[unlikely]]
      materialize();
    return isreal_ || *imagSlot_ == nullptr ? zeroNumber() : (*imagSlot_)[i];
  }
  number& realRef(int i) {
    if (wide_) [[unlikely]]
      materialize();
    return realData_[i];
  }
  number& imagRef(int i) {
    if (wide_) [[unlikely]]
      materialize();
    if (*imagSlot_ == nullptr) allocateImag();
    return (*imagSlot_)[i];
  }
  const number& real() const { return real(index_); }
  const number& imag() const { return imag(index_); }
  double realdouble(int i) const { return real(i).todouble(); }
  double imagdouble(int i) const { return imag(i).todouble(); }
  const fi& operator[](int i) const {
    setIndex(i);
    return *this;
  }
  const fi& operator()(int i) const {
    setIndex(i);
    return *this;
  }
  const fi& operator()(int i, int j) const {
    setIndex(i + j * m_);
    return *this;
  }
  // Whether the elements are still held as the stored integers of a wide type.
  bool holdsStoredIntegers() const { return wide_ != nullptr; }
  // Drops an all-zero imaginary part.
  void freeImagIfZero();

  int numel() const { return numel_; }
  int length() const { return length_; }
  int getM() const { return m_; }
  int getN() const { return n_; }
  int ndims() const { return static_cast<int>(dims_.size()); }
  const int* dims() const { return dims_.data(); }
  bool isempty() const { return numel_ == 0; }
  bool isscalar() const { return numel_ == 1; }
  bool isvector() const;
  bool isrow() const { return ndims() == 2 && m_ == 1; }
  bool iscolumn() const { return ndims() == 2 && n_ == 1; }
  bool isSameSize(const fi& other) const;
  int getDimension(int d) const;
  void checkIndex(int i) const;
  void copyDimensions(const int* dims, int ndims);
  void updateNumel();

  // ---- Type and math --------------------------------------------------------------------
  const NumericType& getNumericType() const { return type_; }
  const fimath& getFimath() const { return math_; }
  const quantizer& getAssignmentQuantizer() const { return assignQuantizer_; }
  const loggingquantizer& getLoggingAssignmentQuantizer() const { return loggingQuantizer_; }
  int getWordLength() const { return type_.getWordLength(); }
  int getFractionLength() const { return type_.getFractionLength(); }
  double getSlope() const { return type_.getSlope(); }
  double getBias() const { return type_.getBias(); }
  bool getSigned() const { return type_.getSigned(); }
  bool isFixed() const { return type_.isFixed(); }
  bool isDouble() const { return type_.isDouble(); }
  bool isSingle() const { return type_.isSingle(); }
  bool isBoolean() const { return type_.isBoolean(); }
  bool isScaledDouble() const { return type_.isScaledDouble(); }
  bool isScaledType() const { return type_.isScaledType(); }
  bool isSlopeBiasScaled() const { return type_.isSlopeBiasScaled(); }
  RoundModeEnum getRoundMode() const { return math_.getRoundMode(); }
  OverflowModeEnum getOverflowMode() const { return math_.getOverflowMode(); }
  ArithmeticModeEnum getProductMode() const { return math_.getProductMode(); }
  ArithmeticModeEnum getSumMode() const { return math_.getSumMode(); }
  bool getCastBeforeSum() const { return math_.getCastBeforeSum(); }

  // Each type setter changes the type, rebuilds the quantizers and re-quantizes every
  // element; a refused setting (a warning) changes nothing.
  void setNumericType(const NumericType& type);
  void setSigned(bool v);
  void setWordLength(int v);
  void setFractionLength(int v);
  void setFixedExponent(int v);
  void setSlope(double v);
  void setSlopeAdjustmentFactor(double v);
  void setBias(double v);
  void setScaling(ScalingEnum v);
  void setDataTypeMode(DataTypeModeEnum v);
  void setDataType(DataTypeEnum v);
  // Replaces the math and rebuilds the quantizers (elements are not re-quantized).
  void setFimath(const fimath& math);
  void updateAssignmentQuantizer();
  void quantizeAll();

  PropertyEnum getLastPropertySet() const { return lastPropertySet_; }
  // A flag the host keeps with the array; it changes nothing here.
  bool getIsAutoscaled() const { return isautoscaled_; }
  void setIsAutoscaled(bool v) { isautoscaled_ = v; }
  void setLastPropertySet(PropertyEnum code);

  // v -> (v - Bias) / SlopeAdjustmentFactor (as a multiplication by the reciprocal), and
  // back: Bias + SlopeAdjustmentFactor * v.
  double removeSlopeAdjustmentFactorBias(double v) const;
  double addSlopeAdjustmentFactorBias(double v) const;
  // Quantizes x in place into this object's log (the logging quantizer when logging is on).
  number& quantizeElement(number& x) const;

  // ---- Operand checks -------------------------------------------------------------------
  static void errorIfBooleanMath(const fi& a);
  static void errorIfMixedMath(const fi& a, const fi& b);
  static void errorIfFimathMismatch(const fi& a, const fi& b);
  static void errorIfMathMismatch(const fi& a, const fi& b);
  static void errorIfSlopeBiasMath(const fi& a);
  static void errorIfScaledDoubleSlopeBiasMath(const fi& a, const fi& b);
  void errorIfScaledDouble(const char* functionName) const;
  void checkElementwiseSize(const fi& b) const;

  // ---- Result types (fi_result_types.cpp) -----------------------------------------------
  const NumericType& getNumericTypeForAddOp(const fi& b) const;
  const NumericType& getProductTypeForMpyOp(const fi& b) const;
  // The type of a sum of n elements of this array: as a sum of two, but grown by ceil(log2 n)
  // bits at full precision.
  NumericType getSumTypeForAddends(int n) const;
  const NumericType& getSumNumericTypeForMatrixMultiply(const fi& b, const NumericType& P) const;
  const NumericType& getSumTypeForMpyOp(const fi& b, const NumericType& P) const;
  static DataTypeEnum getDataTypeForMathOp(const fi& a, const fi& b);

  // ---- Arithmetic (fi_arithmetic.cpp) ---------------------------------------------------
  std::unique_ptr<fi> plus(const fi& b) const;
  std::unique_ptr<fi> minus(const fi& b) const;
  std::unique_ptr<fi> times(const fi& b) const;
  std::unique_ptr<fi> mtimes(const fi& b) const;
  // Element level, on the current elements.
  const fi& operator+(const fi& b) const;  // the sum register
  const fi& operator-(const fi& b) const;  // the sum register
  const fi& operator*(const fi& b) const;  // the product register
  fi& operator+=(const fi& b);
  fi& operator-=(const fi& b);
  fi& operator*=(const fi& b);
  // Element assignment (not a copy): b's current element into this object's current
  // element, quantized by this object's assignment quantizer.
  fi& operator=(const fi& b);

  // Whole-array sums (real or complex) and real products of double-backed binary-point
  // arrays, bit for bit what the element operators give, for a result type T (P) whose
  // register is initialized; null when the operands or the settings do not qualify.
  // plus, minus and times try these first.
  std::unique_ptr<fi> bulkSum(const fi& b, const NumericType& T, bool subtract) const;
  std::unique_ptr<fi> bulkProduct(const fi& b, const NumericType& P) const;
  // Fills `result`, a new real array of the accumulator's type, with the matrix product,
  // once the registers are initialized; false, changing nothing, when it does not qualify.
  bool bulkMatrixProduct(const fi& b, fi& result) const;

  // ---- Bit operations on stored integers (fi_bits.cpp) -----------------------------------
  // Each returns a new array (bitget a host uint8 array); the operand is never changed.
  // bitand, bitor and bitxor need one numeric type and expand a scalar operand; bitget and
  // bitset take positions 1 .. WordLength of any numeric class (truncated toward zero), a
  // scalar on either side going with every element of the other; bitset's one-argument form
  // sets the bits to 1, and a bit value is 1 when nonzero. bitshift shifts by k (left for
  // k > 0) and quantizes again, so bits shifted out saturate or wrap.
  enum class BitOp { And, Or, Xor };
  std::unique_ptr<fi> bitcmp() const;
  std::unique_ptr<fi> bitandorxor(const fi& b, BitOp op, const char* name) const;
  std::unique_ptr<fi> fibitand(const fi& b) const;
  std::unique_ptr<fi> fibitor(const fi& b) const;
  std::unique_ptr<fi> bitxor(const fi& b) const;
  HostArray bitget(const HostArray& positions) const;
  std::unique_ptr<fi> bitset(const HostArray& positions) const;
  std::unique_ptr<fi> bitset(const HostArray& positions, const HostArray& values) const;
  std::unique_ptr<fi> bitshift(long k) const;

  // ---- Radix text of the stored integers (fi_text.cpp) -----------------------------------
  // A char matrix: one row per element row (the real parts' rows, then the imaginary
  // parts'), each element's W-bit pattern in radix 2, 8, 10 or 16 at one width, or with
  // isSigned the stored integers as signed decimals; the elements of a row two spaces apart.
  HostArray radixText(int radix, bool isSigned = false) const;
  // Sets every element from such text (any spacing): one number per part of every element,
  // each a pattern of at most W bits in the radix, or in radix 10 also a negative stored
  // integer of a signed type. Nothing changes when any number is refused.
  void base2num(const HostArray& text, int radix);
  // The stored integers in the smallest built-in integer class that holds the word (up to
  // 64 bits), shaped like this array; and setting them from any numeric array of integer
  // values in the type's stored-integer range, one per element (a complex one for a complex
  // array).
  HostArray storedIntegers() const;
  void setStoredIntegers(const HostArray& values);
  // How many numbers such text holds.
  static int radixTextCount(const HostArray& text);

  // ---- Other host conversions (fi_conversions.cpp) ---------------------------------------
  // The values as singles (each double rounded to single); every element from a numeric or
  // logical array of as many values, as an assignment; and the stored integers in the word
  // layout (see fi_conversions.cpp), both ways.
  HostArray toHostSingle() const;
  void setValues(const HostArray& values);
  // b's values into every element of this array (as many), as an assignment.
  void copydata(const fi& b);
  HostArray tessaronArray() const;
  void setTessaronArray(const HostArray& values);

  // ---- Elements by position (fi_indexing.cpp) --------------------------------------------
  // The values of an operand or of an assignment: a fi's elements, or a built-in numeric or
  // logical host array's.
  struct ValueSource {
    const fi* array = nullptr;
    const HostArray* host = nullptr;
    std::size_t count() const;
    bool complex() const;
    // Raises `error` for a host array that is neither numeric nor logical.
    void check(Msg error) const;
  };
  // A new array shaped like `positions` (a real double array of one-based positions into
  // this array) holding the elements there.
  std::unique_ptr<fi> elementsAt(const HostArray& positions) const;
  // Assigns into the elements at the positions one value each, or the one value to all; a
  // complex value makes the array complex, and an all-zero imaginary part is dropped. The
  // quantizations are reported as those of an assignment, or of the named operation.
  void assignAt(const HostArray& positions, const ValueSource& from,
                const char* operation = nullptr);
  // A new array shaped like `layout` (a real double array): an entry -p takes this array's
  // element p, p > 0 assigns value p of `from`, and 0 is a zero. The new array continues
  // this array's log.
  std::unique_ptr<fi> rearranged(const HostArray& layout, const ValueSource& from) const;

  // ---- Shape (fi_shape.cpp) ---------------------------------------------------------------
  // New arrays with this array's elements rearranged: transpose and conjugate transpose of a
  // matrix, the same elements in column-major order under new dimensions (as many elements),
  // and without singleton dimensions beyond the second.
  std::unique_ptr<fi> transpose() const;
  std::unique_ptr<fi> ctranspose() const;
  std::unique_ptr<fi> reshaped(const std::vector<int>& dims) const;
  std::unique_ptr<fi> squeeze() const;
  // Matrices from a vector or a matrix, as Octave's functions of the same names make them: a
  // vector on diagonal k of a square matrix, or diagonal k of a matrix as a column; the
  // lower (upper) triangle from diagonal k on; the symmetric Toeplitz matrix and the Hankel
  // matrix of a vector.
  std::unique_ptr<fi> diag(int k) const;
  std::unique_ptr<fi> tril(int k) const { return triangle(k, true); }
  std::unique_ptr<fi> triu(int k) const { return triangle(k, false); }
  std::unique_ptr<fi> toeplitz() const;
  std::unique_ptr<fi> hankel() const;

  // ---- Sums along a dimension (fi_sums.cpp) -----------------------------------------------
  // The sums along dimension dim (1-based; 0: the first longer than one) in the type of
  // getSumTypeForAddends and this array's fimath: each running sum is quantized into that
  // type after every addition (at full precision nothing rounds), reported as a "sum".
  std::unique_ptr<fi> leadingdimension_sum(int dim) const;

  // ---- Comparisons (fi_comparison.cpp) ----------------------------------------------------
  // A logical array of this array's relation to b element by element (a scalar on either
  // side goes with every element of the other), on exact values: a built-in double compares
  // by its own value, NaN is unordered. Complex values order by magnitude, then by angle in
  // (-pi, pi], as Octave orders complex doubles.
  enum class Relation { Eq, Ne, Lt, Le, Gt, Ge };
  HostArray compare(const ValueSource& b, Relation r) const;
  // Whether b has this array's size and values (types and fimath aside).
  bool isequalTo(const ValueSource& b) const;

  // ---- Limits of the type (fi_bounds.cpp) -----------------------------------------------
  // 1x1 arrays of this type and fimath: the largest value, the smallest positive one, the
  // value of the least significant bit, and the lower and upper bounds; intmax and intmin
  // hold the largest and smallest stored integer in a type of fraction length 0.
  std::unique_ptr<fi> realmax() const;
  std::unique_ptr<fi> realmin() const;
  std::unique_ptr<fi> fieps() const;
  std::unique_ptr<fi> lowerbound() const;
  std::unique_ptr<fi> upperbound() const;
  // The lower and upper bound side by side in one 1x2 array.
  std::unique_ptr<fi> range() const;
  std::unique_ptr<fi> intmax() const;
  std::unique_ptr<fi> intmin() const;

  // ---- Division (fi_division.cpp) --------------------------------------------------------
  // The element-wise quotient this ./ b (with scalar expansion) in a fixed-point or scaled-
  // double quotient type with this array's fimath: each exact quotient rounded once by the
  // quotient's quantizer; a zero divisor saturates by the dividend's sign (0/0 to the
  // largest value) and warns once.
  std::unique_ptr<fi> over(const fi& b, const NumericType& quotientType) const;

  // ---- Unary operations and selections (fi_unary.cpp) -----------------------------------
  // Each returns a new array; the operand is never changed. uminus, abs and conj quantize
  // what they change through the assignment quantizer (the logging one while logging is
  // on, counting into the result's log); pow2 multiplies every part by 2^k and re-quantizes.
  std::unique_ptr<fi> uminus() const;
  std::unique_ptr<fi> pow2(long k) const;
  std::unique_ptr<fi> abs() const;
  // The current element's absolute value, unquantized.
  void abs(number& out) const;
  std::unique_ptr<fi> conj() const;
  // -1, 0 or 1 for each element of a real array, as a signed 2-bit integer array.
  std::unique_ptr<fi> sign() const;
  // The stored integers as the values of an integer array of the same signedness and word
  // length (fraction length 0, slope 1, bias 0) and this array's fimath.
  std::unique_ptr<fi> stripscaling() const;
  // A complex array of this array's type: this real part and im's values as imaginary
  // parts (quantized into this type), with scalar expansion.
  std::unique_ptr<fi> complex(const fi& im) const;
  // Element-wise the larger or smaller of two arrays of one type and fimath, with scalar
  // expansion; complex elements compare by magnitude; a tie keeps this array's element.
  std::unique_ptr<fi> max(const fi& b) const;
  std::unique_ptr<fi> min(const fi& b) const;
  // The largest or smallest elements along dimension dim (counted from 1; 0 takes the
  // first dimension longer than one) and their positions along it (from 1, a double
  // array); the first of equal elements wins. An empty dimension stays empty.
  void unary_max(std::unique_ptr<fi>& values, HostArray& indices, int dim = 0) const;
  void unary_min(std::unique_ptr<fi>& values, HostArray& indices, int dim = 0) const;

  void initializeSumRegister(const NumericType& T, const fimath& m) const;
  void initializeSumRegister(const fimath& m) const;
  void initializeSumRegister(const fi& other) const;
  void initializeProductRegister(const NumericType& S, const NumericType& P, const fimath& m) const;
  void initializeProductRegister(const fimath& m) const;
  bool isSumRegisterInitialized() const { return sumRegister_ != nullptr; }
  bool isProductRegisterInitialized() const { return productRegister_ != nullptr; }
  fi& getSumRegister() const;
  fi& getProductRegister() const;
  const quantizer& getSumQuantizer() const;
  const quantizer& getProductQuantizer() const;
  std::unique_ptr<fi> getAccumulatorCopy() const;
  const qlogger& getsumfilog() const;
  const qlogger& getproductfilog() const;
  const qlogger& getproductregsumfilog() const;

  // Slope-bias working values of the last operation.
  double getBnetForEquals() const { return bnetForEquals_; }
  double getBnetForSlopeBiasPlus() const { return bnetForPlus_; }
  double getBnetForSlopeBiasMinus() const { return bnetForMinus_; }
  double getFsxForEquals() const { return fsxForEquals_; }
  double getFscForTimes() const { return fscForTimes_; }
  const fi* getAForSlopeBiasTimes() const { return aForTimes_; }
  const fi* getBForSlopeBiasTimes() const { return bForTimes_; }

  // ---- Logging and display (fi_logging.cpp) ---------------------------------------------
  // The class-wide switch between logging and plain quantization; off at start.
  static bool getLogging();
  // The most memory one array's elements may need: a quarter of the machine's memory, and
  // at most half of the process's address-space limit when one is set. Larger arrays are
  // refused ("velkora:fi:tooLarge") before any of their memory is taken.
  static double arrayMemoryLimit();
  // Refuses, before anything is made, an array of `count` elements: more than an int counts,
  // or more than arrayMemoryLimit() at the least an element takes (its slot).
  static void checkElementCount(double count);
  static void setLogging(bool on);
  // The class-wide logs of assignments, sums and products.
  static const qlogger& getAssignlog();
  static const qlogger& getSumlog();
  static const qlogger& getProductlog();
  static const number& getZeroNumber() { return zeroNumber(); }
  // Resets this object's log and the logs of whichever registers exist (the sum register,
  // the product register and the product register's own sum register).
  void resetLogging() const;
  // Prints the six global counts, or nothing with logging off.
  static void displayGlobalLog();
  // Resets the three global logs; does nothing with logging off.
  static void resetGlobalLog();
  // Warns about the overflows and underflows of an assignment not yet reported in `log`,
  // and marks them reported. Callers decide whether logging is on.
  void displaySubsasgnLogging(const qlogger& log) const;
  // Warns of the overflows and underflows this array's log counted since the last report,
  // naming the operation.
  void reportQuantizations(const char* operation) const;
  // Moves the new counts of a register's log into the global log and the result's log
  // and warns about them (only with logging on).
  static void reportOperation(const qlogger& registerLog, const qlogger& globalLog,
                              const qlogger& resultLog, int noperations, int nmathoperations,
                              const char* name);
  // "<count> <what> <kind>[s] occurred in the fi <operation> operation." under the given
  // identifier; nothing for a count of 0 or less.
  static void warnQuantizationEvent(const char* identifier, int count, const char* what,
                                    const char* kind, const char* operation);
  // Read through getfilog(), so that a reference reports the log it stands for.
  int getNoverflows() const { return getfilog().getNoverflows(); }
  int getNunderflows() const { return getfilog().getNunderflows(); }
  int getNoperations() const { return getfilog().getNoperations(); }
  int getNmathoperations() const { return getfilog().getNMathoperations(); }
  // The logged extremes as real-world values.
  double getMaxLogAsRealWorldValue() const;
  double getMinLogAsRealWorldValue() const;
  // Whether logging is on, and whether this object's log holds anything since its reset.
  enum class LoggingState { OffLogged, OffNothingLogged, OnLogged, OnNothingLogged };
  LoggingState loggingState() const;
  // For a method that reads a logged extreme: warns, under an identifier naming `method`,
  // unless logging is on and something was logged; returns whether a value is to be given.
  bool reportLoggingState(const char* method) const;
  // The real-world values as a host double array (complex when this is).
  HostArray toHostDouble() const;
  // The values in the host's compact form, then the numeric type and the fimath.
  void disp() const;

 protected:
  // An alias sharing the data of source.
  fi(const fi& source, CopyIndex);
  // Makes element i of the shared data the current one, unchecked (for views).
  void setSharedIndex(int i) const { index_ = i; }

 private:
  // A real array of the given shape whose elements the caller is yet to make: its real
  // data are null until then.
  enum class Unfilled { Elements };
  fi(const int* dims, int ndims, const NumericType& type, const fimath& math, Unfilled);
  // Gives the real (or the imaginary) part of an unfilled array raw storage for all its
  // elements, to be written with number::placedouble; the imaginary part makes it complex.
  number* rawElements(bool imagPart);
  // Frees such storage, of which only some elements may have been written, and leaves the
  // part null (real again for the imaginary part).
  void discardRawElements(bool imagPart);
  // Quantizes doubles into the elements of one part of this array through the assignment
  // quantizer, as storeDouble would one by one; false, changing nothing, when the type,
  // the log or the precision of new numbers rule the whole-array way out.
  bool storeDoubles(const double* values, bool imagPart);
  // Quantizes the elements of one part in place through the assignment quantizer while
  // they are doubles and no log is kept; returns how many it did, from the first on.
  int quantizeDoublesInPlace(bool imagPart);
  // The element-wise frame of bulkSum and bulkProduct: reads both operands block by block
  // (with scalar expansion), takes the steps (see fi_bulk.cpp) and writes the result's
  // elements, real parts and then imaginary parts; null when an operand holds a value
  // that is not a double. The register keeps the last value.
  struct ElementwiseSteps;
  std::unique_ptr<fi> elementwiseDoubles(const fi& b, const NumericType& T, fi& reg,
                                         const ElementwiseSteps& steps) const;
  // Leaves this operand, b and the result at the current elements where the element path
  // leaves them: each non-scalar at the last element, a scalar at its only one.
  void leaveIndicesAfterElementwise(const fi& b, fi& result) const;

  // ---- Wide stored integers (fi_wide.cpp) ----------------------------------------------
  // Turns stored integers into numbers; nothing when the elements are numbers already.
  void materialize() const;
  // Quantizes doubles (im null for a real array) into stored integers of this array's wide
  // type as storeDouble would one by one; false, leaving the array without elements, when
  // the type, the log or a value rule the whole-array way out.
  bool storeWide(const double* re, const double* im);
  // The sums, differences and real products of wide binary-point arrays on their stored
  // integers, as bulkSum and bulkProduct are on doubles.
  std::unique_ptr<fi> wideSum(const fi& b, const NumericType& T, bool subtract) const;
  std::unique_ptr<fi> wideProduct(const fi& b, const NumericType& P) const;
  // bitand, bitor and bitxor (and so bitcmp) of wide binary-point arrays on their stored integers,
  // one operand at least holding them; null when they do not apply.
  std::unique_ptr<fi> wideBitwise(const fi& b, BitOp op) const;

  // over on double-backed binary-point arrays, in integer arithmetic; null when it does not
  // apply or a zero of the element path's own sign would arise.
  std::unique_ptr<fi> bulkQuotient(const fi& b, const NumericType& T) const;
  std::unique_ptr<fi> limit(int which) const;
  std::unique_ptr<fi> intlimit(bool largest) const;
  // Every part times 2^k, then quantized again: pow2 without its scaling check.
  std::unique_ptr<fi> scaledByPowerOfTwo(long k) const;
  // The lines along dimension dim (1-based; 0: the first longer than one, a scalar's first):
  // `outer` blocks of `stride` lines of `length` elements `stride` apart, and the dimensions
  // with that one made 1 (an empty one kept empty unless emptyBecomesOne).
  struct Lines {
    std::vector<int> outDims;
    int length, stride, outer;
  };
  Lines linesAlong(int dim, bool emptyBecomesOne) const;
  std::unique_ptr<fi> select(const fi& b, bool larger) const;
  void reduceSelect(std::unique_ptr<fi>& values, HostArray& indices, int dim, bool larger) const;
  // Whole-array bit operations and selections on inline doubles (fi_bulk_bits.cpp,
  // fi_bulk_select.cpp), bit for bit what the element loops give once the operands are
  // checked: null (false) when they do not apply. bulkReduceSelect makes the values of the
  // extreme elements along lines of `length` elements `stride` apart (see reduceSelect) and
  // writes their places into index; bulkBitget writes into a uint8 array of the result's
  // shape, and bulkBitset makes an array of the given shape.
  std::unique_ptr<fi> bulkBitwise(const fi& b, BitOp op) const;
  // bitcmp by one of the loops above, as the exclusive or with the all-ones word.
  std::unique_ptr<fi> complementByLoop() const;
  bool bulkBitget(const HostArray& positions, HostArray& bits) const;
  std::unique_ptr<fi> bulkBitset(const HostArray& positions, const HostArray& values,
                                 const std::vector<int>& dims) const;
  std::unique_ptr<fi> bulkSelect(const fi& b, bool larger) const;
  std::unique_ptr<fi> bulkReduceSelect(const std::vector<int>& outDims, int outer, int stride,
                                       int length, bool larger, double* index) const;
  // What the unary whole-array path does to each element before quantizing it.
  enum class UnaryStep { Negate, NegateImaginary, Abs, Pow2 };
  // Takes the step (Pow2 by 2^k) on every element of a part of this array, then quantizes
  // it through the assignment quantizer, as the element loops do when no log is kept; false,
  // changing nothing, when the log, the type or an element that is not a double rule it out.
  bool mapDoubles(UnaryStep step, long k);

  static const number& zeroNumber();
  // Builds the members every constructor shares, for a type and math.
  void initCommon(const NumericType& type, const fimath& math);
  // Allocates zero elements for the current dims (and imaginary ones when complex). An
  // array whose elements would need more memory than arrayMemoryLimit() is refused first,
  // and the constructor's shared data freed.
  void allocate(bool complex);
  void releaseData();
  // Stores a real-world double into an element and quantizes it.
  void storeDouble(number& element, double v);
  std::unique_ptr<fi> triangle(int k, bool lower) const;
  // A new array of the given shape whose element k is this array's element at[k].
  std::unique_ptr<fi> gathered(const std::vector<std::size_t>& at,
                               const std::vector<int>& dims) const;
  // Stores value q (its imaginary part with imagPart) of `from` into an element of this
  // array as an assignment does.
  void assignValue(number& element, const ValueSource& from, std::size_t q, bool imagPart);
  // Sets the default precision of new numbers for this type (at least `precision`).
  void useTypePrecision(unsigned long precision = 0) const;
  template <class Op>
  std::unique_ptr<fi> elementwise(const fi& b, const NumericType& T, Op op) const;
  const fi& sumOrDifference(const fi& b, bool subtract) const;
  // Stores an exact real-world value into an element of this object, rounded once by its
  // assignment quantizer.
  void storeRealWorld(number& element, mpq_srcptr value) const;

  // What a fi and its aliases share: the sharer count and the imaginary data (null while
  // real), so that every sharer sees the data become complex and the last one frees it.
  struct SharedData {
    int shareCount = 1;
    number* imag = nullptr;
    std::size_t elements = 0;  // the length of both data arrays
  };
  // Gives the shared data a zero imaginary array.
  void allocateImag();

  mutable number* realData_ = nullptr;  // null while the elements are stored integers
  mutable std::unique_ptr<WideElements> wide_;
  SharedData* shared_ = nullptr;
  number** imagSlot_ = nullptr;  // &shared_->imag
  bool isreal_ = true;
  std::vector<int> dims_{1, 1};
  mutable int index_ = 0;
  NumericType type_;
  fimath math_;
  quantizer assignQuantizer_{quantizer::Fixed, RoundModeEnum::Nearest, OverflowModeEnum::Saturate,
                             16, 15};
  loggingquantizer loggingQuantizer_{quantizer::Fixed, RoundModeEnum::Nearest,
                                     OverflowModeEnum::Saturate, 16, 15};
  mutable std::unique_ptr<fi> sumRegister_;
  mutable std::unique_ptr<fi> productRegister_;
  mutable std::unique_ptr<NumericType> sumTypeCache_;
  mutable std::unique_ptr<NumericType> productTypeCache_;
  mutable const fi* aForTimes_ = nullptr;
  mutable const fi* bForTimes_ = nullptr;
  mutable number temp_;
  int numel_ = 1;
  int length_ = 1;
  int m_ = 1;
  int n_ = 1;
  mutable double bnetForEquals_ = 0;
  mutable double bnetForPlus_ = 0;
  mutable double bnetForMinus_ = 0;
  mutable double fsxForEquals_ = 0;
  mutable double fscForTimes_ = 0;
  qlogger filog_;
  PropertyEnum lastPropertySet_ = -1;
  bool isautoscaled_ = false;
};

}  // namespace corbel
