#include "cli/operatorcommand.h"

#include "cli/helptext.h"
#include "engine/bandlist.h"
#include "engine/errors.h"

#include <algorithm>
#include <stdexcept>

namespace quent::rasterops::cli {

namespace {

std::string upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return c == '-' ? '_' : c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return text;
}

std::string parameterHelp(const catalogue::Parameter& parameter) {
  std::string help = parameter.help;
  if (!parameter.unit.empty())
    help += " (" + parameter.unit + ")";
  if (!parameter.defaultValue.empty())
    help += " [" + parameter.defaultValue + "]";
  return help;
}

std::string parameterType(const catalogue::Parameter& parameter) {
  switch (parameter.kind) {
  case catalogue::Parameter::Kind::Number:
    return "X";
  case catalogue::Parameter::Kind::Integer:
    return "N";
  case catalogue::Parameter::Kind::PixelType:
    return "TYPE";
  case catalogue::Parameter::Kind::Choice:
    break;
  }
  std::string choices;
  for (const std::string& choice : parameter.choices)
    choices += (choices.empty() ? "" : "|") + choice;
  return choices;
}

/// Calls a parser of the engine; what it throws becomes a usage error that names the option.
template <class Parse> auto parsed(const std::string& option, Parse parse) {
  try {
    return parse();
  } catch (const std::invalid_argument& e) {
    throw engine::UsageError(option + ": " + e.what());
  }
}

} // namespace

OperatorCommand::OperatorCommand(CLI::App& app, const catalogue::Operator& op)
    : m_Operator(op), m_Command(app.add_subcommand(op.name, op.summary)), m_Files(op.inputs.size() + 1),
      m_InputBands(op.inputs.size()), m_InputValues(op.inputs.size()) {
  m_Command->footer(Wrapped(op.details) + "\n" + app.get_footer());
  m_Command->group("Operators");
  addFiles();
  addParameters();
  addReading();
  addWriting();
  addRunning();
}

void OperatorCommand::addText(const std::string& names, std::string& value, const std::string& type,
                              const std::string& help, const char* group) {
  m_Command->add_option(names, value, help)->type_name(type)->group(group);
}

void OperatorCommand::addFiles() {
  for (std::size_t i = 0; i < m_Operator.inputs.size(); ++i)
    m_Command->add_option(upper(m_Operator.inputs[i].name), m_Files[i], m_Operator.inputs[i].help)
        ->type_name("");
  m_Command->add_option("OUTPUT", m_Files.back(), "file to write")->type_name("");
}

void OperatorCommand::addParameters() {
  for (const catalogue::Parameter& parameter : m_Operator.parameters) {
    // Kept only if it was typed: the catalogue knows the defaults.
    const auto keep = [this, name = parameter.name](const std::string& value) { m_Parameters[name] = value; };
    m_Command->add_option_function<std::string>("--" + parameter.name, keep, parameterHelp(parameter))
        ->type_name(parameterType(parameter))
        ->group("Parameters");
  }
}

void OperatorCommand::addReading() {
  constexpr const char* group = "Reading";
  if (m_Operator.inputs.size() == 1) {
    addText("-b,--bands", m_InputBands[0], "LIST", "bands to read, as 1,3-5 [all but alpha]", group);
  } else {
    for (std::size_t i = 0; i < m_Operator.inputs.size(); ++i)
      addText("--" + m_Operator.inputs[i].name + "-bands", m_InputBands[i], "LIST",
              "bands of the " + m_Operator.inputs[i].name + ", as 1,3-5 [all but alpha]", group);
  }
  for (std::size_t i = 0; i < m_Operator.inputs.size(); ++i)
    if (m_Operator.inputs[i].acceptsOneValue)
      addText("--" + m_Operator.inputs[i].name + "-value", m_InputValues[i], "V",
              "one value in place of the file " + upper(m_Operator.inputs[i].name), group);
  addText("--as", m_ReadAs, "TYPE", "convert what is read to this pixel type first", group);
  m_Command->add_option("--oo", m_OpenOptions, "open option for GDAL")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false)
      ->group(group);
}

