// The in-process host and the active-host slot.
#include "host/inprocess_host.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "host/builtin_set.h"
#include "host/host_error.h"
#include "host/messages.h"
#include "host/numeric_eval.h"

namespace corbel {
namespace {

HostServices& default_host() {
  static InProcessHost host(stdout, false);
  return host;
}

HostServices* active_host = nullptr;

void check_counts(std::string_view name, std::span<HostArray> outputs,
                  std::span<const HostArray> inputs, int max_outputs, int inputs_needed) {
  const std::string n(name);
  if (static_cast<int>(outputs.size()) > max_outputs) {
    raise(Msg::HostTooManyOutputs, n.c_str(), max_outputs);
  }
  if (static_cast<int>(inputs.size()) != inputs_needed) {
    raise(Msg::HostWrongInputCount, n.c_str(), inputs_needed);
  }
}

// One part of a matrix element: the text of its magnitude and whether a minus goes first.
struct PrintedPart {
  std::string magnitude;
  bool negative = false;
};

PrintedPart print_part(double v, bool whole) {
  if (std::isnan(v)) return {"NaN", false};
  if (std::isinf(v)) return {"Inf", v < 0};
  char buf[64];
  std::snprintf(buf, sizeof buf, whole ? "%.0f" : "%.4f", std::fabs(v));
  PrintedPart part{buf, false};
  // A value that prints as zero carries no minus sign.
  part.negative = v < 0 && part.magnitude.find_first_of("123456789") != std::string::npos;
  return part;
}

std::string pad_left(const std::string& s, std::size_t width) {
  return std::string(width > s.size() ? width - s.size() : 0, ' ') + s;
}

}  // namespace

HostServices& host_services() {
  return active_host ? *active_host : default_host();
}

void poll_interrupt() {
  // The process-wide default host has no interrupt to report.
  if (active_host) active_host->poll_interrupt();
}

HostServices* set_host_services(HostServices* host) {
  HostServices* previous = active_host;
  active_host = host;
  return previous;
}

InProcessHost::InProcessHost(std::FILE* echo, bool record) : echo_(echo), record_(record) {
  register_function("lasterr", [this](std::span<HostArray> out, std::span<const HostArray> in) {
    check_counts("lasterr", out, in, 2, 0);
    if (out.size() > 0) out[0] = HostArray::make_text(last_message_);
    if (out.size() > 1) out[1] = HostArray::make_text(last_identifier_);
  });
  register_function("eval", [](std::span<HostArray> out, std::span<const HostArray> in) {
    check_counts("eval", out, in, 1, 1);
    if (!in[0].is_text()) raise(Msg::HostEvalNotText);
    HostArray value = evaluate_numeric_text(in[0].text());
    if (!out.empty()) out[0] = std::move(value);
  });
}

void InProcessHost::print(std::string_view text) {
  if (echo_) std::fwrite(text.data(), 1, text.size(), echo_);
  if (record_) console_.append(text);
}

void InProcessHost::print_matrix(const HostArray& values) {
  const std::size_t n = values.numel();
  if (n == 0) return;
  const bool complex = values.is_complex();
  bool whole = true;
  for (std::size_t k = 0; k < n && whole; ++k) {
    for (double v : {values.real_as_double(k), values.imag_as_double(k)}) {
      if (std::isfinite(v) && (v != std::floor(v) || std::fabs(v) >= 1e10)) whole = false;
    }
  }
  std::vector<PrintedPart> re(n), im(complex ? n : 0);
  std::size_t reWidth = 0, imWidth = 0;
  for (std::size_t k = 0; k < n; ++k) {
    re[k] = print_part(values.real_as_double(k), whole);
    reWidth = std::max(reWidth, re[k].magnitude.size());
    if (complex) {
      im[k] = print_part(values.imag_as_double(k), whole);
      imWidth = std::max(imWidth, im[k].magnitude.size());
    }
  }
  // Extra dimensions become further columns: element (r, c) is at r + c * rows.
  const std::size_t rows = values.rows();
  const std::size_t cols = n / rows;
  std::string out;
  for (std::size_t r = 0; r < rows; ++r) {
    for (std::size_t c = 0; c < cols; ++c) {
      const std::size_t k = r + c * rows;
      out += "  ";
      out += pad_left((re[k].negative ? "-" : "") + re[k].magnitude, reWidth + 1);
      if (complex) {
        out += im[k].negative ? " - " : " + ";
        out += pad_left(im[k].magnitude, imWidth);
        out += 'i';
      }
    }
    out += '\n';
  }
  print(out);
}

void InProcessHost::poll_interrupt() {
  ++polls_seen_;
  if (countdown_ < 0) return;
  if (countdown_-- == 0) throw Interrupt{};
}

void InProcessHost::warning(std::string_view identifier, std::string_view text) {
  if (echo_) std::fprintf(echo_, "Warning: %.*s\n", static_cast<int>(text.size()), text.data());
  if (record_) warnings_.push_back({std::string(identifier), std::string(text)});
}

std::string InProcessHost::take_console() {
  return std::exchange(console_, {});
}

std::vector<InProcessHost::Warning> InProcessHost::take_warnings() {
  return std::exchange(warnings_, {});
}

void InProcessHost::register_function(std::string name, Function function) {
  functions_[std::move(name)] = std::move(function);
}

int InProcessHost::call_function(std::string_view name, std::span<HostArray> outputs,
                                 std::span<const HostArray> inputs) {
  std::string identifier, message;
  try {
    auto it = functions_.find(name);
    if (it == functions_.end()) raise(Msg::HostUnknownFunction, std::string(name).c_str());
    it->second(outputs, inputs);
    return 0;
  } catch (const HostError& e) {
    identifier = e.identifier();
    message = e.text();
  } catch (const std::exception& e) {
    message = e.what();
  }
  for (HostArray& o : outputs) o.release();
  record_error(identifier, message);
  if (returns_status()) return 1;
  raise_host_error(std::move(identifier), std::move(message));
}

void InProcessHost::call_builtin_method(std::string_view method, std::span<HostArray> outputs,
                                        std::span<const HostArray> inputs, XoErrorStatus& status) {
  try {
    run_builtin_method(*this, method, outputs, inputs);
  } catch (const HostError& e) {
    status.errors.push_back({e.identifier(), e.text()});
    record_error(e.identifier(), e.text());
  } catch (const std::exception& e) {
    status.errors.push_back({"", e.what()});
    record_error("", e.what());
  }
}

void InProcessHost::record_error(std::string identifier, std::string message) {
  last_identifier_ = std::move(identifier);
  last_message_ = std::move(message);
}

}  // namespace corbel
