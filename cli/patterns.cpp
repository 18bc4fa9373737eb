// qv patterns: formations and candlestick patterns by date.
#include "cli/options.h"
#include "cli/output.h"
#include "cli/prices.h"
#include "cli/tool.h"
#include "core/characters.h"
#include "core/nearest.h"
#include "patterns/candle_names.h"

namespace qvcli {

namespace {

struct Options {
  std::string file, since, name;
  bool list = false;
  FileOptions how;
  OutputOptions output;
};

struct Pattern {
  std::string name, kind, formula;
};

// "BeltHoldLineBull" as "Belt Hold Line Bull".
std::string spaced(const char* name) {
  std::string words;
  for (const char* c = name; *c; ++c) {
    const bool isCapital = *c >= 'A' && *c <= 'Z', isFigure = qv::isDigit(*c);
    const bool afterSmall = !words.empty() && words.back() >= 'a' && words.back() <= 'z';
    if ((isCapital || isFigure) && (afterSmall || (isCapital && !words.empty() && qv::isDigit(words.back()))))
      words += ' ';
    words += *c;
  }
  return words;
}

Pattern patternOf(const char* name, const char* function) {
  const std::string words = spaced(name);
  return {words, function, std::string(function) + "(\"" + words + "\")"};
}

// By formation and candle of the formulas: the candles know nothing of later bars.
std::vector<Pattern> allPatterns() {
  std::vector<Pattern> all;
  const QvCatalogueEntry& formations = qv::findCalculation("formation");
  const QvCatalogueParam& names = formations.params[0];
  all.reserve(static_cast<std::size_t>(names.choiceCount) + qv::candlePatterns.size());
  for (int i = 0; i < names.choiceCount; ++i) all.push_back(patternOf(names.choices[i], "formation"));
  for (const qv::NamedCandlePattern& p : qv::candlePatterns) all.push_back(patternOf(p.name + 2, "candle"));
  return all;
}

// In any case, with or without blanks.
std::string plain(const std::string& name) {
  std::string out;
  for (const char c : name)
    if (c != ' ') out += qv::lowerCase(c);
  return out;
}

// The patterns of that name, or of all names that begin so.
std::vector<Pattern> chosenPatterns(const std::string& name) {
  std::vector<Pattern> chosen;
  qv::NearestWord nearest(name);
  const std::vector<Pattern> all = allPatterns();
  for (const Pattern& p : all) {
    if (plain(p.name).starts_with(plain(name))) chosen.push_back(p);
    nearest.offer(p.name.c_str());
  }
  if (chosen.empty())
    throw UsageError("--name: " + name + " is no pattern" +
                     (nearest.word() ? ", did you mean " + std::string(nearest.word()) + "?"
                                     : "; qv patterns --list names them"));
  return chosen;
}

int list(const Options& options) {
  Rows rows(options.output.form(), {{"pattern"}, {"kind"}, {"formula"}});
  for (const Pattern& p : chosenPatterns(options.name)) rows.add({p.name, p.kind, p.formula});
  rows.print();
  return kDone;
}

int run(const Options& options) {
  if (options.list) return list(options);
  if (options.file.empty()) throw UsageError("FILE is missing (qv patterns --help tells more)");
  std::vector<Pattern> patterns = chosenPatterns(options.name);
  // Its ups and downs have names of their own.
  if (options.name.empty()) std::erase_if(patterns, [](const Pattern& p) { return p.name == "Gap"; });
  const double since = options.since.empty() ? 0.0 : dateOption("--since", options.since);
  const qv::runs::Loaded loaded = load(options.file, options.how);
  const qv::Bars& bars = loaded.bars;
  std::vector<qv::Series> signals;
  signals.reserve(patterns.size());
  for (const Pattern& p : patterns) signals.push_back(qv::Formula(p.formula)(bars));
  Rows rows(options.output.form(), {{"date"}, {"close", 2}, {"pattern"}, {"kind"}, {"signal", 0}});
  for (int i = 0; i < bars.barsize; ++i) {
    if (!options.since.empty() && bars.date.data[i] < since) continue;
    for (std::size_t k = 0; k < patterns.size(); ++k) {
      const double signal = i >= signals[k].firstValid ? signals[k][i] : 0.0;
      if (signal == 0.0) continue;
      rows.add({Date{bars.date.data[i]}, bars.close.data[i], patterns[k].name, patterns[k].kind, signal});
    }
  }
  rows.print();
  return kDone;
}

}  // namespace

void addPatterns(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command = tool.add("patterns", "Find bar formations and candlestick patterns by date",
                               {"qv patterns data/text/SPX.CSV --since 2020-04-01",
                                "qv patterns data/text/SPX.CSV --name 'three white soldiers'"},
                               [options] { return run(*options); });
  command.add_option("FILE", options->file, "Price file, or DIR/NAME of a security");
  command.add_option("--since", options->since, "Only from this date on, YYYY-MM-DD");
  command.add_option("--name", options->name, "Only patterns whose name begins so");
  command.add_flag("--list", options->list, "Name the patterns that are known");
  addFileOptions(command, options->how);
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
