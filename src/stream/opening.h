// Opening a calculation of the catalogue for a stream.
#pragma once

#include "kernels/live.h"
#include "qvlib60/catalogue.h"

namespace qv::stream {

// 0, or as qvStreamOpen.
int openEntry(const QvCatalogueEntry& entry, const double* params, int start, Opening& opening) noexcept;

}  // namespace qv::stream
