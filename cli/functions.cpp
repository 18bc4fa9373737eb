// qv functions: the catalogue of calculations, or one of them in full.
#include <cstdio>

#include "cli/output.h"
#include "cli/tool.h"
#include "runs/catalogue.h"

namespace qvcli {

namespace {

struct Options {
  std::string name;
  OutputOptions output;
};

const char* kindOf(const QvCatalogueParam& p) {
  constexpr const char* kKinds[] = {"period", "integer", "real", "method", "date", "choice"};
  return kKinds[p.kind];
}

// "rsi(in, p=14)".
std::string callOf(const QvCatalogueEntry& e) {
  std::string call;
  for (int i = 0; i < e.inputCount; ++i) call += (call.empty() ? "" : ", ") + std::string(e.inputs[i].name);
  for (int i = 0; i < e.paramCount; ++i)
    call += (call.empty() ? "" : ", ") + std::string(e.params[i].name) + "=" +
            fullNumber(e.params[i].defaultValue);
  return std::string(e.shortName) + "(" + call + ")";
}

std::string choicesOf(const QvCatalogueParam& p) {
  std::string names;
  for (int i = 0; i < p.choiceCount; ++i) names += (i ? ", " : "") + std::string(p.choices[i]);
  return names;
}

// ---- One entry for people -----------------------------------------------------------------------

std::string describe(const QvCatalogueParam& p) {
  std::string text = std::string(kindOf(p)) + ", usually " + fullNumber(p.defaultValue);
  if (p.choiceCount > 0) return text + ", one of: " + choicesOf(p);
  return text + ", " + fullNumber(p.least) + " to " + fullNumber(p.greatest);
}

std::string describe(const QvCatalogueOutput& o) {
  std::string text = o.low == o.high ? "open range" : fullNumber(o.low) + " to " + fullNumber(o.high);
  for (int i = 0; i < o.zoneCount; ++i) text += (i ? " and " : ", zones at ") + fullNumber(o.zones[i]);
  return o.repaints ? text + ", looks at later bars" : text;
}

void print(const QvCatalogueEntry& e) {
  std::printf("%s\n%s, %s, %s\n\n%s\n", e.title, e.name, e.group, callOf(e).c_str(), e.summary);
  for (int i = 0; i < e.paramCount; ++i)
    std::printf("  parameter %s: %s\n", e.params[i].name, describe(e.params[i]).c_str());
  for (int i = 0; i < e.outputCount; ++i)
    std::printf("  output %s%s: %s\n", e.outputs[i].name,
                i == e.mainOutput && e.outputCount > 1 ? " (the main one)" : "",
                describe(e.outputs[i]).c_str());
  const int first = qvCatalogueFirstValid(&e, nullptr, 0), settle = qvCatalogueSettle(&e, nullptr, 1e-3);
  if (first >= 0) std::printf("  bars to the first value: %d\n", first + 1);
  if (first >= 0 && settle >= 0) std::printf("  bars to settle: %d\n", first + 1 + settle);
  if (e.source[0]) std::printf("Source: %s\n", e.source);
  if (e.note[0]) std::printf("Note: %s\n", e.note);
}

void printAll() {
  std::string group;
  for (int i = 0; i < qvCatalogueSize(); ++i) {
    const QvCatalogueEntry& e = *qvCatalogueItem(i);
    if (group != e.group) {
      std::printf("%s%s\n", group.empty() ? "" : "\n", e.group);
      group = e.group;
    }
    std::printf("  %-44s %s\n", callOf(e).c_str(), e.title);
  }
}

// ---- For machines -------------------------------------------------------------------------------

std::string member(const char* name, const std::string& value) {
  return jsonText(name) + ": " + value;
}

std::string jsonOf(const QvCatalogueEntry& e) {
  std::string params, outputs, inputs;
  for (int i = 0; i < e.inputCount; ++i) inputs += (i ? ", " : "") + jsonText(e.inputs[i].name);
  for (int i = 0; i < e.paramCount; ++i) {
    const QvCatalogueParam& p = e.params[i];
    std::string choices;
    for (int k = 0; k < p.choiceCount; ++k) choices += (k ? ", " : "") + jsonText(p.choices[k]);
    params += (i ? ", {" : "{") + member("name", jsonText(p.name)) + ", " +
              member("kind", jsonText(kindOf(p))) + ", " + member("default", fullNumber(p.defaultValue)) +
              ", " + member("least", fullNumber(p.least)) + ", " +
              member("greatest", fullNumber(p.greatest)) + ", " + member("choices", "[" + choices + "]") +
              "}";
  }
  for (int i = 0; i < e.outputCount; ++i) {
    const QvCatalogueOutput& o = e.outputs[i];
    std::string zones;
    for (int k = 0; k < o.zoneCount; ++k) zones += (k ? ", " : "") + fullNumber(o.zones[k]);
    outputs += (i ? ", {" : "{") + member("name", jsonText(o.name)) + ", " +
               member("low", fullNumber(o.low)) + ", " + member("high", fullNumber(o.high)) + ", " +
               member("zones", "[" + zones + "]") + ", " + member("repaints", o.repaints ? "true" : "false") +
               "}";
  }
  return "{" + member("name", jsonText(e.shortName)) + ", " + member("function", jsonText(e.name)) + ", " +
         member("title", jsonText(e.title)) + ", " + member("group", jsonText(e.group)) + ", " +
         member("summary", jsonText(e.summary)) + ", " + member("bars", std::to_string(e.barsCount)) + ", " +
         member("inputs", "[" + inputs + "]") + ", " + member("params", "[" + params + "]") + ", " +
         member("outputs", "[" + outputs + "]") + ", " +
         member("main", jsonText(e.outputs[e.mainOutput].name)) + ", " +
         member("source", jsonText(e.source)) + ", " + member("note", jsonText(e.note)) + "}";
}

const QvCatalogueEntry& find(const std::string& name) {
  if (const QvCatalogueEntry* entry = qvCatalogueFind(name.c_str())) return *entry;
  throw UsageError(qv::runs::noSuchCalculation(name, "; qv functions lists them"));
}

int run(const Options& options) {
  std::vector<const QvCatalogueEntry*> entries;
  if (!options.name.empty()) entries.push_back(&find(options.name));
  for (int i = 0; i < qvCatalogueSize() && options.name.empty(); ++i) entries.push_back(qvCatalogueItem(i));

  if (options.output.form() == Form::Json) {
    for (std::size_t i = 0; i < entries.size(); ++i)
      std::printf("%s%s", i ? ",\n " : "[\n ", jsonOf(*entries[i]).c_str());
    std::printf("\n]\n");
  } else if (options.output.form() == Form::Csv) {
    Rows rows(Form::Csv, {{"name"}, {"function"}, {"group"}, {"title"}, {"call"}, {"summary"}});
    for (const QvCatalogueEntry* e : entries)
      rows.add({std::string(e->shortName), std::string(e->name), std::string(e->group), std::string(e->title),
                callOf(*e), std::string(e->summary)});
    rows.print();
  } else if (options.name.empty()) {
    printAll();
  } else {
    print(*entries.front());
  }
  return kDone;
}

}  // namespace

void addFunctions(Tool& tool) {
  auto options = std::make_shared<Options>();
  CLI::App& command = tool.add("functions", "List the calculations by group, or describe one of them",
                               {"qv functions rsi"}, [options] { return run(*options); });
  command.add_option("NAME", options->name, "A calculation by its short or full name");
  addOutputOptions(command, options->output);
}

}  // namespace qvcli
