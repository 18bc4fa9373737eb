// QVLIB60 for C++20: series and bar sets that free themselves or borrow the caller's memory, errors as
// exceptions, calculations and formulas by name. A thin layer: everything goes through the flat interface,
// and qv::Series and qv::Bars are its records, to be handed to any of its functions.
//
//     qv::Bars bars = qv::Bars::borrow({.date = dates, .close = closes});
//     qv::Series rsi = qv::calc("rsi", bars.close, {14});
//     std::vector<qv::Series> bands = qv::calcAll("bollinger", bars);
//     qv::Series rule = qv::Formula("rsi(14) < 30 and close > sma(200)")(bars);
//     for (int i = rule.firstValid; i < rule.size; ++i) ...
#ifndef QVLIB60_HPP
#define QVLIB60_HPP

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "qvlib60.h"

namespace qv {

// ---- Errors -------------------------------------------------------------------------------------

// "qvRSI: Invalid Parm": what failed, and the library's text of the code.
class Error : public std::runtime_error {
 public:
  Error(const std::string& what, int code) : std::runtime_error(what + ": " + textOf(code)), code_(code) {}
  Error(const std::string& what, const std::string& why, int code)
      : std::runtime_error(what + ": " + why), code_(code) {}

  int code() const noexcept { return code_; }

  static std::string textOf(int code) {
    char text[32];
    qvErrDesc(code, text);
    return text;
  }

 private:
  int code_;
};

// Throws for a code below 0, returns any other.
inline int check(int status, const std::string& what) {
  if (status < 0) throw Error(what, status);
  return status;
}

// ---- Series and bar sets ------------------------------------------------------------------------

// A series that owns its block, or borrows one. An empty one may be the output of any calculation.
class Series : public QvArray {
 public:
  Series() noexcept : QvArray{} {}
  explicit Series(int n) : QvArray{} { check(qvAllocArray(this, n), "qvAllocArray"); }
  explicit Series(std::span<const double> items, int first = 0) : Series(lengthOf(items.size())) {
    std::copy(items.begin(), items.end(), data);
    firstValid = first;
  }
  Series(std::initializer_list<double> items) : Series(std::span(items.begin(), items.size())) {}
  Series(Series&& other) noexcept : QvArray(other), borrowed_(other.borrowed_) { other.forget(); }
  Series& operator=(Series&& other) noexcept {
    Series taken(std::move(other));
    std::swap<QvArray>(*this, taken);
    std::swap(borrowed_, taken.borrowed_);
    return *this;
  }
  ~Series() { reset(); }

  // The caller's memory, which must outlive the series. A series that borrows memory which may not be written
  // is for reading only.
  static Series borrow(std::span<double> items, int first = 0) {
    Series s;
    static_cast<QvArray&>(s) = {items.data(), lengthOf(items.size()), lengthOf(items.size()), first};
    s.borrowed_ = true;
    return s;
  }
  static const Series borrow(std::span<const double> items, int first = 0) {
    return borrow(std::span<double>(const_cast<double*>(items.data()), items.size()), first);
  }
  static Series borrow(std::vector<double>& items, int first = 0) {
    return borrow(std::span<double>(items), first);
  }

  Series copy() const {
    Series s;
    check(qvCopyArray(this, &s), "qvCopyArray");
    return s;
  }
  // Empty again.
  void reset() noexcept {
    if (borrowed_) forget();
    qvFreeArray(this);
  }

  double operator[](int i) const noexcept { return data[i]; }
  double& operator[](int i) noexcept { return data[i]; }
  std::span<const double> items() const noexcept { return {data, data ? lengthOf(size) : 0}; }
  // The items that are values.
  std::span<const double> values() const noexcept {
    return items().subspan(lengthOf(std::clamp(firstValid, 0, std::max(size, 0))));
  }

  static int lengthOf(std::size_t n) {
    if (n > 0x40000000) throw Error("qv::Series", "too long", QV_MALLOC);
    return static_cast<int>(n);
  }
  static std::size_t lengthOf(int n) noexcept { return n > 0 ? static_cast<std::size_t>(n) : 0; }

 private:
  void forget() noexcept {
    static_cast<QvArray&>(*this) = {};
    borrowed_ = false;
  }
  bool borrowed_ = false;
};

// The series of a bar set in the order date, open, high, low, close, volume, open interest.
inline constexpr int kBarSeries = 7;
inline constexpr QvArray QvBars::*kSeriesOfBars[kBarSeries] = {
    &QvBars::date,  &QvBars::open,   &QvBars::high,        &QvBars::low,
    &QvBars::close, &QvBars::volume, &QvBars::openInterest};

// Columns of one length to borrow as a bar set; an empty one is missing.
struct Columns {
  std::span<const double> date = {}, open = {}, high = {}, low = {}, close = {}, volume = {},
                          openInterest = {};
};

// A bar set that owns its blocks, or borrows columns.
class Bars : public QvBars {
 public:
  Bars() noexcept : QvBars{} {}
  explicit Bars(int n) : QvBars{} { check(qvAllocBars(this, n), "qvAllocBars"); }
  Bars(Bars&& other) noexcept : QvBars(other), dates_(std::move(other.dates_)), borrowed_(other.borrowed_) {
    other.forget();
  }
  Bars& operator=(Bars&& other) noexcept {
    Bars taken(std::move(other));
    std::swap<QvBars>(*this, taken);
    std::swap(dates_, taken.dates_);
    std::swap(borrowed_, taken.borrowed_);
    return *this;
  }
  ~Bars() { reset(); }

