#include "cli/commandline.h"

#include "base/hostsystem/hostsystem.h"
#include "cli/completion.h"
#include "cli/describecommand.h"
#include "cli/helptext.h"
#include "cli/infocommand.h"
#include "cli/progressline.h"
#include "engine/errors.h"
#include "engine/runner.h"
#include "engine/samplescene.h"

#include <gdal.h>

#include <algorithm>
#include <functional>
#include <iostream>
#include <stdexcept>

namespace quent::rasterops::cli {

namespace {

using engine::ExitCode;

int status(ExitCode code) {
  return static_cast<int>(code);
}

/// One line on standard error, whatever line breaks the text has.
void say(const std::string& name, std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  std::cerr << "rasterops" << (name.empty() ? "" : " " + name) << ": " << text << std::endl;
}

int print(const std::string& text) {
  std::cout << text << std::flush;
  if (!std::cout)
    throw engine::OutputError("standard output: cannot write to it; check where it goes");
  return status(ExitCode::Done);
}

std::function<bool(CLI::App*)> named(const std::string& name) {
  return [name](CLI::App* app) { return app->get_name() == name; };
}

const catalogue::Operator& operatorNamed(const std::string& name) {
  const catalogue::Operator* const op = catalogue::FindOperator(name);
  if (!op)
    throw engine::UsageError("there is no operator '" + name + "'; rasterops list shows all");
  return *op;
}

} // namespace

CommandLine::CommandLine()
    : m_App("Operators on raster images, with exact handling of NODATA and masks", "rasterops") {
  m_App.set_version_flag("--version", std::string("rasterops " RASTEROPS_VERSION " (GDAL ") +
                                          GDALVersionInfo("RELEASE_NAME") + ")");
  m_App.formatter(std::make_shared<HelpFormatter>());
  m_App.get_formatter()->label("Positionals", "Files");
  m_App.require_subcommand(1);
  const std::string exitStatus =
      Wrapped("Exit status: 0 done, 1 processing failed, 2 usage, 3 input, 4 output, "
              "5 memory budget, 130 cancelled.");
  m_App.footer(exitStatus);
  for (const catalogue::Operator& op : catalogue::Operators())
    m_Operators.push_back(std::make_unique<OperatorCommand>(m_App, op));
  addSubcommands();
  m_App.footer("rasterops OPERATOR --help tells the options of an operator.\n" + exitStatus);
}

void CommandLine::addSubcommands() {
  m_List = m_App.add_subcommand("list", "List all operators");
  m_Describe = m_App.add_subcommand("describe", "Tell all about an operator");
  m_Describe->add_option("OPERATOR", m_Text, "name of the operator")->type_name("")->required();
  m_Describe->add_flag("--json", m_Json, "for programs");
  // Run() takes this word away when more follows it; what is left is its help.
  m_Plan = m_App.add_subcommand("plan", "Tell what an operator would do, before any pixel is read");
  m_Plan->footer("rasterops plan OPERATOR [options] INPUT... OUTPUT, with the options of that operator.");
  m_Info =
      m_App.add_subcommand("info", "Tell what is seen in a raster: size, types, NODATA, masks, conditions");
  m_Info->add_option("FILE", m_Text, "raster to look at")->type_name("")->required();
  m_Info->add_flag("--json", m_Json, "for programs");
  m_Info->add_option("--oo", m_OpenOptions, "open option for GDAL")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false);
  m_Scene = m_App.add_subcommand("sample-scene", "Write a synthetic scene to try the operators on");
  m_Scene->add_option("DIR", m_Text, "folder to write to, made if absent")->type_name("")->required();
  m_Scene->add_option("--seed", m_Seed, "another number gives another scene [1]")->type_name("N");
  m_Completion = m_App.add_subcommand("completion", "Write a completion script for a shell");
  m_Completion->add_option("SHELL", m_Text, "bash")
      ->type_name("")
      ->required()
      ->check(CLI::IsMember({"bash"}));
}

int CommandLine::Run(std::vector<std::string> arguments) {
  try {
    if (arguments.size() > 1 && arguments[0] == "plan" && arguments[1].rfind('-', 0) != 0) {
      m_PlanOnly = true;
      arguments.erase(arguments.begin());
      operatorNamed(arguments[0]);
    }
    if (!arguments.empty())
      m_Name = arguments[0].rfind('-', 0) == 0 ? "" : arguments[0];
    const bool known = m_Name.empty() || !m_App.get_subcommands(named(m_Name)).empty();
    if (!known)
      throw engine::UsageError("there is no such command; rasterops --help shows all");
    std::reverse(arguments.begin(), arguments.end()); // the order that the parser takes
    m_App.parse(arguments);
    return dispatch();
  } catch (const CLI::ParseError& e) {
    if (e.get_exit_code() == 0) {
      m_App.exit(e); // help or version, on standard output
      return status(ExitCode::Done);
    }
    const auto commands = m_App.get_subcommands([this](CLI::App* app) { return app->get_name() == m_Name; });
    const bool known = !commands.empty();
    say(known ? m_Name : "",
        std::string(e.what()) + "; see rasterops " + (known ? m_Name + " " : "") + "--help");
    return status(ExitCode::Usage);
  } catch (const engine::Error& e) {
    say(m_Name, e.what());
    return status(e.Code());
  } catch (const std::bad_alloc&) {
    say(m_Name, "the system has no memory left; give a smaller --memory, --tile or --threads");
    return status(ExitCode::Memory);
  } catch (const std::exception& e) {
    say(m_Name, std::string(e.what()) + "; this is a defect of rasterops, please report it");
    return status(ExitCode::Processing);
  }
}

int CommandLine::dispatch() {
  for (const auto& command : m_Operators)
    if (command->Chosen())
      return runOperator(*command);
  if (m_List->parsed())
    return print(ListText());
  if (m_Describe->parsed()) {
    const catalogue::Operator& op = operatorNamed(m_Text);
    return print(m_Json ? DescriptionJson(op) : DescriptionText(op));
  }
  if (m_Info->parsed()) {
    const auto info = engine::DescribeRaster(m_Text, m_OpenOptions, base::CancelRequested);
    return print(m_Json ? InfoJson(info) : InfoText(info));
  }
  if (m_Completion->parsed())
    return print(BashCompletion(m_App));
  if (m_Plan->parsed())
    throw engine::UsageError("name an operator; rasterops list shows all");
  try {
    engine::WriteSampleScene(m_Text, m_Seed);
  } catch (const std::runtime_error& e) {
    throw engine::OutputError(e.what());
  }
  return status(ExitCode::Done);
}

int CommandLine::runOperator(const OperatorCommand& command) {
  engine::RunPlan plan = engine::MakePlan(command.MakeRequest());
  if (m_PlanOnly)
    return print(engine::PlanText(plan));
  std::vector<std::string> warnings;
  {
    ProgressLine line(command.Operator().name, !command.Quiet());
    warnings = engine::Run(plan, {base::CancelRequested, [&line](double fraction) { line.Show(fraction); }});
  }
  for (const std::string& warning : warnings)
    say(m_Name, "warning: " + warning);
  return status(ExitCode::Done);
}

} // namespace quent::rasterops::cli
