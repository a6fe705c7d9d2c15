// The memory map of SFF-8472.

#include "cable_info/module_memory/decode.h"

namespace cable_info::module_memory {

const MemoryMap& Sff8472Map() {
  static const MemoryMap kMap;
  return kMap;
}

void DecodeSff8472(Decoding& /*to*/) {}

}  // namespace cable_info::module_memory
