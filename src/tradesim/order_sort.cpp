#include "tradesim/order_sort.h"

#include <cstring>

namespace qv::tradesim {

int compareOrders(const QvOrder& a, const QvOrder& b) noexcept {
  // The first rule compares the action with an order type. Actions are only 1 and 2, so it decides
  // nothing for orders that the order calls have made.
  if ((a.action == QV_CLOSE) != (b.action == QV_CLOSE)) return a.action == QV_CLOSE ? -1 : 1;
  if (a.orderType == QV_MARKET && b.action != QV_EXIT) return -1;
  if ((a.action == QV_EXIT) != (b.action == QV_EXIT)) return a.action == QV_EXIT ? -1 : 1;
  if (a.direction != b.direction) return a.direction == QV_BUY ? -1 : 1;
  if (a.price == b.price) return 0;
  if (a.direction == QV_BUY) return b.price <= a.price ? 1 : -1;
  return a.price <= b.price ? 1 : -1;
}

// By insertion: most bars meet a table that was sorted on the bar before, with a few orders behind.
void sortOrders(QvOrder* orders, int count) noexcept {
  for (int i = 1; i < count; ++i) {
    int place = i;
    while (place > 0 && compareOrders(orders[place - 1], orders[i]) > 0) --place;
    if (place == i) continue;
    const QvOrder moved = orders[i];
    std::memmove(&orders[place + 1], &orders[place], static_cast<std::size_t>(i - place) * sizeof(QvOrder));
    orders[place] = moved;
  }
}

}  // namespace qv::tradesim
