// Evaluation of numeric text by recursive descent.
//
// Grammar (whitespace is free between tokens, except inside brackets, see below):
//   text    := expr | (nothing)
//   expr    := term (('+' | '-') term)*
//   term    := unary (('*' | '/') unary)*
//   unary   := ('+' | '-') unary | power
//   power   := primary ('^' ('+' | '-')* primary)*     left to right, binding tighter than signs
//   primary := number | name | '(' expr ')' | '[' rows ']'
//   rows    := row ((';' | newline) row)*,  row := element ((',' | blank) element)*
// Inside brackets (outside parentheses) a blank followed by a sign that is directly followed by
// an operand starts a new element: "[1 -2]" has two elements, "[1 - 2]" and "[1 -  2]" one.
// Arithmetic applies to scalars only; a bracketed matrix must stand alone.
#include "host/numeric_eval.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <string>
#include <vector>

#include "host/messages.h"

namespace corbel {
namespace {

struct Scalar {
  double value;
  bool logical;  // a bare true or false
};

class Parser {
 public:
  explicit Parser(std::string_view text) : text_(text) {}

  HostArray parse() {
    skip_blanks(true);
    if (at_end()) return HostArray();
    HostArray result;
    if (peek() == '[') {
      result = matrix();
    } else {
      Scalar s = expr();
      result = s.logical ? HostArray::make_logical(s.value != 0) : HostArray::make_double(s.value);
    }
    skip_blanks(true);
    if (!at_end()) fail();
    return result;
  }

 private:
  [[noreturn]] void fail() const { raise(Msg::HostEvalSyntax, std::string(text_).c_str()); }

  bool at_end() const { return pos_ >= text_.size(); }
  char peek(std::size_t ahead = 0) const {
    return pos_ + ahead < text_.size() ? text_[pos_ + ahead] : '\0';
  }
  static bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

  // Skips blanks (and newlines when allowed); returns whether any were skipped.
  bool skip_blanks(bool newlines) {
    const std::size_t start = pos_;
    while (!at_end() && (is_blank(peek()) || (newlines && peek() == '\n'))) ++pos_;
    return pos_ != start;
  }

  // Inside brackets: a blank before a sign glued to its operand ends the element.
  bool element_ends_here(bool blank_before) const {
    if (!in_matrix_ || depth_ != 0 || !blank_before) return false;
    const char next = peek(1);
    return next != '\0' && !is_blank(next) && next != '\n';
  }

  Scalar expr() {
    Scalar left = term();
    for (;;) {
      const std::size_t save = pos_;
      const bool blank = skip_blanks(depth_ != 0 || !in_matrix_);
      const char op = peek();
      if ((op != '+' && op != '-') || element_ends_here(blank)) {
        pos_ = save;
        return left;
      }
      ++pos_;
      Scalar right = term();
      left = {op == '+' ? left.value + right.value : left.value - right.value, false};
    }
  }

  Scalar term() {
    Scalar left = unary();
    for (;;) {
      const std::size_t save = pos_;
      skip_blanks(depth_ != 0 || !in_matrix_);
      const char op = peek();
      if (op != '*' && op != '/') {
        pos_ = save;
        return left;
      }
      ++pos_;
      Scalar right = unary();
      left = {op == '*' ? left.value * right.value : left.value / right.value, false};
    }
  }

  Scalar unary() {
    skip_blanks(depth_ != 0 || !in_matrix_);
    if (peek() == '+' || peek() == '-') {
      const bool negate = peek() == '-';
      ++pos_;
      Scalar s = unary();
      return {negate ? -s.value : s.value, false};
    }
    return power();
  }

  Scalar power() {
    Scalar base = primary();
    for (;;) {
      const std::size_t save = pos_;
      skip_blanks(depth_ != 0 || !in_matrix_);
      if (peek() != '^') {
        pos_ = save;
        return base;
      }
      ++pos_;
      skip_blanks(depth_ != 0 || !in_matrix_);
      double sign = 1.0;
      while (peek() == '+' || peek() == '-') {
        if (peek() == '-') sign = -sign;
        ++pos_;
        skip_blanks(depth_ != 0 || !in_matrix_);
      }
      const Scalar exponent = primary();
      base = {std::pow(base.value, sign * exponent.value), false};
    }
  }