  // The caller's memory, for reading, which must outlive the bar set. Bars without dates are numbered from 1.
  static Bars borrow(const Columns& columns) {
    const std::span<const double> all[] = {columns.date,  columns.open,   columns.high,        columns.low,
                                           columns.close, columns.volume, columns.openInterest};
    Bars b;
    b.borrowed_ = true;
    std::size_t n = 0;
    for (const auto& column : all) n = std::max(n, column.size());
    b.barsize = b.datasize = Series::lengthOf(n);
    for (int k = 0; k < kBarSeries; ++k) {
      if (all[k].empty()) continue;
      if (all[k].size() != n)
        throw Error("qv::Bars::borrow", "columns of different lengths", QV_INVALID_PARM);
      b.*kSeriesOfBars[k] = {const_cast<double*>(all[k].data()), b.barsize, b.barsize, 0};
    }
    if (columns.date.empty() && n > 0) {
      b.dates_ = std::make_unique<double[]>(n);
      for (std::size_t i = 0; i < n; ++i) b.dates_[i] = static_cast<double>(i + 1);
      b.date = {b.dates_.get(), b.barsize, b.barsize, 0};
    }
    return b;
  }

  Bars copy() const {
    Bars b;
    check(qvCopyBars(this, &b), "qvCopyBars");
    return b;
  }
  // Empty again.
  void reset() noexcept {
    if (borrowed_) forget();
    qvFreeBars(this);
  }

 private:
  void forget() noexcept {
    static_cast<QvBars&>(*this) = {};
    dates_.reset();
    borrowed_ = false;
  }
  std::unique_ptr<double[]> dates_;
  bool borrowed_ = false;
};

// ---- Calculations by name -----------------------------------------------------------------------

// Numbers of a call: {14}, {12, 26, 9}, or a vector. Those that are left out are the usual ones.
class Params {
 public:
  struct Number {
    double value;
    Number(double v) : value(v) {}
    Number(int v) : value(v) {}
  };
  Params() = default;
  Params(std::initializer_list<Number> numbers) {
    for (const Number& n : numbers) values_.push_back(n.value);
  }
  Params(std::vector<double> values) : values_(std::move(values)) {}

  // All parameters of an entry.
  std::vector<double> of(const QvCatalogueEntry& entry) const {
    const auto count = static_cast<std::size_t>(entry.paramCount);
    if (values_.size() > count) throw Error(entry.name, "too many parameters", QV_INVALID_PARM);
    std::vector<double> all = values_;
    for (std::size_t k = all.size(); k < count; ++k) all.push_back(entry.params[k].defaultValue);
    return all;
  }

 private:
  std::vector<double> values_;
};

// The entry of a short or full name; throws for any other.
inline const QvCatalogueEntry& findCalculation(const std::string& name) {
  const QvCatalogueEntry* entry = qvCatalogueFind(name.c_str());
  if (!entry) throw Error(name, "no such calculation", QV_INVALID_PARM);
  return *entry;
}

// All outputs of an entry, as many bar sets and series handed in as it takes. Where the bars are too few for
// the periods, the first valid index of every output is its size.
inline std::vector<Series> calcAll(const QvCatalogueEntry& entry, const std::vector<const QvBars*>& bars,
                                   const std::vector<const QvArray*>& inputs, const Params& params = {},
                                   int start = 0) {
  if (std::cmp_not_equal(bars.size(), entry.barsCount) || std::cmp_not_equal(inputs.size(), entry.inputCount))
    throw Error(entry.name, "wrong number of bar sets or series", QV_INVALID_PARM);
  std::vector<Series> outputs(static_cast<std::size_t>(entry.outputCount));
  std::vector<QvArray*> to;
  to.reserve(outputs.size());
  for (Series& s : outputs) to.push_back(&s);
  const std::vector<double> numbers = params.of(entry);
  const int status = check(
      qvCatalogueCall(&entry, bars.data(), inputs.data(), to.data(), numbers.data(), start), entry.name);
  for (Series& s : outputs)
    if (status > 0) s.firstValid = s.size;
  return outputs;
}

// Of one series.
inline std::vector<Series> calcAll(const std::string& name, const QvArray& in, const Params& params = {}) {
  return calcAll(findCalculation(name), {}, {&in}, params);
}

// Of one bar set. Series that the calculation takes are those of the bar set that one usually passes.
inline std::vector<Series> calcAll(const std::string& name, const QvBars& bars, const Params& params = {}) {
  const QvCatalogueEntry& entry = findCalculation(name);
  std::vector<const QvArray*> inputs;
  for (int i = 0; i < entry.inputCount; ++i) {
    for (int k = 0; k < kBarSeries; ++k)
      if (entry.inputs[i].series & (1 << k)) {
        inputs.push_back(&(bars.*kSeriesOfBars[k]));
        break;
      }
  }
  std::vector<const QvBars*> sets;
  if (entry.barsCount == 1) sets.push_back(&bars);
  return calcAll(entry, sets, inputs, params);
}

// The main output alone.
template <typename Data>
Series calc(const std::string& name, const Data& data, const Params& params = {}) {
  std::vector<Series> all = calcAll(name, data, params);
  return std::move(all[static_cast<std::size_t>(findCalculation(name).mainOutput)]);
}

// ---- Formulas -----------------------------------------------------------------------------------

// An opened formula. Throws what is wrong with a text, and where.
class Formula {
 public:
  explicit Formula(const std::string& text) {
    char error[200];
    f_.reset(qvFormulaOpen(text.c_str(), error, sizeof error));
    if (!f_) throw Error("formula", error, QV_INVALID_PARM);
  }

