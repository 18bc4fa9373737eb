// The bundled daily prices of the S&P 500 index.
#pragma once

#include <gtest/gtest.h>

#include "support/series.h"

namespace qvtest {

inline const Bars& spx() {
  static Bars bars;
  if (!bars.barsize) {
    QvTxtInfo info;
    EXPECT_EQ(qvTXTreadinfo(QV_DATA_DIR "/text", "txtinfo.txt", &info), 0);
    EXPECT_EQ(qvTXTread(&bars, QV_DATA_DIR "/text", "SPX.CSV", &info, 0, -1), 0);
  }
  return bars;
}

}  // namespace qvtest
