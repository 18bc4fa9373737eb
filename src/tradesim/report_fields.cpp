#include "tradesim/report_fields.h"

#include <cmath>

#include "core/numbers.h"
#include "qvlib60/core.h"
#include "qvlib60/dates.h"
#include "tradesim/order_prices.h"

namespace qv::tradesim {

double printable(double v) noexcept {
  return std::isfinite(v) ? v : 0.0;
}

FixedPoint fixedPoint(double v, int digits) noexcept {
  const double shown = printable(v);
  return {truncatedInt64(shown), qvDecimals(shown, digits)};
}

DateText dateText(double date, dates::Picture picture) noexcept {
  DateText d{};
  qvFormatDate(date, dates::defaultPicture(picture), d.text);
  return d;
}

double shownOrderPrice(double price) noexcept {
  return price == kMarketSellPrice ? 0.0 : price;
}

}  // namespace qv::tradesim
