#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace spx::console {

/// A ZIP archive of uncompressed files, for small workbooks made by hand.
inline std::string zipFile(const std::vector<std::pair<std::string, std::string>>& files) {
  const auto crc = [](const std::string& bytes) {
    std::uint32_t sum = ~0U;
    for (const char byte : bytes) {
      sum ^= static_cast<unsigned char>(byte);
      for (int bit = 0; bit < 8; ++bit) {
        sum = (sum >> 1U) ^ ((sum & 1U) != 0 ? 0xEDB88320U : 0U);
      }
    }
    return ~sum;
  };
  const auto number = [](std::size_t value, int bytes) {
    std::string text;
    for (; bytes > 0; --bytes, value >>= 8U) {
      text += static_cast<char>(value);
    }
    return text;
  };
  std::string archive;
  std::string directory;
  for (const auto& [name, content] : files) {
    const std::string sizes = number(crc(content), 4) + number(content.size(), 4) + number(content.size(), 4) +
                              number(name.size(), 2) + number(0, 2);
    directory += "PK\x01\x02" + number(20, 2) + number(20, 2) + number(0, 8) + sizes + number(0, 10) +
                 number(archive.size(), 4) + name;
    archive += "PK\x03\x04" + number(20, 2) + number(0, 8) + sizes + name + content;
  }
  return archive + directory + "PK\x05\x06" + number(0, 4) + number(files.size(), 2) + number(files.size(), 2) +
         number(directory.size(), 4) + number(archive.size(), 4) + number(0, 2);
}

}  // namespace spx::console
