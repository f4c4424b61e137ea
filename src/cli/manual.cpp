#include "cli/manual.h"

#include <string_view>
#include <vector>

namespace orvmesh::cli {
namespace {

std::vector<const CLI::App*> subcommandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

// Options but --help itself; the ones in no group are not meant for people.
std::vector<const CLI::Option*> optionsOf(const CLI::App& app, bool positional) {
  return app.get_options([&app, positional](const CLI::Option* option) {
    return option != app.get_help_ptr() && option->get_positional() == positional &&
           !option->get_group().empty();
  });
}

// Text that roff prints as it stands.
std::string escaped(std::string_view text) {
  std::string out;
  bool lineStart = true;
  for (const char c : text) {
    if (lineStart && (c == '.' || c == '\'')) out += "\\&";
    if (c == '\\') {
      out += "\\e";
    } else if (c == '-') {
      out += "\\-";
    } else {
      out += c;
    }
    lineStart = c == '\n';
  }
  return out;
}

std::string bold(std::string_view text) { return "\\fB" + escaped(text) + "\\fR"; }
std::string italic(std::string_view text) { return "\\fI" + escaped(text) + "\\fR"; }

std::string valueOf(const CLI::Option& option) {
  if (option.get_expected_max() == 0 || option.get_items_expected_max() == 0) return {};
  std::string type = option.get_type_name();
  if (const auto list = type.find('{'); list != std::string::npos) return type.substr(list);
  return type.substr(0, type.find(':'));
}

std::string termOf(const CLI::Option& option) {
  if (option.get_positional()) return italic(option.get_name(true, false));
  std::string term;
  for (const auto& name : option.get_snames()) term += (term.empty() ? "" : ", ") + bold("-" + name);
  for (const auto& name : option.get_lnames()) term += (term.empty() ? "" : ", ") + bold("--" + name);
  const std::string value = valueOf(option);
  return value.empty() ? term : term + " " + italic(value);
}

void appendEntries(std::string& page, const std::vector<const CLI::Option*>& options) {
  for (const CLI::Option* option : options)
    page += ".TP\n" + termOf(*option) + "\n" + escaped(option->get_description()) + "\n";
}

// A footer's lines are laid out by hand.
void appendFooter(std::string& page, const CLI::App& app) {
  if (!app.get_footer().empty()) page += ".PP\n.nf\n" + escaped(app.get_footer()) + "\n.fi\n";
}

void appendSubcommand(std::string& page, const CLI::App& app, const std::string& path) {
  const std::string name = path + " " + app.get_name();
  page += ".SS " + escaped(name) + "\n" + escaped(app.get_description()) + ".\n.PP\n" + bold(name);
  if (!subcommandsOf(app).empty()) page += " " + italic("SUBCOMMAND");
  for (const CLI::Option* option : optionsOf(app, true))
    page += " " + (option->get_required() ? italic(option->get_name(true, false))
                                          : "[" + italic(option->get_name(true, false)) + "]");
  page += " [" + italic("OPTIONS") + "]\n";
  appendEntries(page, optionsOf(app, true));
  appendEntries(page, optionsOf(app, false));
  appendFooter(page, app);
  for (const CLI::App* sub : subcommandsOf(app)) appendSubcommand(page, *sub, name);
}

void appendCases(std::string& script, const CLI::App& app, const std::string& path) {
  script += "    \"" + path + "\") words=\"";
  for (const CLI::App* sub : subcommandsOf(app)) script += sub->get_name() + " ";
  for (const CLI::Option* option : optionsOf(app, false))
    for (const auto& name : option->get_lnames()) script += "--" + name + " ";
  script += "--help\" ;;\n";
  for (const CLI::App* sub : subcommandsOf(app)) appendCases(script, *sub, path + " " + sub->get_name());
}

void appendPaths(std::string& script, const CLI::App& app, const std::string& path) {
  for (const CLI::App* sub : subcommandsOf(app)) {
    const std::string name = path + " " + sub->get_name();
    script += (script.ends_with('\n') ? "      \"" : " | \"") + name + "\"";
    appendPaths(script, *sub, name);
  }
}

}  // namespace

std::string manualPage(const CLI::App& app) {
  std::string page = ".TH ORVMESH 1\n.SH NAME\norvmesh \\- mesh format transfer for mold-cooling analysis\n";
  page += ".SH SYNOPSIS\n" + bold("orvmesh") + " " + italic("SUBCOMMAND") + " ...\n.br\n" + bold("orvmesh") +
          " [" + italic("SUBCOMMAND") + "] " + bold("--help") + "\n";
  page += ".SH DESCRIPTION\n" + escaped(app.get_description()) + "\n.SH OPTIONS\n";
  appendEntries(page, optionsOf(app, false));
  page += ".SH SUBCOMMANDS\n";
  for (const CLI::App* sub : subcommandsOf(app)) appendSubcommand(page, *sub, "orvmesh");
  page += ".SH EXIT STATUS\n";
  appendFooter(page, app);
  return page;
}

std::string bashCompletion(const CLI::App& app) {
  std::string script =
      R"(# bash completion for orvmesh; zsh takes it after `autoload bashcompinit && bashcompinit`
_orvmesh() {
  local current=${COMP_WORDS[COMP_CWORD]} path= words= word
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case "$path $word" in
)";
  appendPaths(script, app, "");
  script += R"() path="$path $word" ;;
    esac
  done
  case "$path" in
)";
  appendCases(script, app, "");
  script += R"(  esac
  COMPREPLY=($(compgen -W "$words" -- "$current"))
  [ ${#COMPREPLY[@]} -gt 0 ] || COMPREPLY=($(compgen -f -- "$current"))
}
complete -o filenames -F _orvmesh orvmesh
)";
  return script;
}

}  // namespace orvmesh::cli
