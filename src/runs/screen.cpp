#include "runs/screen.h"

#include <cmath>
#include <limits>

#include "runs/parallel.h"
#include "runs/words.h"

namespace qv::runs {

namespace {

constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();

// What became of one source.
struct Answer {
  enum { Unread, TooShort, NotKnown, No, Yes } kind = Unread;
  Match match;
  std::string error;
};

// The number of bars up to a date.
int barsUpTo(const QvBars& b, double date) {
  if (date == 0.0) return b.barsize;
  int n = b.barsize;
  while (n > 0 && b.date.data[n - 1] >= date + 1.0) --n;
  return n;
}

// The formula's value at the last bar; not-a-number where it is not known.
double lastValue(const Formula& formula, const Bars& bars, Series& out) {
  formula.evaluate(bars, out);
  const int last = bars.barsize - 1;
  return out.firstValid <= last ? out[last] : kUnknown;
}

class Screen {
 public:
  Screen(const ScreenOptions& options) : options_(options), rule_(options.where) {
    if (const auto names = rule_.parameters(); !names.empty())
      throw Error("$" + names[0], "has no value: write the number in its place", QV_INVALID_PARM);
    needed_ = rule_.needs().firstValid + 1;
    for (const std::string& text : operandsOf(options.where)) {
      if (upper(text) == "CLOSE" || upper(text) == "C") continue;
      names_.push_back(text);
      formulas_.emplace_back(text);
    }
  }

  Answer ask(const Source& source, std::size_t number) const {
    Answer answer;
    try {
      LoadOptions how = options_.load;
      how.type = source.type;
      answer = decide(source, options_.bars ? options_.bars(number) : loadBars(source.file, how));
    } catch (const Error& e) {
      answer.error = e.what();
    }
    return answer;
  }

  int needed() const { return needed_; }
  const std::vector<std::string>& names() const { return names_; }

 private:
  Answer decide(const Source& source, Bars bars) const {
    Answer answer;
    const int count = barsUpTo(bars, options_.asOf);
    answer.kind = Answer::TooShort;
    if (count < 1) return answer;
    check(qvReSizeBars(&bars, count), source.file);
    Series out;
    const double holds = lastValue(rule_, bars, out);
    if (std::isnan(holds)) {
      answer.kind = count < needed_ ? Answer::TooShort : Answer::NotKnown;
      return answer;
    }
    answer.kind = holds != 0.0 ? Answer::Yes : Answer::No;
    if (answer.kind != Answer::Yes) return answer;
    answer.match = {source.symbol, bars.date.data[count - 1], bars.close.data[count - 1], {}};
    for (const Formula& f : formulas_) answer.match.values.push_back(lastValue(f, bars, out));
    return answer;
  }

  const ScreenOptions& options_;
  Formula rule_;
  int needed_ = 0;
  std::vector<std::string> names_;
  std::vector<Formula> formulas_;
};

}  // namespace

Screened screen(const std::vector<Source>& sources, const ScreenOptions& options) {
  const Screen asking(options);
  std::vector<Answer> answers(sources.size());
  inParallel(sources.size(), options.jobs, [&](std::size_t i) { answers[i] = asking.ask(sources[i], i); });

  Screened all;
  all.formulas = asking.names();
  all.barsNeeded = asking.needed();
  for (Answer& a : answers) {
    all.read += a.kind != Answer::Unread;
    all.tooShort += a.kind == Answer::TooShort;
    all.unknown += a.kind == Answer::NotKnown;
    if (a.kind == Answer::Unread) all.unreadable.push_back(std::move(a.error));
    if (a.kind == Answer::Yes) all.matches.push_back(std::move(a.match));
  }
  return all;
}

}  // namespace qv::runs
