// The memory map of CMIS 3.0 to 5.x.

#include "cable_info/module_memory/decode.h"

namespace cable_info::module_memory {

const MemoryMap& CmisMap() {
  static const MemoryMap kMap;
  return kMap;
}

void DecodeCmis(Decoding& /*to*/) {}

}  // namespace cable_info::module_memory
