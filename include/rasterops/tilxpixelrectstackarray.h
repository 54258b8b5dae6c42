/// \file
/// A growing list of stacks that presents itself as the plain record.
#pragma once

#include "rasterops/tilx.h"

#include <vector>

/// Owns the stacks that are added to it; `count` and `stacks` of the base record follow the list.
class RASTEROPS_API TilxPixelRectStackArray : public _Rbuf_BaseDataStackArray {
public:
  TilxPixelRectStackArray();
  TilxPixelRectStackArray(const TilxPixelRectStackArray&) = delete;
  TilxPixelRectStackArray& operator=(const TilxPixelRectStackArray&) = delete;
  /// Deletes every stack.
  virtual ~TilxPixelRectStackArray();

  /// Appends a stack and takes it over.
  void AddStack(_Rbuf_BaseDataStack* stack);

private:
  std::vector<_Rbuf_BaseDataStack*> m_Stacks;
};
