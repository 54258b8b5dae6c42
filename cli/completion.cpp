#include "cli/completion.h"

#include "catalogue/catalogue.h"

#include <sstream>

namespace quent::rasterops::cli {

namespace {

std::string optionsOf(const CLI::App& app) {
  std::string words;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames())
      words += " --" + name;
    for (const std::string& name : option->get_snames())
      words += " -" + name;
  }
  return words.empty() ? words : words.substr(1);
}

std::string operatorNames() {
  std::string names;
  for (const catalogue::Operator& op : catalogue::Operators())
    names += (names.empty() ? "" : " ") + op.name;
  return names;
}

std::string typeNames() {
  std::string names;
  for (int type = 0; type < rbuf_PixelTypeCount; ++type)
    names += (type == 0 ? "" : " ") + catalogue::PixelTypeName(static_cast<Rbuf_PixelType>(type));
  return names;
}

} // namespace

std::string BashCompletion(const CLI::App& app) {
  std::string commands;
  std::ostringstream cases;
  for (const CLI::App* command : app.get_subcommands({})) {
    commands += (commands.empty() ? "" : " ") + command->get_name();
    cases << "    " << command->get_name() << ") words=\"" << optionsOf(*command) << "\" ;;\n";
  }
  std::ostringstream out;
  out << "# bash completion of rasterops\n"
         "_rasterops() {\n"
         "  local current=\"${COMP_WORDS[COMP_CWORD]}\" previous=\"${COMP_WORDS[COMP_CWORD-1]}\"\n"
         "  local command=\"${COMP_WORDS[1]}\" words=\"\"\n"
         "  COMPREPLY=()\n"
         "  case \"$previous\" in\n"
         "    --as|--ot) COMPREPLY=($(compgen -W \""
      << typeNames()
      << "\" -- \"${current^^}\")); return ;;\n"
         "    --output-nodata) COMPREPLY=($(compgen -W \"none nan\" -- \"$current\")); return ;;\n"
         "    --tile) COMPREPLY=($(compgen -W \"auto whole\" -- \"$current\")); return ;;\n"
         "  esac\n"
         "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
         "    COMPREPLY=($(compgen -W \""
      << commands << " " << optionsOf(app)
      << "\" -- \"$current\"))\n"
         "    return\n"
         "  fi\n"
         "  if [ \"$COMP_CWORD\" -eq 2 ]; then\n"
         "    case \"$command\" in\n"
         "      plan|describe) COMPREPLY=($(compgen -W \""
      << operatorNames()
      << "\" -- \"$current\")); return ;;\n"
         "      completion) COMPREPLY=($(compgen -W \"bash\" -- \"$current\")); return ;;\n"
         "    esac\n"
         "  fi\n"
         "  [ \"$command\" = plan ] && command=\"${COMP_WORDS[2]}\"\n"
         "  case \"$command\" in\n"
      << cases.str()
      << "  esac\n"
         "  case \"$current\" in\n"
         "    -*) COMPREPLY=($(compgen -W \"$words\" -- \"$current\")) ;;\n"
         "    *) compopt -o filenames 2>/dev/null; COMPREPLY=($(compgen -f -- \"$current\")) ;;\n"
         "  esac\n"
         "}\n"
         "complete -F _rasterops rasterops\n";
  return out.str();
}

} // namespace quent::rasterops::cli