void OperatorCommand::addWriting() {
  constexpr const char* group = "Writing";
  const bool hasOwn =
      std::any_of(m_Operator.parameters.begin(), m_Operator.parameters.end(),
                  [](const catalogue::Parameter& parameter) { return parameter.name == "ot"; });
  if (!hasOwn)
    addText("--ot", m_WriteAs, "TYPE", "pixel type of the file [as computed]", group);
  addText("--of", m_Driver, "DRIVER", "format, by GDAL's short name [from the extension, else GTiff]", group);
  m_Command->add_option("--co", m_CreationOptions, "creation option for GDAL")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false)
      ->group(group);
  addText("--output-nodata", m_NoData, "VALUE|none",
          "NODATA value of the file [that of the first input, if the type holds it; else NaN or a mask]",
          group);
  m_Command->add_flag("--overwrite", m_Overwrite, "replace a file that is there already")->group(group);
}

void OperatorCommand::addRunning() {
  constexpr const char* group = "Running";
  addText("--tile", m_Tile, "N|WxH|whole|auto", "size of a tile in pixels; the result does not depend on it",
          group);
  m_Command->add_option("--threads", m_Threads, "threads [one per processor]")
      ->type_name("N")
      ->check(CLI::Range(1U, 1024U).description(""))
      ->group(group);
  addText("--memory", m_Memory, "SIZE", "most memory to use, as 512M [what machine and control group allow]",
          group);
  m_Command->add_flag("-q,--quiet", m_Quiet, "show no progress")->group(group);
}

void OperatorCommand::fillInputs(engine::Request& request) const {
  // Files stand in the order of the inputs, less those that a value replaces.
  std::vector<std::string> files;
  std::copy_if(m_Files.begin(), m_Files.end(), std::back_inserter(files),
               [](const std::string& file) { return !file.empty(); });
  std::string wanted;
  std::size_t next = 0;
  for (std::size_t i = 0; i < m_Operator.inputs.size(); ++i) {
    engine::InputRequest input;
    input.openOptions = m_OpenOptions;
    input.value = m_InputValues[i];
    const std::string option =
        m_Operator.inputs.size() == 1 ? "--bands" : "--" + m_Operator.inputs[i].name + "-bands";
    if (!m_InputBands[i].empty())
      input.bands = parsed(option, [&] { return engine::ParseBandList(m_InputBands[i]); });
    if (!input.value.empty() && !input.bands.empty())
      throw engine::UsageError(option + ": a value has no bands; leave one of both options out");
    if (input.value.empty()) {
      wanted += " " + upper(m_Operator.inputs[i].name);
      if (next < files.size())
        input.path = files[next];
      ++next;
    }
    request.inputs.push_back(input);
  }
  if (files.size() != next + 1)
    throw engine::UsageError("wants" + wanted + " OUTPUT, " + std::to_string(next + 1) + " files, but got " +
                             std::to_string(files.size()) + "; see rasterops " + m_Operator.name + " --help");
  request.output.path = files.back();
}

engine::Request OperatorCommand::MakeRequest() const {
  engine::Request request;
  request.op = &m_Operator;
  request.parameters = m_Parameters;
  fillInputs(request);
  request.output.driver = m_Driver;
  request.output.creationOptions = m_CreationOptions;
  request.output.overwrite = m_Overwrite;
  if (!m_ReadAs.empty())
    request.readAs = parsed("--as", [this] { return catalogue::ParsePixelType(m_ReadAs); });
  if (!m_WriteAs.empty())
    request.writeAs = parsed("--ot", [this] { return catalogue::ParsePixelType(m_WriteAs); });
  if (!m_NoData.empty())
    request.noData = parsed("--output-nodata", [this] { return engine::ParseNoDataRequest(m_NoData); });
  request.tile = parsed("--tile", [this] { return engine::ParseTileRequest(m_Tile); });
  request.threads = m_Threads;
  if (!m_Memory.empty())
    request.memory = parsed("--memory", [this] { return engine::ParseMemorySize(m_Memory); });
  return request;
}

} // namespace quent::rasterops::cli
