/// \file
/// An output that is either complete or not there.
#pragma once

#include "catalogue/api.h"

#include <string>

namespace quent::rasterops::engine {

/// A temporary folder beside the target. All files of the output are written there under their final names
/// and moved into place by Commit(). Without that, nothing is left.
class RASTEROPS_ENGINE_API TemporaryOutput {
public:
  /// Makes the folder, so that a target which cannot be written is found out before any work.
  /// \throws OutputError
  TemporaryOutput(const std::string& target, bool overwrite);
  TemporaryOutput(const TemporaryOutput&) = delete;
  TemporaryOutput& operator=(const TemporaryOutput&) = delete;
  /// Removes the folder with all that is left in it.
  ~TemporaryOutput();

  /// The target as the user named it.
  const std::string& Target() const { return m_Name; }
  /// Where to write the main file.
  std::string Path() const;
  /// Where to write a file that is not part of the output.
  std::string ScratchPath() const;
  /// Moves everything into place, the main file last, and removes files that belonged to what was there
  /// before. \throws OutputError
  void Commit();

private:
  void moveFiles();

  std::string m_Name;
  std::string m_Target; ///< where it really goes, symbolic links resolved
  bool m_Overwrite;
  std::string m_Folder;
};

} // namespace quent::rasterops::engine
