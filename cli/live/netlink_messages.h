#pragma once

// The messages of the ethtool family of generic netlink that this program sends and receives. It
// sends two: the look-up of the family's number, and the request for bytes of a module.
//
//     CTRL_CMD_GETFAMILY "ethtool"                                  -> number 21
//     ETHTOOL_MSG_MODULE_EEPROM_GET ib0, page 0x11, bank 0, 128+128 -> the bytes, or an error

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/live/page_reader.h"

namespace cli {

/// A request for the number of the ethtool family.
std::vector<std::uint8_t> FamilyRequest(std::uint32_t sequence);

/// A request for bytes of the module of a network interface.
std::vector<std::uint8_t> ModuleRequest(std::uint16_t family, std::uint32_t sequence,
                                        const std::string& interface, const PageRequest& request);

/// The number of the family, or an error.
struct FamilyAnswer {
  std::uint16_t family = 0;
  std::optional<ReadError> error;
};

/// \name Answers
/// The answer to the request with this sequence number in a datagram; none if it holds none. A
/// datagram can hold anything.
/// @{
std::optional<FamilyAnswer> ParseFamilyAnswer(std::span<const std::uint8_t> datagram,
                                              std::uint32_t sequence);
std::optional<PageAnswer> ParseModuleAnswer(std::span<const std::uint8_t> datagram,
                                            std::uint16_t family, std::uint32_t sequence,
                                            const PageRequest& request);
/// @}

}  // namespace cli
