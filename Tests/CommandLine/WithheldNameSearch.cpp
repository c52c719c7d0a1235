#include "Tests/CommandLine/WithheldNameSearch.h"

#include <cctype>
#include <glib.h>

namespace lanternfold {

namespace {

std::string lowered(std::string text) {
  for (char& each : text) each = static_cast<char>(std::tolower(static_cast<unsigned char>(each)));
  return text;
}

std::string hexadecimal(std::string_view bytes, std::string_view separator) {
  std::string text;
  for (const char byte : bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    const auto value = static_cast<unsigned char>(byte);
    if (!text.empty()) text += separator;
    text += digits[value >> 4U];
    text += digits[value & 0xFU];
  }
  return text;
}

/// The part of the Base64 text that is the same whatever stands behind the bytes, when `before`
/// bytes of a group of three stand in front of them.
std::string base64(std::string_view bytes, std::size_t before) {
  const std::string padded = std::string(before, '\0') + std::string(bytes);
  gchar* text = g_base64_encode(reinterpret_cast<const guchar*>(padded.data()), padded.size());
  const std::string whole = text;
  g_free(text);
  const std::size_t first = before == 0 ? 0 : before + 1;
  return whole.substr(first, padded.size() * 8 / 6 - first);
}

void appendForms(std::vector<Form>& forms, const std::string& what, std::string_view bytes) {
  forms.push_back({what + " raw", lowered(std::string(bytes))});
  for (const char* separator : {"", ":", "-", " ", ".", "\\x", ", 0x"}) {
    forms.push_back(
        {what + " in hexadecimal with \"" + separator + "\"", hexadecimal(bytes, separator)});
  }
  for (const std::size_t before : {0U, 1U, 2U}) {
    forms.push_back({what + " in Base64", lowered(base64(bytes, before))});
  }
}

}  // namespace

std::vector<Form> formsOf(const NetworkNames& names) {
  std::vector<Form> forms;
  appendForms(forms, "the SSID", names.ssid);
  const auto bytesOf = [](const HardwareAddress& address) {
    return std::string(address.begin(), address.end());
  };
  appendForms(forms, "the BSSID", bytesOf(names.bssid));
  appendForms(forms, "the second BSSID", bytesOf(names.secondBssid));
  appendForms(forms, "the peer", bytesOf(names.peer));
  return forms;
}

std::vector<std::string> findings(const std::string& place, const std::string& bytes) {
  static const std::vector<Form> forms = formsOf(marker);
  const std::string searched = lowered(bytes);
  std::vector<std::string> found;
  for (const auto& [what, form] : forms) {
    if (searched.find(form) != std::string::npos) found.push_back(what + " in " + place);
  }
  return found;
}

}  // namespace lanternfold
