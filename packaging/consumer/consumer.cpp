// A C++ program over the installed headers: the average of three prices by a calculation's name.
#include <qvlib60.hpp>

int main() {
  const double prices[] = {1.0, 2.0, 6.0};
  const qv::Series average = qv::calc("sma", qv::Series(prices), {3});
  return average.data[2] == 3.0 ? 0 : 1;
}