  Scalar primary() {
    skip_blanks(depth_ != 0 || !in_matrix_);
    const char c = peek();
    if (c == '(') {
      ++pos_;
      ++depth_;
      Scalar s = expr();
      skip_blanks(true);
      if (peek() != ')') fail();
      ++pos_;
      --depth_;
      return {s.value, false};
    }
    if (std::isdigit(static_cast<unsigned char>(c)) ||
        (c == '.' && std::isdigit(static_cast<unsigned char>(peek(1))))) {
      return {number(), false};
    }
    if (std::isalpha(static_cast<unsigned char>(c))) return name();
    fail();
  }

  double number() {
    std::string lexeme;
    auto digits = [&] {
      while (std::isdigit(static_cast<unsigned char>(peek()))) lexeme += text_[pos_++];
    };
    digits();
    if (peek() == '.') {
      lexeme += text_[pos_++];
      digits();
    }
    const char e = peek();
    if (e == 'e' || e == 'E' || e == 'd' || e == 'D') {
      std::size_t ahead = 1;
      if (peek(1) == '+' || peek(1) == '-') ahead = 2;
      if (std::isdigit(static_cast<unsigned char>(peek(ahead)))) {
        lexeme += 'e';
        if (ahead == 2) lexeme += peek(1);
        pos_ += ahead;
        digits();
      }
    }
    if (std::isalpha(static_cast<unsigned char>(peek())) || peek() == '_') fail();
    return std::strtod(lexeme.c_str(), nullptr);
  }

  Scalar name() {
    std::string word;
    while (std::isalnum(static_cast<unsigned char>(peek())) || peek() == '_') word += text_[pos_++];
    if (word == "true") return {1.0, true};
    if (word == "false") return {0.0, true};
    if (word == "pi") return {std::numbers::pi, false};
    if (word == "Inf" || word == "inf") return {HUGE_VAL, false};
    if (word == "NaN" || word == "nan") return {std::nan(""), false};
    fail();
  }

  HostArray matrix() {
    ++pos_;  // '['
    in_matrix_ = true;
    std::vector<std::vector<Scalar>> rows(1);
    for (;;) {
      skip_blanks(false);
      const char c = peek();
      if (c == '\0') fail();
      if (c == ']') {
        ++pos_;
        break;
      }
      if (c == ';' || c == '\n') {
        ++pos_;
        rows.emplace_back();
        continue;
      }
      if (c == ',') {
        if (rows.back().empty()) fail();  // a comma must follow an element
        ++pos_;
        skip_blanks(false);
        if (peek() == ',' || peek() == ']' || peek() == ';') fail();
        continue;
      }
      if (c == '[') fail();
      rows.back().push_back(expr());
    }
    in_matrix_ = false;
    std::erase_if(rows, [](const std::vector<Scalar>& r) { return r.empty(); });

    const std::size_t nrows = rows.size();
    const std::size_t ncols = nrows ? rows[0].size() : 0;
    bool logical = nrows != 0;
    for (const auto& r : rows) {
      if (r.size() != ncols) raise(Msg::HostEvalRows, std::string(text_).c_str());
      for (const Scalar& s : r) logical = logical && s.logical;
    }
    HostArray a(logical ? HostClass::Logical : HostClass::Double, {nrows, ncols});
    for (std::size_t i = 0; i < nrows; ++i) {
      for (std::size_t j = 0; j < ncols; ++j) {
        const double v = rows[i][j].value;
        if (logical) {
          a.real<bool>()[j * nrows + i] = v != 0;
        } else {
          a.real<double>()[j * nrows + i] = v;
        }
      }
    }
    return a;
  }

  std::string_view text_;
  std::size_t pos_ = 0;
  bool in_matrix_ = false;
  int depth_ = 0;  // parentheses open
};

}  // namespace

HostArray evaluate_numeric_text(std::string_view text) {
  return Parser(text).parse();
}

}  // namespace corbel
