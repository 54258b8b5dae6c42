#include "engine/temporaryoutput.h"

#include "base/hostsystem/hostsystem.h"
#include "engine/errors.h"

#include <array>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

namespace quent::rasterops::engine {

namespace {

constexpr const char* scratchName = ".scratch";

/// Files that GDAL keeps beside a raster. One that an earlier raster of this name left would be taken for
/// part of the new one.
constexpr std::array<const char*, 3> sidecars = {".aux.xml", ".msk", ".ovr"};

/// A link stays a link: what it points to is made or replaced.
std::string resolve(const std::string& target) {
  constexpr int mostLinks = 40; // in a row, as systems have it; more are a circle
  fs::path path = target;
  std::error_code error;
  for (int i = 0; i < mostLinks && fs::is_symlink(path, error); ++i) {
    const fs::path next = fs::read_symlink(path, error);
    if (error)
      return target;
    path = path.parent_path() / next;
  }
  return path.string();
}

void checkTarget(const std::string& name, const std::string& target, bool overwrite) {
  if (fs::path(target).filename().empty())
    throw OutputError(name + ": is no file name; name the file to write");
  if (target.rfind("/vsi", 0) == 0)
    throw OutputError(name + ": outputs go to files of this machine only; write there and copy it on");
  std::error_code error;
  const fs::file_status status = fs::status(target, error);
  if (!fs::exists(status))
    return;
  if (!fs::is_regular_file(status))
    throw OutputError(name + ": is there already and is no file; choose another name");
  if (!overwrite)
    throw OutputError(name + ": exists already; choose another name or give --overwrite");
}

} // namespace

TemporaryOutput::TemporaryOutput(const std::string& target, bool overwrite)
    : m_Name(target), m_Target(resolve(target)), m_Overwrite(overwrite) {
  checkTarget(m_Name, m_Target, overwrite);
  try {
    m_Folder = base::MakeTemporaryFolderBeside(m_Target);
  } catch (const std::runtime_error& e) {
    throw OutputError(m_Name + ": " + e.what() + "; choose a folder that can be written");
  }
}

TemporaryOutput::~TemporaryOutput() {
  std::error_code error; // nothing more can be done about it
  fs::remove_all(m_Folder, error);
}

std::string TemporaryOutput::Path() const {
  return (fs::path(m_Folder) / fs::path(m_Target).filename()).string();
}

std::string TemporaryOutput::ScratchPath() const {
  const fs::path folder = fs::path(m_Folder) / scratchName;
  std::error_code error;
  fs::create_directory(folder, error);
  if (error)
    throw OutputError(m_Name + ": cannot make a temporary folder (" + error.message() +
                      "); choose a folder that can be written");
  return (folder / "tiles.tif").string();
}

void TemporaryOutput::Commit() {
  try {
    moveFiles();
  } catch (const Error&) {
    throw;
  } catch (const std::runtime_error& e) {
    throw OutputError(m_Name + ": " + e.what() + "; check the folder and try again");
  }
}

void TemporaryOutput::moveFiles() {
  const fs::path folder = fs::path(m_Target).parent_path();
  const std::string main = fs::path(m_Target).filename().string();
  std::set<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(m_Folder))
    names.insert(entry.path().filename().string());
  names.erase(scratchName);
  if (names.erase(main) == 0)
    throw OutputError(m_Name + ": the format left no file of this name; choose another format by --of");
  std::set<std::string> stale;
  for (const char* suffix : sidecars)
    stale.insert(main + suffix);
  for (const std::string& name : names)
    if (!m_Overwrite && !stale.count(name) && fs::exists(folder / name))
      throw OutputError(
          (folder / name).string() +
          ": belongs to the output and exists already; choose another name or give --overwrite");
  for (const std::string& name : names) {
    base::ReplaceFile((fs::path(m_Folder) / name).string(), (folder / name).string());
    stale.erase(name);
  }
  base::ReplaceFile(Path(), m_Target);
  std::error_code ignored; // the output is in place; what cannot go is a folder and no sidecar
  for (const std::string& name : stale)
    fs::remove(folder / name, ignored);
}

} // namespace quent::rasterops::engine
