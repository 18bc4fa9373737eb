// The exported functions: streams of calculations and formulas.
#include "qvlib60/stream.h"

#include <algorithm>

#include "catalogue/item.h"
#include "core/text.h"
#include "stream/formula.h"
#include "stream/opening.h"
#include "stream/progress.h"

using namespace qv;
using namespace qv::stream;

struct QvStream {
  const QvCatalogueEntry* entry;  // null: a formula
  double params[Opening::kMostInputs];
  int start;
  int firstValid[Opening::kMostOutputs];
  Feed feed;
  PlanPtr plan;
  Progress progress;

  QvStream(const QvCatalogueEntry* e, int s) noexcept
      : entry(e), params{}, start(s), firstValid{}, progress(feed) {}
};

namespace {

struct Close {
  void operator()(QvStream* s) const noexcept {
    s->~QvStream();
    memory::release(s);
  }
};
using StreamPtr = std::unique_ptr<QvStream, Close>;

StreamPtr make(const QvCatalogueEntry* entry, int start) noexcept {
  void* block = memory::allocate(1, sizeof(QvStream));
  return StreamPtr(block ? new (block) QvStream(entry, start) : nullptr);
}

int begin(QvStream& s, LivePtr running) noexcept {
  s.progress = Progress(s.feed);
  return s.progress.begin(std::move(running)) ? QV_OK : QV_MALLOC;
}

int openCalculation(const QvCatalogueEntry& entry, const double* params, int start,
                    StreamPtr& made) noexcept {
  made = make(&entry, start);
  if (!made) return QV_MALLOC;
  for (int k = 0; k < entry.paramCount; ++k)
    made->params[k] = params ? params[k] : entry.params[k].defaultValue;
  Opening opening;
  if (const int status = openEntry(entry, made->params, start, opening)) return status;
  Feed& feed = made->feed;
  feed.begin = opening.begin;
  feed.inputCount = opening.inputCount;
  feed.outputCount = entry.outputCount;
  const int sets = entry.barsCount * kSeriesCount, allSets = Opening::kMostSets * kSeriesCount;
  for (int k = 0; k < opening.inputCount; ++k)
    feed.inputs[k] = opening.inputs[k] < allSets ? opening.inputs[k] : sets + (opening.inputs[k] - allSets);
  std::copy_n(opening.firstValid, feed.outputCount, made->firstValid);
  return begin(*made, std::move(opening.chain));
}

int openFormula(const char* text, const double* parameters, int count, StreamPtr& made) noexcept {
  made = make(nullptr, 0);
  PlanPtr plan(Plan::make());
  if (!made || !plan) return QV_MALLOC;
  if (const int status = plan->open(text, parameters, count)) return status;
  int status;
  LivePtr running(LiveFormula::open(*plan, &status));
  if (!running) return status;
  const unsigned series = plan->formula().series;
  for (int k = 0; k < kSeriesCount; ++k)
    if (series & (1u << k)) made->feed.inputs[made->feed.inputCount++] = k;
  made->feed.outputCount = 1;
  made->plan = std::move(plan);
  return begin(*made, std::move(running));
}

bool hasValues(const QvStream& s, const double* const* values) noexcept {
  for (int k = 0; k < s.feed.inputCount; ++k)
    if (!values || !values[s.feed.inputs[k]]) return false;
  return true;
}

// ---- Blocks of bytes

constexpr char kMagic[] = {'Q', 'V', 'S', 'T'};
constexpr std::uint32_t kVersion = 3;  // raised when a stage keeps something else
constexpr std::size_t kChecksumSize = 8;

// Any change of a single byte changes it.
std::uint64_t checksumOf(const unsigned char* bytes, std::size_t count) noexcept {
  std::uint64_t sum = 0xCBF29CE484222325u;
  for (std::size_t i = 0; i < count; ++i) sum = (sum ^ bytes[i]) * 0x100000001B3u;
  return sum;
}

void write(QvStream& s, Bytes& to) noexcept {
  to.raw(kMagic, sizeof kMagic);
  to.word(kVersion);
  const char* name = s.entry ? s.entry->name : s.plan->formula().text.data();
  const std::size_t length = std::strlen(name) + 1;  // with its end
  to.word(static_cast<std::uint8_t>(s.entry ? 1 : 2));
  to.word(static_cast<std::uint32_t>(length));
  to.raw(name, length);
  const int count = s.entry ? s.entry->paramCount : s.plan->formula().parameterCount;
  to.integer(count);
  for (int k = 0; k < count; ++k)
    to.number(s.entry ? s.params[k] : s.plan->formula().parameters[static_cast<std::size_t>(k)].value);
  to.integer(s.start);
  s.progress.save(to);
  to.word(checksumOf(to.data(), to.ok() ? to.size() : 0));
}

int openSaved(Reader& from, StreamPtr& made) noexcept {
  const auto kind = from.word<std::uint8_t>();
  const std::size_t length = from.word<std::uint32_t>();
  const auto* name = reinterpret_cast<const char*>(from.raw(length));
  const int count = from.integer(0, QV_FORMULA_MAX_PARAMETERS);
  double params[QV_FORMULA_MAX_PARAMETERS];
  for (int k = 0; k < count; ++k) params[k] = from.number();
  const int start = from.integer();
  if (!from.ok() || length < 1 || std::memchr(name, '\0', length) != name + length - 1) return QV_FILE_READ;
  if (kind == 2) return openFormula(name, params, count, made);
  const QvCatalogueEntry* entry = nullptr;
  for (int i = 0; kind == 1 && i < qvCatalogueSize() && !entry; ++i)
    if (std::strcmp(qvCatalogueItem(i)->name, name) == 0) entry = qvCatalogueItem(i);
  return entry && entry->paramCount == count ? openCalculation(*entry, params, start, made)
                                             : int{QV_FILE_READ};
}

int read(const unsigned char* bytes, std::size_t size, StreamPtr& made) noexcept {
  Reader from(bytes, size);
  const auto* magic = from.raw(sizeof kMagic);
  const auto version = from.word<std::uint32_t>();
  if (!from.ok() || std::memcmp(magic, kMagic, sizeof kMagic) != 0) return QV_FILE_READ;
  if (size < sizeof kMagic + sizeof kVersion + kChecksumSize) return QV_FILE_READ;
  Reader sum(bytes + size - kChecksumSize, kChecksumSize);
  if (sum.word<std::uint64_t>() != checksumOf(bytes, size - kChecksumSize)) return QV_FILE_READ;
  if (version != kVersion) return QV_UNKNOWN;
  const std::size_t head = sizeof kMagic + sizeof kVersion;
  Reader body(bytes + head, size - head - kChecksumSize);
  if (const int status = openSaved(body, made)) return status == QV_MALLOC ? status : int{QV_FILE_READ};
  if (!made->progress.load(body)) return QV_MALLOC;
  return body.ok() && body.left() == 0 ? QV_OK : QV_FILE_READ;
}

int give(int status, StreamPtr& made, QvStream** stream) noexcept {
  if (status == QV_OK) *stream = made.release();
  return status;
}

}  // namespace

