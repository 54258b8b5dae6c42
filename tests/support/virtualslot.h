/// \file
/// Position of a virtual function in its table.
#pragma once

#include <cstdint>
#include <cstring>

namespace testsupport {

/// Slot number of a virtual function, from its member pointer: the Itanium C++ ABI stores 1 plus the byte
/// offset in the table of the class that first declares it. A destructor takes two slots. Returns -1 for a
/// function that is not virtual.
template <class MemberFunction> long VirtualSlot(MemberFunction function) {
  std::uintptr_t words[2];
  static_assert(sizeof function == sizeof words, "not the representation of the Itanium C++ ABI");
  std::memcpy(words, &function, sizeof words);
  if ((words[0] & 1u) == 0)
    return -1;
  return static_cast<long>((words[0] - 1) / sizeof(void*));
}

} // namespace testsupport
