#include "base/rcommon/layout.h"
#include "base/rcommon/report.h"

#include <limits>
#include <new>

using quent::base::ClearSlot;
using quent::base::Report;

_Rbuf_BaseDataStack* rbuf_BaseDataStackPtrCreate(int count, Rfault_ErrorReport** slot) {
  ClearSlot(slot);
  if (count < 0) {
    Report(slot, "rbuf_BaseDataStackPtrCreate", "Negative number of layers");
    return nullptr;
  }
  auto* const layers = static_cast<_Rbuf_BaseData**>(
      rsys_HeapCalloc(static_cast<std::size_t>(count), sizeof(_Rbuf_BaseData*)));
  auto* const stack = layers ? new (std::nothrow) _Rbuf_BaseDataStack{count, 0, layers} : nullptr;
  if (!stack) {
    rsys_HeapFree(layers);
    Report(slot, "rbuf_BaseDataStackPtrCreate", "No memory");
  }
  return stack;
}

_Rbuf_BaseDataStack* rbuf_BaseDataStackCreate(int count, int rows, int columns, Rbuf_PixelType pixelType,
                                              Rbuf_ObjectType objectType, Rfault_ErrorReport** slot) {
  _Rbuf_BaseDataStack* const stack = rbuf_BaseDataStackPtrCreate(count, slot);
  for (int i = 0; stack && i < count; ++i) {
    stack->layers[i] = rbuf_BaseDataCreate(rows, columns, pixelType, objectType, nullptr, slot);
    if (!stack->layers[i]) {
      rbuf_BaseDataStackDelete(stack, nullptr);
      return nullptr;
    }
  }
  return stack;
}

_Rbuf_BaseDataStack* rbuf_BaseDataStackCopy(const _Rbuf_BaseDataStack* source,
                                            _Rbuf_BaseDataStack* destination, Rfault_ErrorReport** slot) {
  ClearSlot(slot);
  if (!source || (destination && destination->count != source->count)) {
    Report(slot, "rbuf_BaseDataStackCopy",
           source ? "The destination has another number of layers" : "The source is null");
    return nullptr;
  }
  _Rbuf_BaseDataStack* const copy =
      destination ? destination : rbuf_BaseDataStackPtrCreate(source->count, slot);
  for (int i = 0; copy && i < source->count; ++i) {
    _Rbuf_BaseData* const layer = rbuf_BaseDataCopy(source->layers[i], copy->layers[i], slot);
    if (!layer) {
      if (!destination)
        rbuf_BaseDataStackDelete(copy, nullptr);
      return nullptr;
    }
    copy->layers[i] = layer;
  }
  return copy;
}

void rbuf_BaseDataStackDelete(_Rbuf_BaseDataStack* stack, Rfault_ErrorReport** slot) {
  ClearSlot(slot);
  if (!stack)
    return;
  for (int i = 0; !stack->shared && i < stack->count; ++i)
    rbuf_BaseDataDelete(stack->layers[i], nullptr);
  rsys_HeapFree(stack->layers);
  delete stack;
}

std::size_t rbuf_BaseDataStackDataSize(int count, int rows, int columns, Rbuf_PixelType pixelType,
                                       Rbuf_ObjectType objectType, Rfault_ErrorReport** slot) {
  ClearSlot(slot);
  const quent::base::Layout layout(rows, columns, pixelType, objectType);
  const char* problem = layout.problem;
  if (!problem && count < 0)
    problem = "Negative number of layers";
  if (!problem && count > 0 && layout.bytes > std::numeric_limits<std::size_t>::max() / count)
    problem = "The size overflows";
  if (problem) {
    Report(slot, "rbuf_BaseDataStackDataSize", problem);
    return 0;
  }
  return layout.bytes * count;
}

bool rbuf_BaseDataStackIsContiguous(const _Rbuf_BaseDataStack* stack) {
  if (!stack || stack->count < 1)
    return false;
  for (int i = 0; i < stack->count; ++i)
    if (!stack->layers[i])
      return false;
  const _Rbuf_BaseData& first = *stack->layers[0];
  const void* const block = rsys_HeapBlockOf(first.storage);
  for (int i = 1; i < stack->count; ++i) {
    const _Rbuf_BaseData& layer = *stack->layers[i];
    const std::ptrdiff_t distance = stack->layers[1]->storage - first.storage;
    if (layer.storage - stack->layers[i - 1]->storage != distance || layer.pitch != first.pitch ||
        rsys_HeapBlockOf(layer.storage) != block)
      return false;
  }
  return true;
}
