// numberrephandle: owns one counted reference to a body, copies the body before the
// first change of a shared one, and adopts the new body when an operation promotes.
#pragma once

#include <cstdint>
#include <new>

#include "number/numberfactory.h"
#include "number/numberrepbody.h"
#include "number/pool.h"

namespace corbel {

// Invariant: the handle holds exactly one counted reference to its body.
class numberrephandle final : public Pooled<numberrephandle> {
 public:
  // The constructors and the destructor that every element of an array passes through
  // are inline.
  numberrephandle() : body_(checked(numberfactory::createnumber())) {}  // a double zero
  explicit numberrephandle(numberrepbody& body);
  explicit numberrephandle(double v) : body_(checked(numberfactory::createnumber(v))) {}
  numberrephandle(double v, unsigned long precision, bool force);
  numberrephandle(const numberrephandle& other);
  numberrephandle& operator=(const numberrephandle& other);
  ~numberrephandle() {
    if (body_->decrcount() == 0) delete body_;
  }

  const numberrepbody& getbody() const { return *body_; }
  numberrepbody& getbody() { return *body_; }
  // Replaces the body without counting: the caller has already accounted for both.
  void setbody(numberrepbody* b) { body_ = b; }
  // Adopts b unless it is the current body: releases the current one, counts b.
  void changebody(numberrepbody* b);

  numberrephandle& setvalue(const numberrephandle& x) {
    return mutate([&](numberrepbody& b) -> numberrepbody& { return b.setvalue(x.getbody()); });
  }
  numberrephandle& setvalue(double v) {
    return mutate([&](numberrepbody& b) -> numberrepbody& { return b.setvalue(v); });
  }
  numberrephandle& setvalue(const unsigned int* words, int nwords, bool issigned, int wordlength,
                            double slope, int exponent, double bias) {
    return mutate([&](numberrepbody& b) -> numberrepbody& {
      return b.setvalue(words, nwords, issigned, wordlength, slope, exponent, bias);
    });
  }
  numberrephandle& setvalue(const unsigned int* words, int nwords, bool issigned, int wordlength,
                            int fractionlength) {
    return mutate([&](numberrepbody& b) -> numberrepbody& {
      return b.setvalue(words, nwords, issigned, wordlength, fractionlength);
    });
  }
  numberrephandle& operator+=(const numberrephandle& r) {
    return mutate([&](numberrepbody& b) -> numberrepbody& { return b += r.getbody(); });
  }
  numberrephandle& operator-=(const numberrephandle& r) {
    return mutate([&](numberrepbody& b) -> numberrepbody& { return b -= r.getbody(); });
  }
  numberrephandle& operator*=(const numberrephandle& r) {
    return mutate([&](numberrepbody& b) -> numberrepbody& { return b *= r.getbody(); });
  }
  numberrephandle& operator/=(const numberrephandle& r) {
    return mutate([&](numberrepbody& b) -> numberrepbody& { return b /= r.getbody(); });
  }
  numberrephandle& mod(const numberrephandle& r) {
    return mutate([&](numberrepbody& b) -> numberrepbody& { return b.mod(r.getbody()); });
  }
  numberrephandle& _hypot(const numberrephandle& x, const numberrephandle& y) {
    return mutate(
        [&](numberrepbody& b) -> numberrepbody& { return b._hypot(x.getbody(), y.getbody()); });
  }
  numberrephandle& setprecision(unsigned long p, bool force) {
    return mutate([&](numberrepbody& b) -> numberrepbody& { return b.setprecision(p, force); });
  }
  numberrephandle& negate() {
    return mutate([](numberrepbody& b) -> numberrepbody& { return b.negate(); });
  }
  numberrephandle& abs() {
    return mutate([](numberrepbody& b) -> numberrepbody& { return b.abs(); });
  }
  numberrephandle& pow2(long n) {
    return mutate([n](numberrepbody& b) -> numberrepbody& { return b.pow2(n); });
  }
  numberrephandle& stripscaling(double slope, int exponent, double bias) {
    return mutate(
        [&](numberrepbody& b) -> numberrepbody& { return b.stripscaling(slope, exponent, bias); });
  }

