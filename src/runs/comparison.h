// Calculations that compare two bar sets, as texts: "spread(1, 0.5)". Formulas have but one bar set.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "qvlib60.hpp"

namespace qv::runs {

struct Comparison {
  const QvCatalogueEntry* entry;
  std::vector<double> params;

  // The main output at every bar of the first set.
  Series over(const QvBars& bars, const QvBars& other) const;
};

// Nothing where the text does not begin with the name of such a calculation. Throws where its numbers are
// wrong.
std::optional<Comparison> comparisonIn(const std::string& text);

// Draws a formula, or where there is a second bar set a comparison with it. Throws what is wrong with the
// text.
void addFormula(QvGraph* graph, const std::string& text, const QvBars* other);

}  // namespace qv::runs