  Formula& set(const std::string& name, double value) {
    check(qvFormulaParameter(f_.get(), name.c_str(), value), "$" + name);
    return *this;
  }
  std::vector<std::string> parameters() const {
    std::vector<std::string> names;
    const int count = qvFormulaParameterCount(f_.get());
    names.reserve(static_cast<std::size_t>(count > 0 ? count : 0));
    for (int i = 0; i < count; ++i) names.emplace_back(qvFormulaParameterName(f_.get(), i));
    return names;
  }

  Series operator()(const QvBars& bars) const {
    Series out;
    evaluate(bars, out);
    return out;
  }
  // Into a series that is used again.
  void evaluate(const QvBars& bars, QvArray& out) const {
    check(qvFormulaEval(f_.get(), &bars, &out), "qvFormulaEval");
  }
  QvFormulaNeeds needs(double tolerance = 1e-3) const {
    QvFormulaNeeds n;
    check(qvFormulaNeeds(f_.get(), tolerance, &n), "qvFormulaNeeds");
    return n;
  }
  const QvFormula* get() const noexcept { return f_.get(); }

 private:
  struct Close {
    void operator()(QvFormula* f) const noexcept { qvFormulaClose(f); }
  };
  std::unique_ptr<QvFormula, Close> f_;
};

// ---- Streams ------------------------------------------------------------------------------------

// A calculation or formula bar by bar; qvlib60/stream.h says how values and outputs lie. Copies are streams
// of their own in the same state.
class Stream {
 public:
  explicit Stream(const QvCatalogueEntry& entry, const double* params = nullptr, int start = 0) {
    QvStream* opened = nullptr;
    check(qvStreamOpen(&entry, params, start, &opened), entry.name);
    s_.reset(opened);
  }
  explicit Stream(const Formula& formula) {
    QvStream* opened = nullptr;
    check(qvStreamOpenFormula(formula.get(), &opened), "qvStreamOpenFormula");
    s_.reset(opened);
  }
  static Stream load(std::span<const unsigned char> block) {
    QvStream* loaded = nullptr;
    check(qvStreamLoad(block.data(), static_cast<int>(block.size()), &loaded), "qvStreamLoad");
    return Stream(loaded);
  }
  Stream(const Stream& other) {
    QvStream* copy = nullptr;
    check(qvStreamCopy(other.get(), &copy), "qvStreamCopy");
    s_.reset(copy);
  }
  Stream(Stream&&) noexcept = default;
  Stream& operator=(Stream other) noexcept {
    s_.swap(other.s_);
    return *this;
  }

  void update(const double* const* values, int count, double* const* outputs) {
    check(qvStreamUpdate(get(), values, count, outputs), "qvStreamUpdate");
  }
  void peek(const double* const* values, double* const* outputs) {
    check(qvStreamPeek(get(), values, outputs), "qvStreamPeek");
  }
  void replaceLast(const double* const* values, double* const* outputs) {
    check(qvStreamReplaceLast(get(), values, outputs), "qvStreamReplaceLast");
  }
  int bars() const noexcept { return qvStreamBars(get()); }
  int outputCount() const noexcept { return qvStreamOutputCount(get()); }
  int firstValid(int output = 0) const noexcept { return qvStreamFirstValid(get(), output); }
  std::vector<unsigned char> save() const {
    const int size = check(qvStreamSave(get(), nullptr, 0), "qvStreamSave");
    std::vector<unsigned char> block(static_cast<std::size_t>(size));
    check(qvStreamSave(get(), block.data(), size), "qvStreamSave");
    return block;
  }
  QvStream* get() const noexcept { return s_.get(); }

 private:
  explicit Stream(QvStream* s) noexcept : s_(s) {}

  struct Close {
    void operator()(QvStream* s) const noexcept { qvStreamClose(s); }
  };
  std::unique_ptr<QvStream, Close> s_;
};

}  // namespace qv

#endif