int qv::stream::openEntry(const QvCatalogueEntry& entry, const double* params, int start,
                          Opening& opening) noexcept {
  if (entry.flags & QV_CALC_NO_STREAM) return QV_UNKNOWN;
  const QvBars* sets[Opening::kMostSets];
  const QvArray* arrays[Opening::kMostArrays];
  QvArray* outputs[Opening::kMostOutputs] = {&opening};
  for (int k = 0; k < Opening::kMostSets; ++k) sets[k] = &opening.sets[k];
  for (int k = 0; k < Opening::kMostArrays; ++k) arrays[k] = &opening.arrays[k];
  for (int k = 1; k < Opening::kMostOutputs; ++k) outputs[k] = &opening.others[k];
  const int status = qvCatalogueCall(&entry, sets, arrays, outputs, params, start);
  if (status < 0) return status;
  return opening.chain ? QV_OK : QV_INVALID_PARM;
}

extern "C" {

int QVCALL qvStreamOpen(const QvCatalogueEntry* entry, const double* params, int start,
                        QvStream** stream) noexcept {
  if (!stream) return QV_INVALID_PARM;
  *stream = nullptr;
  if (!catalogue::isEntry(entry)) return QV_INVALID_PARM;
  StreamPtr made;
  return give(openCalculation(*entry, params, start, made), made, stream);
}

int QVCALL qvStreamOpenFormula(const QvFormula* formula, QvStream** stream) noexcept {
  if (!stream) return QV_INVALID_PARM;
  *stream = nullptr;
  if (!formula) return QV_INVALID_PARM;
  double parameters[QV_FORMULA_MAX_PARAMETERS];
  for (int k = 0; k < formula->parameterCount; ++k)
    parameters[k] = formula->parameters[static_cast<std::size_t>(k)].value;
  StreamPtr made;
  return give(openFormula(formula->text.data(), parameters, formula->parameterCount, made), made, stream);
}

int QVCALL qvStreamUpdate(QvStream* stream, const double* const* values, int count,
                          double* const* outputs) noexcept {
  if (!stream || count < 0) return QV_INVALID_PARM;
  if (count == 0) return QV_OK;
  if (!hasValues(*stream, values)) return QV_INVALID_PARM;
  if (count <= Progress::kMostAtOnce)
    return stream->progress.take(values, count, outputs) ? QV_OK : QV_MALLOC;
  Progress next(stream->feed);  // so that what is there stays until all is done
  if (!stream->progress.copy(next) || !next.takeMany(values, count, outputs)) return QV_MALLOC;
  stream->progress = std::move(next);
  return QV_OK;
}

int QVCALL qvStreamPeek(QvStream* stream, const double* const* values, double* const* outputs) noexcept {
  if (!stream || !hasValues(*stream, values)) return QV_INVALID_PARM;
  return stream->progress.peek(values, outputs) ? QV_OK : QV_MALLOC;
}

int QVCALL qvStreamReplaceLast(QvStream* stream, const double* const* values,
                               double* const* outputs) noexcept {
  if (!stream || !hasValues(*stream, values)) return QV_INVALID_PARM;
  if (stream->progress.bars() == 0) return QV_RECORD_NOT_FOUND;
  return stream->progress.replaceLast(values, outputs) ? QV_OK : QV_MALLOC;
}

int QVCALL qvStreamBars(const QvStream* stream) noexcept {
  return stream ? saturate(stream->progress.bars()) : int{QV_INVALID_PARM};
}

int QVCALL qvStreamOutputCount(const QvStream* stream) noexcept {
  return stream ? stream->feed.outputCount : int{QV_INVALID_PARM};
}

int QVCALL qvStreamFirstValid(const QvStream* stream, int output) noexcept {
  if (!stream || output < 0 || output >= stream->feed.outputCount) return QV_INVALID_PARM;
  return stream->entry ? stream->firstValid[output]
                       : static_cast<const LiveFormula&>(stream->progress.now()).firstValid();
}

int QVCALL qvStreamCopy(QvStream* stream, QvStream** copy) noexcept {
  if (!copy) return QV_INVALID_PARM;
  *copy = nullptr;
  if (!stream) return QV_INVALID_PARM;
  StreamPtr made = make(stream->entry, stream->start);
  if (!made) return QV_MALLOC;
  std::copy(std::begin(stream->params), std::end(stream->params), made->params);
  std::copy(std::begin(stream->firstValid), std::end(stream->firstValid), made->firstValid);
  made->feed = stream->feed;
  if (stream->plan) made->plan.reset(stream->plan->share());
  return give(stream->progress.copy(made->progress) ? QV_OK : QV_MALLOC, made, copy);
}

int QVCALL qvStreamSave(QvStream* stream, void* block, int size) noexcept {
  if (!stream || (size > 0 && !block)) return QV_INVALID_PARM;
  Bytes bytes;
  write(*stream, bytes);
  if (!bytes.ok() || bytes.size() > INT_MAX) return QV_MALLOC;
  const int needed = static_cast<int>(bytes.size());
  if (size >= needed) std::memcpy(block, bytes.data(), bytes.size());
  return needed;
}

int QVCALL qvStreamLoad(const void* block, int size, QvStream** stream) noexcept {
  if (!stream) return QV_INVALID_PARM;
  *stream = nullptr;
  if (!block || size < 0) return QV_INVALID_PARM;
  StreamPtr made;
  return give(read(static_cast<const unsigned char*>(block), static_cast<std::size_t>(size), made), made,
              stream);
}

void QVCALL qvStreamClose(QvStream* stream) noexcept {
  if (stream) Close{}(stream);
}

}  // extern "C"
