// qv completion and qv man: what a shell and the manual need to know, out of the texts of --help.
#include <cstdio>

#include "cli/tool.h"

namespace qvcli {

namespace {

std::vector<const CLI::App*> commandsOf(const Tool& tool) {
  return tool.app().get_subcommands([](const CLI::App*) { return true; });
}

// "--csv", "-h --help": without what stands on no dash.
std::vector<std::string> namesOf(const CLI::Option& o) {
  std::vector<std::string> names;
  for (const std::string& n : o.get_snames()) names.push_back("-" + n);
  for (const std::string& n : o.get_lnames()) names.push_back("--" + n);
  return names;
}

std::string joined(const std::vector<std::string>& words, const char* between) {
  std::string text;
  for (const std::string& w : words) text += (text.empty() ? "" : between) + w;
  return text;
}

std::string optionsOf(const CLI::App& app) {
  std::string text;
  for (const CLI::Option* o : app.get_options())
    for (const std::string& n : namesOf(*o)) text += (text.empty() ? "" : " ") + n;
  return text;
}

std::string escaped(const std::string& text, const std::string& signs, const std::string& with) {
  std::string out;
  for (const char c : text) {
    if (signs.find(c) != std::string::npos) out += with;
    out += c;
  }
  return out;
}

// Within single quotes of a shell.
std::string shellText(const std::string& text) {
  std::string out;
  for (const char c : text) out += c == '\'' ? "'\\''" : std::string(1, c);
  return out;
}

void printBash(const Tool& tool) {
  std::string commands;
  for (const CLI::App* c : commandsOf(tool)) commands += (commands.empty() ? "" : " ") + c->get_name();
  std::printf(
      "# bash completion of qv: qv completion bash > /etc/bash_completion.d/qv\n_qv() {\n"
      "  local word=${COMP_WORDS[COMP_CWORD]} options\n"
      "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
      "    COMPREPLY=($(compgen -W '%s %s' -- \"$word\"))\n    return\n  fi\n  case ${COMP_WORDS[1]} in\n",
      commands.c_str(), optionsOf(tool.app()).c_str());
  for (const CLI::App* c : commandsOf(tool))
    std::printf("    %s) options='%s' ;;\n", c->get_name().c_str(), optionsOf(*c).c_str());
  std::printf(
      "  esac\n  case $word in\n    -*) COMPREPLY=($(compgen -W \"$options\" -- \"$word\")) ;;\n"
      "    *) COMPREPLY=($(compgen -f -- \"$word\")) ;;\n  esac\n}\ncomplete -o filenames -F _qv qv\n");
}

void printZsh(const Tool& tool) {
  std::printf(
      "#compdef qv\n# zsh completion of qv: qv completion zsh > a directory of $fpath, as _qv\n_qv() {\n"
      "  local -a commands\n  commands=(\n");
  for (const CLI::App* c : commandsOf(tool))
    std::printf("    '%s:%s'\n", c->get_name().c_str(), shellText(c->get_description()).c_str());
  std::printf(
      "  )\n  if (( CURRENT == 2 )); then\n    _describe command commands\n    return\n  fi\n"
      "  case $words[2] in\n");
  for (const CLI::App* c : commandsOf(tool)) {
    std::printf("    %s) _arguments", c->get_name().c_str());
    for (const CLI::Option* o : c->get_options())
      for (const std::string& n : namesOf(*o))
        std::printf(" \\\n      '%s[%s]%s'", n.c_str(),
                    shellText(escaped(o->get_description(), "[]:", "\\")).c_str(),
                    o->get_items_expected_max() > 0 ? ":value:_files" : "");
    std::printf(" \\\n      '1:command:' '*:file:_files' ;;\n");
  }
  std::printf("  esac\n}\n_qv \"$@\"\n");
}

// Text for troff: no line begins with a control sign, dashes and backslashes are themselves.
std::string troff(const std::string& text) {
  std::string out;
  for (const char c : text) out += c == '\\' ? "\\e" : c == '-' ? "\\-" : std::string(1, c);
  return out.starts_with(".") || out.starts_with("'") ? "\\&" + out : out;
}

void printOptions(const CLI::App& app) {
  for (const CLI::Option* o : app.get_options()) {
    const std::vector<std::string> names = namesOf(*o);
    const bool takesValue = !names.empty() && o->get_items_expected_max() > 0;
    std::printf(".TP\n.B %s%s\n%s\n", troff(names.empty() ? o->get_name() : joined(names, ", ")).c_str(),
                takesValue ? " \\fIvalue\\fR" : "", troff(o->get_description()).c_str());
  }
}

int printManual(const Tool& tool) {
  std::printf(
      ".TH QV 1 \"\" \"qv %s\" \"User Commands\"\n.SH NAME\nqv \\- %s\n.SH SYNOPSIS\n.B qv\n.I command\n"
      "[options]\n.SH DESCRIPTION\nReads price files of many kinds, computes, screens and tests. Exit "
      "status: "
      "0; 1 for data that can't be used; 2 for arguments that mean nothing. check and screen: 0 or 1 is the "
      "answer, 2 any error.\n.SH OPTIONS\n",
      qvVersion(), troff(tool.app().get_description()).c_str());
  printOptions(tool.app());
  std::printf(".SH COMMANDS\n");
  for (const CLI::App* c : commandsOf(tool)) {
    std::printf(".SS qv %s\n%s.\n", c->get_name().c_str(), troff(c->get_description()).c_str());
    printOptions(*c);
    std::printf(".PP\n.nf\n%s\n.fi\n", troff(c->get_footer()).c_str());
  }
  return kDone;
}

}  // namespace

void addCompletion(Tool& tool) {
  auto shell = std::make_shared<std::string>();
  CLI::App& completion = tool.add("completion", "Print the completion script of a shell",
                                  {"qv completion bash > ~/.qv-completion"}, [shell, &tool] {
                                    if (*shell != "bash" && *shell != "zsh")
                                      throw UsageError(*shell + ": bash or zsh");
                                    *shell == "bash" ? printBash(tool) : printZsh(tool);
                                    return static_cast<int>(kDone);
                                  });
  completion.add_option("SHELL", *shell, "bash or zsh")->required();
  tool.add("man", "Print the manual page", {"qv man > qv.1"}, [&tool] { return printManual(tool); });
}

}  // namespace qvcli
