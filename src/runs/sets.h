// Parameter sets of a sweep, and their combinations.
#pragma once

#include <string>
#include <vector>

namespace qv::runs {

struct ParameterSet {
  std::string name;  // in small letters, without "$"
  std::vector<double> values;
};

// "fast=5:50:5" (both ends included), "fast=5:50" in steps of 1, "fast=5,10,20", "fast=10". Throws qv::Error
// for anything else.
ParameterSet parseSet(const std::string& text);

// The sets in the order of the rules' parameters. Throws where one is missing, not asked for, or given twice.
std::vector<std::size_t> placesOf(const std::vector<ParameterSet>& sets,
                                  const std::vector<std::string>& parameters);

// All combinations, the first set changing slowest: in the order in which one would write them down.
class Combinations {
 public:
  // `places`: of each parameter, which set it takes its value from. Throws where there are more than 2^31.
  Combinations(const std::vector<ParameterSet>& sets, std::vector<std::size_t> places);

  std::size_t count() const noexcept { return count_; }
  double value(std::size_t set, std::size_t combination) const noexcept {
    return (*sets_)[set].values[combination / strides_[set] % (*sets_)[set].values.size()];
  }
  // The parameters' values, in their order.
  void fill(std::size_t combination, std::vector<double>& values) const;

 private:
  const std::vector<ParameterSet>* sets_;
  std::vector<std::size_t> places_, strides_;
  std::size_t count_ = 1;
};

}  // namespace qv::runs
