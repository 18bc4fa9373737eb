#include "datafiles/mbf.h"

#include <cstring>

#include "qvlib60/datafiles.h"

extern "C" {

// The numbers are handled as bits: a signalling not-a-number must come out as it went in.

int QVCALL qvIEEEtoMS(const float* ieee, unsigned char* ms) noexcept {
  if (!ieee || !ms) return QV_INVALID_PARM;
  std::uint32_t bits;
  std::memcpy(&bits, ieee, sizeof bits);
  bits = qv::datafiles::mbfOfIEEE(bits);
  for (int k = 0; k < 4; ++k) ms[k] = static_cast<unsigned char>(bits >> 8 * k);
  return QV_OK;
}

int QVCALL qvMStoIEEE(const unsigned char* ms, float* ieee) noexcept {
  if (!ieee || !ms) return QV_INVALID_PARM;
  const std::uint32_t bits = qv::datafiles::ieeeOfMBF(qv::datafiles::unsigned32(ms));
  std::memcpy(ieee, &bits, sizeof bits);
  return QV_OK;
}

}  // extern "C"
