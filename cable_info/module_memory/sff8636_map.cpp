// The memory map of SFF-8636.

#include "cable_info/module_memory/decode.h"

namespace cable_info::module_memory {

const MemoryMap& Sff8636Map() {
  static const MemoryMap kMap;
  return kMap;
}

void DecodeSff8636(Decoding& /*to*/) {}

}  // namespace cable_info::module_memory
