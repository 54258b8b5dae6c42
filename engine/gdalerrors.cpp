#include "engine/gdalerrors.h"

#include <cpl_error.h>
#include <gdal_priv.h>

#include <mutex>

namespace quent::rasterops::engine {

struct GdalMessages::Handler {
  static void CPL_STDCALL hear(CPLErr kind, CPLErrorNum number, const char* message) {
    auto* const self = static_cast<GdalMessages*>(CPLGetErrorHandlerUserData());
    if (kind == CE_Debug) {
      // Only arrives when the user asked for it by CPL_DEBUG.
      CPLDefaultErrorHandler(kind, number, message);
    } else if (kind == CE_Warning) {
      if (self->m_Warning.empty())
        self->m_Warning = message;
    } else if (kind >= CE_Failure) {
      self->m_Failed = true;
      if (self->m_Failure.empty())
        self->m_Failure = message;
    }
  }
};

GdalMessages::GdalMessages() {
  CPLPushErrorHandlerEx(Handler::hear, this);
}

GdalMessages::~GdalMessages() {
  CPLPopErrorHandler();
}

std::string GdalMessages::Reason() const {
  if (!m_Failure.empty())
    return m_Failure;
  return m_Warning.empty() ? "no reason given" : m_Warning;
}

void PrepareGdal() {
  static std::once_flag once;
  std::call_once(once, [] {
    CPLSetErrorHandler(CPLQuietErrorHandler);
    GDALAllRegister();
  });
}

} // namespace quent::rasterops::engine
