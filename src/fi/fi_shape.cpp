// fi: the shape changes that keep every element: transpose, conjugate transpose, reshape and
// squeeze. Each makes a new array of this type and fimath; values are copied as they are,
// except that the conjugate transpose negates the imaginary parts through the quantizer (the
// most negative value saturates or wraps, as in conj).
#include <vector>

#include "fi/fi.h"
#include "host/messages.h"

namespace corbel {

std::unique_ptr<fi> fi::gathered(const std::vector<std::size_t>& at,
                                 const std::vector<int>& dims) const {
  auto r =
      std::make_unique<fi>(dims.data(), static_cast<int>(dims.size()), type_, math_, iscomplex());
  for (std::size_t k = 0; k < at.size(); ++k) {
    const int i = static_cast<int>(at[k]), out = static_cast<int>(k);
    r->realRef(out) = real(i);
    if (iscomplex()) r->imagRef(out) = imag(i);
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

}  // namespace corbel