  // Roundings: to an integer, or with n to a multiple of 2^-n.
  numberrephandle& ceil() {
    return mutate([](numberrepbody& b) -> numberrepbody& { return b.ceil(); });
  }
  numberrephandle& ceil(long n) {
    return mutate([n](numberrepbody& b) -> numberrepbody& { return b.ceil(n); });
  }
  numberrephandle& convergent() {
    return mutate([](numberrepbody& b) -> numberrepbody& { return b.convergent(); });
  }
  numberrephandle& convergent(long n) {
    return mutate([n](numberrepbody& b) -> numberrepbody& { return b.convergent(n); });
  }
  numberrephandle& fix() {
    return mutate([](numberrepbody& b) -> numberrepbody& { return b.fix(); });
  }
  numberrephandle& fix(long n) {
    return mutate([n](numberrepbody& b) -> numberrepbody& { return b.fix(n); });
  }
  numberrephandle& floor() {
    return mutate([](numberrepbody& b) -> numberrepbody& { return b.floor(); });
  }
  numberrephandle& floor(long n) {
    return mutate([n](numberrepbody& b) -> numberrepbody& { return b.floor(n); });
  }
  numberrephandle& nearest() {
    return mutate([](numberrepbody& b) -> numberrepbody& { return b.nearest(); });
  }
  numberrephandle& nearest(long n) {
    return mutate([n](numberrepbody& b) -> numberrepbody& { return b.nearest(n); });
  }
  numberrephandle& round() {
    return mutate([](numberrepbody& b) -> numberrepbody& { return b.round(); });
  }
  numberrephandle& round(long n) {
    return mutate([n](numberrepbody& b) -> numberrepbody& { return b.round(n); });
  }

  // Stored-integer bit operations; the mask's kind selects the body's form.
  template <class Mask, class Two>
  numberrephandle& bitcmp(bool issigned, int wordlength, double slope, int exponent, double bias,
                          Mask xormask, Two twoToTheWordLength) {
    return mutate([&](numberrepbody& b) -> numberrepbody& {
      return b.bitcmp(issigned, wordlength, slope, exponent, bias, xormask, twoToTheWordLength);
    });
  }
  template <class Two>
  numberrephandle& fibitand(const numberrephandle& o, bool issigned, int wordlength, double slope,
                            int exponent, double bias, Two two) {
    return mutate([&](numberrepbody& b) -> numberrepbody& {
      return b.fibitand(o.getbody(), issigned, wordlength, slope, exponent, bias, two);
    });
  }
  template <class Two>
  numberrephandle& fibitor(const numberrephandle& o, bool issigned, int wordlength, double slope,
                           int exponent, double bias, Two two) {
    return mutate([&](numberrepbody& b) -> numberrepbody& {
      return b.fibitor(o.getbody(), issigned, wordlength, slope, exponent, bias, two);
    });
  }
  template <class Two>
  numberrephandle& bitxor(const numberrephandle& o, bool issigned, int wordlength, double slope,
                          int exponent, double bias, Two two) {
    return mutate([&](numberrepbody& b) -> numberrepbody& {
      return b.bitxor(o.getbody(), issigned, wordlength, slope, exponent, bias, two);
    });
  }
  template <class Two>
  unsigned char bitget(long position, bool issigned, int wordlength, double slope, int exponent,
                       double bias, Two two) const {
    return body_->bitget(position, issigned, wordlength, slope, exponent, bias, two);
  }
  template <class Two>
  numberrephandle& bitset(long position, bool bitvalue, bool issigned, int wordlength, double slope,
                          int exponent, double bias, Two two) {
    return mutate([&](numberrepbody& b) -> numberrepbody& {
      return b.bitset(position, bitvalue, issigned, wordlength, slope, exponent, bias, two);
    });
  }

  // Copy-on-write, then the operation op(body) -> result body, then adoption of the body it
  // returns.
  template <class Op>
  numberrephandle& mutate(Op op) {
    if (body_->getcount() > 1) unshare();
    numberrepbody& result = op(*body_);
    if (&result != body_) changebody(&result);
    return *this;
  }

 private:
  void unshare();
  static numberrepbody* checked(numberrepbody* b) {
    if (b == nullptr) throw std::bad_alloc();
    b->incrcount();
    return b;
  }

  numberrepbody* body_;
};

}  // namespace corbel
