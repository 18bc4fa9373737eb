#include "stream/formula.h"

#include <algorithm>

#include "core/numbers.h"
#include "formula/constants.h"
#include "formula/items.h"
#include "formula/needs.h"
#include "kernels/extremes.h"
#include "patterns/candle_signals.h"
#include "stream/opening.h"

namespace qv::stream {

using formula::Kind;
using formula::Node;

// ---- The plan

Plan* Plan::make() noexcept {
  void* block = memory::allocateZeroed(1, sizeof(Plan));
  return block ? new (block) Plan : nullptr;
}

void Plan::Leave::operator()(Plan* plan) const noexcept {
  if (--plan->users_ > 0) return;
  plan->~Plan();
  memory::release(plan);
}

int Plan::open(const char* text, const double* parameters, int parameterCount) noexcept {
  if (const int status = formula::open(text, nullptr, 0, formula_)) return status;
  QvFormula& f = *formula_;
  if (f.parameterCount != parameterCount) return QV_INVALID_PARM;
  for (int k = 0; k < parameterCount; ++k) f.parameters[static_cast<std::size_t>(k)].value = parameters[k];
  QvFormulaNeeds needs;
  constexpr double kAnyTolerance = 0.5;
  if (const int status = formula::needsOf(f, kAnyTolerance, needs)) return status;
  if (needs.repaints) return QV_UNKNOWN;
  const auto nodes = static_cast<std::size_t>(f.nodeCount);
  numbers_ = memory::Buffer<double>(nodes);
  feeds_ = memory::Buffer<Feed>(nodes);
  if (!numbers_.ok() || !feeds_.ok()) return QV_MALLOC;
  return formula::resolve(f, numbers_.data());
}

// ---- Opening and copying

LiveFormula::LiveFormula(PlanPtr plan) noexcept
    : plan_(std::move(plan)),
      states_(static_cast<std::size_t>(plan_->formula().nodeCount)),
      groups_(static_cast<std::size_t>(plan_->formula().contextCount)) {}

LiveFormula::~LiveFormula() {
  for (std::size_t i = 0; i < states_.count(); ++i) Close{}(states_[i].running);
}

LiveFormula* LiveFormula::open(Plan& plan, int* status) noexcept {
  *status = QV_MALLOC;
  auto* made = make<LiveFormula>(PlanPtr(plan.share()));
  if (!made) return nullptr;
  if (made->states_.ok() && made->groups_.ok()) {
    *status = QV_OK;
    for (int k = 0; k < plan.formula().contextCount; ++k)
      made->groups_[static_cast<std::size_t>(k)].periods =
          CalendarPeriods(plan.formula().contexts[static_cast<std::size_t>(k)].frequency);
    for (int i = 0; i <= plan.formula().root && *status == QV_OK; ++i)
      if (!plan.node(i).constant) *status = made->openNode(i);
  }
  if (*status == QV_OK) return made;
  Close{}(made);
  return nullptr;
}

int LiveFormula::openNode(int i) noexcept {
  const Node& n = plan_->node(i);
  Plan::Feed& feed = plan_->feed(i);
  Live*& running = state(i).running;
  const int last = n.count ? truncatedInt(plan_->number(n.operands[n.count - 1])) : 0;
  feed.inputs[0] = feed.inputs[1] = kSeriesCount;
  feed.inputCount = feed.outputCount = 1;
  switch (n.kind) {
    case Kind::Shift: {
      const Delay delay(last);
      running = LiveChain<Delay>::of(delay);
      feed.leads[0] = delay.lead();
      break;
    }
    case Kind::Highest:
    case Kind::Lowest: {
      const Sliding<HighestLowest> window(last);
      running = LiveChain<Sliding<HighestLowest>>::of(window);
      feed.inputCount = feed.outputCount = 2;
      feed.leads[0] = feed.leads[1] = window.lead();
      break;
    }
    case Kind::Candle: {
      const chain::CandleSignals signals(n.index, last);
      running = LiveChain<chain::CandleSignals>::of(signals);
      feed.inputCount = 4;
      for (int k = 0; k < 4; ++k) feed.inputs[k] = 1 + k;
      feed.leads[0] = signals.lead();
      break;
    }
    case Kind::Call: {
      double params[formula::kMostOperands] = {};
      for (int k = 0; k < n.entry->paramCount; ++k)
        params[k] = plan_->number(n.operands[n.entry->inputCount + k]);
      Opening opening;
      if (const int status = openEntry(*n.entry, params, 0, opening)) return status;
      running = opening.chain.release();
      feed.inputCount = opening.inputCount;
      feed.outputCount = opening.outputCount;
      for (int k = 0; k < opening.inputCount; ++k) {
        const int number = opening.inputs[k], arrays = Opening::kMostSets * kSeriesCount;
        feed.inputs[k] = number < arrays ? number : kSeriesCount + (number - arrays);
      }
      for (int k = 0; k < opening.outputCount; ++k)
        state(i + 1 + k).left = feed.leads[k] =
            std::max({opening.firstValid[k], qvCatalogueFirstValidOf(n.entry, k, params, 0), 0});
      return QV_OK;
    }
    default:
      return QV_OK;
  }
  state(i).left = feed.leads[0];
  return running ? QV_OK : QV_MALLOC;
}

Live* LiveFormula::copy() noexcept {
  auto* made = make<LiveFormula>(PlanPtr(plan_->share()));
  if (!made) return nullptr;
  bool ok = made->states_.ok() && made->groups_.ok();
  for (std::size_t i = 0; ok && i < states_.count(); ++i) {
    made->states_[i] = states_[i];
    if (states_[i].running) ok = (made->states_[i].running = states_[i].running->copy()) != nullptr;
  }
  if (!ok) {
    Close{}(made);
    return nullptr;
  }
  std::copy_n(groups_.data(), groups_.count(), made->groups_.data());
  made->firstValid_ = firstValid_;
  made->bars_ = bars_;
  return made;
}

// ---- State

template <typename V>
void LiveFormula::fields(V& v) noexcept {
  v.within(bars_, 0, INT_MAX);
  v.within(firstValid_, -1, INT_MAX);
  for (std::size_t i = 0; i < states_.count(); ++i) states_[i].fields(v);
  for (std::size_t k = 0; k < groups_.count(); ++k) {
    Group& g = groups_[k];
    v(g.bar.date, g.bar.open, g.bar.high, g.bar.low, g.bar.close, g.bar.volume, g.bar.openInterest);
    v(g.begun, g.stopped);
  }
}

std::size_t LiveFormula::size() noexcept {
  Measure measure;
  fields(measure);
  std::size_t numbers = measure.numbers();
  for (std::size_t i = 0; i < states_.count(); ++i)
    if (states_[i].running) numbers += states_[i].running->size();
  return numbers;
}

void LiveFormula::save(Bytes& to) noexcept {
  Save save(to);
  fields(save);
  for (std::size_t i = 0; i < states_.count(); ++i)
    if (states_[i].running) states_[i].running->save(to);
}

bool LiveFormula::load(Reader& from) noexcept {
  Load load(from);
  fields(load);
  for (std::size_t k = 0; k < groups_.count(); ++k)  // a group's last bar dates it
    if (groups_[k].begun) groups_[k].periods.begin(groups_[k].bar.date);
  for (std::size_t i = 0; i < states_.count(); ++i)
    if (states_[i].running && !states_[i].running->load(from)) return false;
  return true;
}

// ---- Bars

bool LiveFormula::reserve(int count) noexcept {
  for (std::size_t i = 0; i < states_.count(); ++i)
    if (states_[i].running && !states_[i].running->reserve(count)) return false;
  return true;
}

void LiveFormula::run(const double* const* in, int at, int count, double* const* out) noexcept {
  const QvFormula& f = plan_->formula();
  for (int j = 0; j < count; ++j) {
    double items[kSeriesCount] = {};
    for (int k = 0, input = 0; k < kSeriesCount; ++k)
      if (f.series & (1u << k)) items[k] = in[input++][at + j];
    takeBar(0, {items[0], items[1], items[2], items[3], items[4], items[5], items[6]});
    const bool valid = isValid(f.root);
    out[0][j] = valid ? valueOf(f.root) : 0.0;
    if (valid && firstValid_ < 0) firstValid_ = bars_;
    bars_ = saturatingSum(bars_, 1);
  }
}

double LiveFormula::valueOf(int operand) noexcept {
  return plan_->node(operand).constant ? plan_->number(operand) : state(operand).now;
}

bool LiveFormula::isValid(int operand) noexcept {
  return plan_->node(operand).constant || state(operand).valid;
}

// A bar of a context: first what it completes in the contexts that are coarser, for its nodes may read that.
void LiveFormula::takeBar(int context, const Bar& bar) noexcept {
  const QvFormula& f = plan_->formula();
  for (int k = context + 1; k < f.contextCount; ++k)
    if (f.contexts[static_cast<std::size_t>(k)].parent == context) takeIntoGroup(k, bar);
  for (int i = 0; i <= f.root; ++i)
    if (const Node& n = plan_->node(i); !n.constant && n.context == context) takeItem(i, bar);
}

void LiveFormula::takeIntoGroup(int context, const Bar& bar) noexcept {
  Group& g = groups_[static_cast<std::size_t>(context)];
  if (!g.begun) {
    g.begun = true;
    g.periods.begin(bar.date);
  } else if (g.stopped || !(bar.date <= kInfinity)) {
    g.stopped = true;  // at a date that is no number, as the compression
    return;
  } else if (!g.periods.crossedBy(bar.date)) {
    return addToGroup(g.bar, bar);
  } else {
    takeBar(context, g.bar);
  }
  g.bar = bar;
}

void LiveFormula::show(int i, double value, bool valid) noexcept {
  NodeState& s = state(i);
  s.before = s.now;
  s.wasValid = s.valid;
  s.now = valid ? value : 0.0;
  s.valid = valid;
}

void LiveFormula::takeItem(int i, const Bar& bar) noexcept {
  const Node& n = plan_->node(i);
  switch (n.kind) {
    case Kind::Field: {
      const double items[] = {bar.date, bar.open, bar.high, bar.low, bar.close, bar.volume, bar.openInterest};
      return show(i, items[n.index], true);
    }
    case Kind::Coarse:
      return show(i, valueOf(n.operands[0]), isValid(n.operands[0]));
    case Kind::Output:
      return;  // the call has set it
    case Kind::Shift:
    case Kind::Highest:
    case Kind::Lowest:
    case Kind::Candle:
    case Kind::Call:
      return chain(i, bar);
    default:
      return itemwise(i);
  }
}

void LiveFormula::itemwise(int i) noexcept {
  const Node& n = plan_->node(i);
  const bool crossing = n.kind == Kind::CrossesAbove;
  double items[4] = {};
  bool valid = true;
  for (int k = 0; k < n.count; ++k) {
    const int from = n.operands[k];
    items[k] = valueOf(from);
    valid = valid && isValid(from);
    if (!crossing) continue;
    const bool constant = plan_->node(from).constant;
    items[2 + k] = constant ? items[k] : state(from).before;
    valid = valid && (constant || state(from).wasValid);
  }
  show(i, formula::itemOf(n.kind, items[0], items[1], items[2], items[3]), valid);
}

// Takes items from where all its operands have values.
void LiveFormula::chain(int i, const Bar& bar) noexcept {
  const Node& n = plan_->node(i);
  const Plan::Feed& feed = plan_->feed(i);
  const bool isCall = n.kind == Kind::Call;
  const double items[] = {bar.date, bar.open, bar.high, bar.low, bar.close, bar.volume, bar.openInterest};
  bool valid = true;
  double inputs[Opening::kMostInputs], outputs[Opening::kMostOutputs] = {};
  for (int k = 0; k < (isCall ? n.entry->inputCount : n.kind != Kind::Candle); ++k)
    valid = valid && isValid(n.operands[k]);
  if (valid) {
    const double* in[Opening::kMostInputs];
    double* out[Opening::kMostOutputs];
    for (int k = 0; k < feed.inputCount; ++k) {
      const int from = feed.inputs[k];
      inputs[k] = from < kSeriesCount ? items[from] : valueOf(n.operands[from - kSeriesCount]);
      in[k] = &inputs[k];
    }
    for (int k = 0; k < feed.outputCount; ++k) out[k] = &outputs[k];
    state(i).running->run(in, 0, 1, out);
  }
  for (int k = 0; k < (isCall ? feed.outputCount : 1); ++k) {
    const int to = isCall ? i + 1 + k : i;
    std::int32_t& left = state(to).left;
    const bool known = valid && left == 0;
    left -= valid && left > 0;
    show(to, outputs[n.kind == Kind::Lowest ? 1 : k], known);
  }
}

}  // namespace qv::stream
