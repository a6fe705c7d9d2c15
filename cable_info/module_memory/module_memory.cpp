#include "cable_info/module_memory/module_memory.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cable_info/module_memory/decode.h"
#include "cable_info/module_memory/records.h"

namespace cable_info::module_memory {

namespace {

using Identifier = ModuleIdentifier;

// A half of a page in an image.
struct Part {
  Page page;
  std::size_t first;
};

// The order of the pages in an image of so many bytes.
struct Layout {
  ModuleFamily family;
  std::size_t size;
  std::array<Part, 6> parts;
};

constexpr std::size_t kUpper = ModuleImage::kHalf;
constexpr Part kLowerPart = {Page::kLower, 0};
constexpr Part kPart00 = {Page::k00, kUpper};
constexpr Part kPart01 = {Page::k01, kUpper};
constexpr Part kPart02 = {Page::k02, kUpper};
constexpr Part kPart03 = {Page::k03, kUpper};
constexpr Part kPart10 = {Page::k10, kUpper};
constexpr Part kPart11 = {Page::k11, kUpper};
constexpr Part kA0Lower = {Page::kA0, 0};
constexpr Part kA0Upper = {Page::kA0, kUpper};
constexpr Part kA2Lower = {Page::kA2, 0};
constexpr Part kA2Upper = {Page::kA2, kUpper};

constexpr Layout kLayouts[] = {
    {ModuleFamily::kSff8636, 256, {kLowerPart, kPart00}},
    {ModuleFamily::kSff8636, 384, {kLowerPart, kPart00, kPart03}},
    {ModuleFamily::kSff8636, 640, {kLowerPart, kPart00, kPart01, kPart02, kPart03}},
    {ModuleFamily::kCmis, 256, {kLowerPart, kPart00}},
    {ModuleFamily::kCmis, 384, {kLowerPart, kPart00, kPart01}},
    {ModuleFamily::kCmis, 512, {kLowerPart, kPart00, kPart01, kPart02}},
    {ModuleFamily::kCmis, 640, {kLowerPart, kPart00, kPart01, kPart02, kPart10}},
    {ModuleFamily::kCmis, 768, {kLowerPart, kPart00, kPart01, kPart02, kPart10, kPart11}},
    {ModuleFamily::kSff8472, 256, {kA0Lower, kA0Upper}},
    {ModuleFamily::kSff8472, 384, {kA0Lower, kA0Upper, kA2Lower}},
    {ModuleFamily::kSff8472, 512, {kA0Lower, kA0Upper, kA2Lower, kA2Upper}},
};

std::string Shown(const Identifier& identifier) {
  return std::string(identifier.name) + " (" + HexText(identifier.code) + ')';
}

// The identifier of modules that fill a record.
const Identifier* FindModule(DumpByte code) {
  const Identifier* const found = FindIdentifier(code);
  return found == nullptr || found->name.empty() ? nullptr : found;
}

std::string Shown(DumpByte byte) { return byte ? HexText(*byte) : "missing"; }

// The kind of the module by byte 0 or, if that is not a known identifier, by its copy at byte 128,
// which all families except SFP have.
const Identifier& Identify(DumpByte byte0, DumpByte byte128, std::vector<std::string>& remarks) {
  const Identifier* const first = FindModule(byte0);
  if (first != nullptr) {
    if (first->family == ModuleFamily::kSff8472 || !byte128 || byte128 == byte0) return *first;
    remarks.push_back(DecodedByByte0Text(Shown(*first), Shown(byte128)));
    return *first;
  }
  const Identifier* const copy = FindModule(byte128);
  if (copy == nullptr || copy->family == ModuleFamily::kSff8472) {
    throw BadModule(UnknownIdentifierText(Shown(byte0), Shown(byte128)));
  }
  remarks.push_back(DecodedByCopyText(Shown(byte0), Shown(*copy)));
  return *copy;
}

template <typename Bytes>
DumpByte At(const Bytes& bytes, std::size_t index) {
  return index < bytes.size() ? DumpByte(bytes[index]) : DumpByte();
}

// The kind of a module that follows a map, but fills no record; null for others.
const Identifier* FindWithoutRecord(DumpByte byte0, DumpByte byte1, DumpByte byte128) {
  static constexpr Identifier kCustomCmis = {0, ModuleFamily::kCmis, "CMIS"};
  const Identifier* const first = FindIdentifier(byte0);
  if (first != nullptr) return first->name.empty() ? first : nullptr;
  const Identifier* const copy = FindIdentifier(byte128);
  if (copy != nullptr) {
    const bool is_found = copy->name.empty() && copy->family != ModuleFamily::kSff8472;
    return is_found ? copy : nullptr;
  }
  return IsCustomCmis(byte0, byte1, byte128) ? &kCustomCmis : nullptr;
}

template <typename Bytes>
const Identifier& IdentifyImage(const Bytes& image, std::vector<std::string>& remarks) {
  const DumpByte byte0 = At(image, 0);
  const DumpByte byte128 = At(image, kUpper);
  const Identifier* const other = FindWithoutRecord(byte0, At(image, 1), byte128);
  if (other != nullptr) return *other;
  return Identify(byte0, byte128, remarks);
}

const Layout& FindLayout(const Identifier& identifier, std::size_t size,
                         std::vector<std::string>& remarks) {
  std::string sizes;
  for (const Layout& layout : kLayouts) {
    if (layout.family != identifier.family) continue;
    if (size < ModuleImage::kWhole) {
      remarks.push_back("the image ends after byte " + std::to_string(size - 1) +
                        "; later bytes are missing");
      return layout;
    }
    if (size == layout.size) return layout;
    sizes += (sizes.empty() ? "" : ", ") + std::to_string(layout.size);
  }
  const std::string kind = identifier.name.empty()
                               ? "module with identifier " + HexText(identifier.code)
                               : std::string(identifier.name) + " module";
  throw BadModule("an image of " + std::to_string(size) + " bytes is not the memory of a " + kind +
                  "; valid sizes are " + sizes);
}

template <typename Bytes>
ModuleImage Split(const Bytes& bytes, const Layout& layout) {
  ModuleImage image;
  std::size_t begin = 0;
  for (const Part& part : layout.parts) {
    if (begin >= std::min(bytes.size(), layout.size)) break;
    const std::size_t end = std::min(begin + ModuleImage::kHalf, bytes.size());
    image.Put(part.page, part.first, bytes.data() + begin, end - begin);
    begin = end;
  }
  return image;
}

// The lower page, then all upper pages by number.
template <typename Bytes>
ModuleImage SplitLinear(const Bytes& bytes) {
  ModuleImage image;
  image.Put(Page::kLower, 0, bytes.data(), ModuleImage::kHalf);
  for (unsigned number = 0; number <= 0xFF; ++number) {
    image.Put(PageOf(static_cast<std::uint8_t>(number)), kUpper,
              bytes.data() + (number + 1) * ModuleImage::kHalf, ModuleImage::kHalf);
  }
  return image;
}

template <typename Bytes>
ModuleImage SplitBytes(const Bytes& image, std::vector<std::string>& remarks) {
  const Identifier& identifier = IdentifyImage(image, remarks);
  const bool is_sfp = identifier.family == ModuleFamily::kSff8472;
  if (image.size() == kLinearImage && !is_sfp) return SplitLinear(image);
  // The first of the pages of A2h follows its lower half.
  constexpr std::size_t kBothAddresses = 512;
  const bool is_linear_sfp = image.size() == kLinearSfpImage && is_sfp;
  const std::size_t size = is_linear_sfp ? kBothAddresses : image.size();
  return Split(image, FindLayout(identifier, size, remarks));
}

void Verify(const ModuleImage& image, Lines<Checksum> checksums,
            std::vector<std::string>& mismatches) {
  for (const Checksum& checksum : checksums) {
    const std::optional<PageChecksum> sum = ReadChecksum(image, checksum);
    if (sum && !sum->Matches()) mismatches.push_back(MismatchText(*sum));
  }
}

void Decode(const Identifier& identifier, const ModuleImage& image, ModuleReading& reading) {
  switch (identifier.family) {
    case ModuleFamily::kSff8636:
      Verify(image, Sff8636Map().checksums, reading.mismatches);
      reading.cable = CableFromSff8636(image, identifier.code, reading.remarks);
      return;
    case ModuleFamily::kCmis:
      Verify(image, CmisMap().checksums, reading.mismatches);
      reading.phy =
          CableFromCmis(image, static_cast<std::uint8_t>(identifier.form_factor), reading.remarks);
      break;
    case ModuleFamily::kSff8472:
      Verify(image, Sff8472Map().checksums, reading.mismatches);
      reading.phy = CableFromSff8472(image, reading.remarks);
      break;
    case ModuleFamily::kUnknown:
      return;
  }
  reading.phy->source = kModuleSource;
}

}  // namespace

ModuleImage SplitImage(const DumpBytes& image, std::vector<std::string>& remarks) {
  return SplitBytes(image, remarks);
}

ModuleImage SplitImage(const std::vector<std::uint8_t>& image, std::vector<std::string>& remarks) {
  return SplitBytes(image, remarks);
}

ModuleReading ReadModule(const DumpBytes& image) {
  std::vector<std::string> remarks;
  const ModuleImage pages = SplitImage(image, remarks);
  ModuleReading reading = ReadModule(pages);
  // Decoding repeats the remark of SplitImage on the identifier.
  for (std::string& remark : remarks) {
    const auto& known = reading.remarks;
    if (std::find(known.begin(), known.end(), remark) == known.end()) {
      reading.remarks.insert(reading.remarks.begin(), std::move(remark));
    }
  }
  return reading;
}

ModuleReading ReadModule(const ModuleImage& pages) {
  const ModuleMemory memory(pages);
  const ModuleImage& image = memory.image();
  ModuleReading reading;
  const bool is_sfp = pages.Has(Page::kA0) || pages.Has(Page::kA2);
  const Page first = is_sfp ? Page::kA0 : Page::kLower;
  const DumpByte copy = is_sfp ? DumpByte() : image.At(Page::k00, kUpper);
  const Identifier& identifier = Identify(image.At(first, 0), copy, reading.remarks);
  if (is_sfp != (identifier.family == ModuleFamily::kSff8472)) {
    throw BadModule("the pages of a module that identifies itself as " + Shown(identifier) +
                    " are " + (is_sfp ? "lower, 00, 01 and so on" : "a0 and a2"));
  }
  Decode(identifier, image, reading);
  return reading;
}

void ReportChecksums(const ModuleReading& reading, ChecksumPolicy policy,
                     std::vector<std::string>& remarks) {
  if (policy == ChecksumPolicy::kRefuse && !reading.mismatches.empty()) {
    throw BadModule(reading.mismatches.front());
  }
  remarks.insert(remarks.end(), reading.mismatches.begin(), reading.mismatches.end());
  remarks.insert(remarks.end(), reading.remarks.begin(), reading.remarks.end());
}

}  // namespace cable_info::module_memory
