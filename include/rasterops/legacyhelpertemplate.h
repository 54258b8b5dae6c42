/// \file
/// Scoped owners of C handles.
#pragma once

#include "rcommon/rbuf.h"

/// Holds a C handle for the length of a scope. Free() calls the delete function of the family of `T`;
/// it is specialised for each family.
template <class T> class LegacyHelperTemplate {
public:
  LegacyHelperTemplate() = default;
  LegacyHelperTemplate(T* handle) : m_Handle(handle) {}
  LegacyHelperTemplate(const LegacyHelperTemplate&) = delete;
  LegacyHelperTemplate& operator=(const LegacyHelperTemplate&) = delete;
  virtual ~LegacyHelperTemplate() { Free(); }

  /// Deletes what is held. A failure is swallowed.
  void Free() noexcept;
  /// Deletes what is held and takes over another handle.
  void Reset(T* handle) noexcept {
    Free();
    m_Handle = handle;
  }
  /// Returns the handle and forgets it.
  T* Release() noexcept {
    T* const handle = m_Handle;
    m_Handle = nullptr;
    return handle;
  }
  T* get() const noexcept { return m_Handle; }
  operator T*() const noexcept { return m_Handle; }
  T* operator->() const noexcept { return m_Handle; }

protected:
  T* m_Handle = nullptr;
};

/// Deletes with rbuf_BaseDataStackDelete().
template <> RASTEROPS_API void LegacyHelperTemplate<_Rbuf_BaseDataStack>::Free() noexcept;
/// Frees with rsys_HeapFree().
template <> RASTEROPS_API void LegacyHelperTemplate<unsigned char>::Free() noexcept;

/// Owns a stack for the time of one function.
class RASTEROPS_API RbufBaseDataStack : public LegacyHelperTemplate<_Rbuf_BaseDataStack> {
public:
  using LegacyHelperTemplate<_Rbuf_BaseDataStack>::LegacyHelperTemplate;
  /// Address of one element; neither layer nor position is checked.
  unsigned char* Element(int layer, int row, int column) const;
};
