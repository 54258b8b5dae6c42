/// \file
/// Owner of a stack of pixel rectangles.
#pragma once

#include "rasterops/tilx.h"

/// Owns one `_Rbuf_BaseDataStack`. Copies share the pointer without counting, so of all copies only one
/// may be destroyed while it holds it; Release() empties the others.
class RASTEROPS_API TilxPixelRectStack {
public:
  TilxPixelRectStack() = default;
  /// Adopts a stack.
  TilxPixelRectStack(_Rbuf_BaseDataStack* stack) : m_Stack(stack) {}
  /// Copies the pointer.
  TilxPixelRectStack(const TilxPixelRectStack& other) = default;
  /// A new stack of `count` layers of one U1 pixel, to be given other layers.
  /// \throws RfaultException when it cannot be made
  explicit TilxPixelRectStack(int count);
  /// A stack of one layer: `rect` itself if `share` is 1, else a copy of it.
  /// \throws RfaultException "TilxPixelRectStack::Invalid arguments for constructor" for a null `rect`
  TilxPixelRectStack(_Rbuf_BaseData* rect, Rsys_Boolean share);
  virtual ~TilxPixelRectStack();

  /// Deletes the held stack, unless it is the same one, and adopts the new one.
  /// \throws RfaultException when the held stack cannot be deleted
  TilxPixelRectStack& operator=(_Rbuf_BaseDataStack* stack);
  /// Copies the pointer.
  TilxPixelRectStack& operator=(const TilxPixelRectStack& other) = default;

  operator _Rbuf_BaseDataStack*() const { return m_Stack; }
  _Rbuf_BaseDataStack* operator->() const { return m_Stack; }
  /// Address of the slot; nothing is freed.
  operator _Rbuf_BaseDataStack**() { return &m_Stack; }
  /// True if a stack is held.
  operator bool() const { return m_Stack != nullptr; }
  /// The same for an object that is not const, where the slot's address would win otherwise.
  operator bool() { return m_Stack != nullptr; }
  /// True if none is.
  bool operator!() const { return m_Stack == nullptr; }
  /// Without these the comparison would be ambiguous between the two pointers.
  bool operator==(std::nullptr_t) const { return m_Stack == nullptr; }
  bool operator!=(std::nullptr_t) const { return m_Stack != nullptr; }

  /// Returns the stack and forgets it.
  _Rbuf_BaseDataStack* Release();
  /// Layer `i`, unchecked.
  _Rbuf_BaseData* datalayer(int i) const { return m_Stack->layers[i]; }

private:
  _Rbuf_BaseDataStack* m_Stack = nullptr;
};
