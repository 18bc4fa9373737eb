#include "runs/catalogue.h"

#include "core/nearest.h"
#include "qvlib60/catalogue.h"

namespace qv::runs {

std::string noSuchCalculation(const std::string& name, const std::string& otherwise) {
  NearestWord nearest(name);
  for (int i = 0; i < qvCatalogueSize(); ++i) nearest.offer(qvCatalogueItem(i)->shortName);
  for (int i = 0; i < qvCatalogueSize(); ++i) nearest.offer(qvCatalogueItem(i)->name);
  return name + ": no such calculation" +
         (nearest.word() ? ", did you mean " + std::string(nearest.word()) + "?" : otherwise);
}

}  // namespace qv::runs
