/// \file
/// GDAL's own messages, kept so that they can become part of ours.
#pragma once

#include "catalogue/api.h"

#include <string>

namespace quent::rasterops::engine {

/// While it lives, what GDAL reports on this thread is kept here and printed nowhere. They nest; only the
/// innermost one hears.
class RASTEROPS_ENGINE_API GdalMessages {
public:
  GdalMessages();
  GdalMessages(const GdalMessages&) = delete;
  GdalMessages& operator=(const GdalMessages&) = delete;
  ~GdalMessages();

  /// True once GDAL reported a failure, also if the call that did so claimed success.
  bool Failed() const { return m_Failed; }
  /// GDAL's reason: of the first failure, else of the first warning, else "no reason given".
  std::string Reason() const;

private:
  struct Handler;

  bool m_Failed = false;
  std::string m_Failure;
  std::string m_Warning;
};

/// Registers all GDAL drivers, once, and silences what GDAL would print from threads of its own.
RASTEROPS_ENGINE_API void PrepareGdal();

} // namespace quent::rasterops::engine
