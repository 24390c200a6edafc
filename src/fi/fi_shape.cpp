// fi: the shape changes: transpose, conjugate transpose, reshape and squeeze, which keep every
// element, and the matrices made of some of the elements: diag, tril, triu, toeplitz and
// hankel. Each makes a new array of this type and fimath; values are copied as they are
// (new elements are zeros), except that the conjugate transpose negates the imaginary parts
// through the quantizer (the most negative value saturates or wraps, as in conj).
#include <algorithm>
#include <vector>

#include "fi/fi.h"
#include "host/messages.h"

namespace corbel {

std::unique_ptr<fi> fi::gathered(const std::vector<std::size_t>& at,
                                 const std::vector<int>& dims) const {
  auto r =
      std::make_unique<fi>(dims.data(), static_cast<int>(dims.size()), type_, math_, iscomplex());
  if (at.empty()) return r;
  number* re = &r->realRef(0);
  const number* from = &real(0);
  for (std::size_t k = 0; k < at.size(); ++k) re[k] = from[at[k]];
  if (iscomplex()) {
    number* im = &r->imagRef(0);
    for (std::size_t k = 0; k < at.size(); ++k) im[k] = imag(static_cast<int>(at[k]));
  }
  return r;
}

std::unique_ptr<fi> fi::transpose() const {
  if (ndims() > 2) raise(Msg::FiTransposeNd);
  const int m = dims_[0], n = dims_[1];
  std::vector<std::size_t> at(static_cast<std::size_t>(numel_));
  // Element (j, i) of the result is element (i, j) of this array.
  for (int i = 0; i < m; ++i)
    for (int j = 0; j < n; ++j)
      at[static_cast<std::size_t>(j + i * n)] = static_cast<std::size_t>(i + j * m);
  return gathered(at, {n, m});
}

std::unique_ptr<fi> fi::ctranspose() const {
  return transpose()->conj();
}

std::unique_ptr<fi> fi::reshaped(const std::vector<int>& dims) const {
  long count = 1;
  for (int d : dims) {
    if (d < 0) raise(Msg::FiReshapeCount);
    count *= d;
  }
  if (dims.size() < 2 || count != numel_) raise(Msg::FiReshapeCount);
  auto r = std::make_unique<fi>(*this, WholeCopy);
  r->copyDimensions(dims.data(), static_cast<int>(dims.size()));
  r->updateNumel();
  return r;
}

std::unique_ptr<fi> fi::squeeze() const {
  // Singleton dimensions go beyond the second; a matrix stays as it is, and what is left of
  // an N-d array is at least two-dimensional (a 1x1xN array becomes N x 1).
  if (ndims() <= 2) return std::make_unique<fi>(*this, WholeCopy);
  std::vector<int> dims;
  for (int d : dims_)
    if (d != 1) dims.push_back(d);
  while (dims.size() < 2) dims.push_back(1);
  return reshaped(dims);
}

namespace {

// A layout for rearranged: -p keeps element p (one-based), 0 is a zero.
HostArray layoutOf(const std::vector<double>& entries, std::size_t m, std::size_t n) {
  HostArray out(HostClass::Double, {m, n});
  std::copy(entries.begin(), entries.end(), out.real<double>());
  return out;
}

}  // namespace

std::unique_ptr<fi> fi::diag(int k) const {
  if (ndims() > 2) raise_patterned(Msg::FiMatrixOnly, "diag");
  const int m = dims_[0], n = dims_[1];
  const int shift = k < 0 ? -k : k;
  if (m == 1 || n == 1) {
    // A vector goes on diagonal k of a square matrix.
    const auto side = static_cast<std::size_t>(numel_ + shift);
    std::vector<double> layout(side * side, 0.0);
    for (int i = 0; i < numel_; ++i) {
      const std::size_t row = static_cast<std::size_t>(k < 0 ? i + shift : i);
      const std::size_t col = static_cast<std::size_t>(k > 0 ? i + shift : i);
      layout[row + col * side] = -(i + 1.0);
    }
    return rearranged(layoutOf(layout, side, side), {});
  }
  // A matrix gives its diagonal k as a column.
  std::vector<std::size_t> at;
  for (int i = k < 0 ? shift : 0, j = k > 0 ? shift : 0; i < m && j < n; ++i, ++j)
    at.push_back(static_cast<std::size_t>(i + j * m));
  return gathered(at, {static_cast<int>(at.size()), 1});
}

std::unique_ptr<fi> fi::triangle(int k, bool lower) const {
  if (ndims() > 2) raise_patterned(Msg::FiMatrixOnly, lower ? "tril" : "triu");
  const int m = dims_[0], n = dims_[1];
  std::vector<double> layout(static_cast<std::size_t>(numel_), 0.0);
  for (int j = 0; j < n; ++j)
    for (int i = 0; i < m; ++i)
      if (lower ? j - i <= k : j - i >= k)
        layout[static_cast<std::size_t>(i + j * m)] = -(i + j * m + 1.0);
  return rearranged(layoutOf(layout, static_cast<std::size_t>(m), static_cast<std::size_t>(n)), {});
}

std::unique_ptr<fi> fi::toeplitz() const {
  // The symmetric matrix whose element (i, j) is element |i - j| of this vector.
  const auto n = static_cast<std::size_t>(numel_);
  std::vector<std::size_t> at(n * n);
  for (std::size_t j = 0; j < n; ++j)
    for (std::size_t i = 0; i < n; ++i) at[i + j * n] = i > j ? i - j : j - i;
  return gathered(at, {numel_, numel_});
}

std::unique_ptr<fi> fi::hankel() const {
  // Element (i, j) is element i + j of this vector, zero past its end.
  const auto n = static_cast<std::size_t>(numel_);
  std::vector<double> layout(n * n, 0.0);
  for (std::size_t j = 0; j < n; ++j)
    for (std::size_t i = 0; i + j < n; ++i) layout[i + j * n] = -static_cast<double>(i + j + 1);
  return rearranged(layoutOf(layout, n, n), {});
}

}  // namespace corbel
