// Formulas bar by bar: the nodes of an opened formula, each after its bars. The rules of single items are
// those that whole series are computed by, and so are the chains of calls and windows.
#pragma once

#include <atomic>

#include "core/bar.h"
#include "dates/periods.h"
#include "formula/open.h"
#include "kernels/live.h"

namespace qv::stream {

// What all copies of a stream share: the formula, its numbers, and how its nodes are fed.
class Plan {
 public:
  struct Feed {
    int inputCount = 0, outputCount = 0;
    int inputs[Opening::kMostInputs] = {};  // a series of the bars, or kSeriesCount + operand
    int leads[Opening::kMostOutputs] = {};
  };

  // Reads the formula of `text` with these parameters. 0, -1, -3 or -10.
  int open(const char* text, const double* parameters, int parameterCount) noexcept;
  Plan* share() noexcept {
    ++users_;
    return this;
  }
  static Plan* make() noexcept;
  struct Leave {
    void operator()(Plan* plan) const noexcept;
  };

  const QvFormula& formula() const noexcept { return *formula_; }
  const formula::Node& node(int i) const noexcept { return formula_->nodes[static_cast<std::size_t>(i)]; }
  double number(int i) const noexcept { return numbers_[static_cast<std::size_t>(i)]; }
  Feed& feed(int i) noexcept { return feeds_[static_cast<std::size_t>(i)]; }

 private:
  std::atomic<int> users_{1};
  formula::FormulaPtr formula_;
  memory::Buffer<double> numbers_;
  memory::Buffer<Feed> feeds_;
};
using PlanPtr = std::unique_ptr<Plan, Plan::Leave>;

class LiveFormula final : public Live {
 public:
  explicit LiveFormula(PlanPtr plan) noexcept;
  ~LiveFormula() override;
  // Of an opened plan; null when memory runs out or, with a status below 0, a calculation refuses.
  static LiveFormula* open(Plan& plan, int* status) noexcept;

  bool reserve(int count) noexcept override;
  void run(const double* const* in, int at, int count, double* const* out) noexcept override;
  Live* copy() noexcept override;
  std::size_t size() noexcept override;
  void save(Bytes& to) noexcept override;
  bool load(Reader& from) noexcept override;

  // -1 until it has come.
  int firstValid() const noexcept { return firstValid_; }

  template <typename V>
  void fields(V& v) noexcept;

 private:
  friend class Live;
  struct NodeState {
    double now, before;  // of the last item and the one before it
    std::int32_t left;   // items until its own values begin
    bool valid, wasValid;
    Live* running;

    template <typename V>
    void fields(V& v) noexcept {
      v(now, before, valid, wasValid);
      v.within(left, 0, left);
    }
  };
  // The group of a coarser context that its bars are taken into.
  struct Group {
    Bar bar;
    CalendarPeriods periods;
    bool begun, stopped;
  };

  NodeState& state(int i) noexcept { return states_[static_cast<std::size_t>(i)]; }
  double valueOf(int operand) noexcept;
  bool isValid(int operand) noexcept;
  int openNode(int i) noexcept;
  void takeBar(int context, const Bar& bar) noexcept;
  void takeIntoGroup(int context, const Bar& bar) noexcept;
  void takeItem(int i, const Bar& bar) noexcept;
  void itemwise(int i) noexcept;
  void chain(int i, const Bar& bar) noexcept;
  void show(int i, double value, bool valid) noexcept;

  PlanPtr plan_;
  memory::Buffer<NodeState> states_;
  memory::Buffer<Group> groups_;
  int bars_ = 0, firstValid_ = -1;
};

}  // namespace qv::stream
