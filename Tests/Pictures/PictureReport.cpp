#include "Tests/Pictures/PictureReport.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

constexpr const char* sectionName = "section.html";

void writeWhole(const fs::path& file, std::string_view bytes) {
  const fs::path written = file.string() + "." + std::to_string(::getpid());
  std::ofstream(written, std::ios::binary) << bytes;
  fs::rename(written, file);
}

std::string contentsOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string escaped(std::string_view text) {
  std::string result;
  for (const char character : text) {
    switch (character) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += character;
    }
  }
  return result;
}

std::string figure(const PictureFinding& finding, const std::string& file, const char* caption) {
  return "    <figure><figcaption>" + std::string(caption) + "</figcaption><img src=\"" +
         escaped(finding.name) + "/" + file + "\" alt=\"" + caption + "\"/></figure>\n";
}

std::string sectionOf(const PictureFinding& finding) {
  std::string section =
      "  <section id=\"" + escaped(finding.name) + "\">\n    <h2>" + escaped(finding.name) +
      "</h2>\n    <p>" + escaped(finding.sentence) +
      ".</p>\n    <p>If it is wanted: <code>make golden-update FILTER=" + escaped(finding.name) +
      "</code></p>\n    <div>\n";
  if (!finding.blessed.empty()) section += figure(finding, "old.png", "Old");
  section += figure(finding, "new.png", "New");
  if (!finding.difference.empty()) section += figure(finding, "difference.png", "Difference");
  return section + "    </div>\n  </section>\n";
}

constexpr std::string_view head = R"(<!DOCTYPE html>
<html lang="en">
<head>
  <meta charset="utf-8"/>
  <title>Golden pictures that differ</title>
  <style>
    body { font: 15px/1.4 sans-serif; margin: 2em; background: #808080; color: #fff; }
    section { background: #404040; border-radius: 8px; padding: 1px 20px 20px; margin: 20px 0; }
    div { display: flex; flex-wrap: wrap; gap: 20px; }
    figure { margin: 0; }
    figcaption { margin: 0 0 6px; }
    img { max-width: 100%; image-rendering: pixelated; }
  </style>
</head>
<body>
)";

}  // namespace

PictureReport::PictureReport(fs::path folder) : folder_(std::move(folder)) {}

void PictureReport::add(const PictureFinding& finding) const {
  remove(finding.name);
  const fs::path folder = folder_ / finding.name;
  fs::create_directories(folder);
  if (!finding.blessed.empty()) writeWhole(folder / "old.png", finding.blessed);
  writeWhole(folder / "new.png", finding.actual);
  if (!finding.difference.empty()) writeWhole(folder / "difference.png", finding.difference);
  writeWhole(folder / sectionName, sectionOf(finding));
  writePage();
}

void PictureReport::remove(const std::string& name) const {
  if (fs::remove_all(folder_ / name) > 0) writePage();
}

void PictureReport::writePage() const {
  std::vector<fs::path> sections;
  for (const auto& entry : fs::directory_iterator(folder_)) {
    if (fs::exists(entry.path() / sectionName)) sections.push_back(entry.path() / sectionName);
  }
  if (sections.empty()) {
    fs::remove(page());
    return;
  }
  std::ranges::sort(sections);
  std::string html(head);
  html += "  <h1>" + std::to_string(sections.size()) +
          (sections.size() == 1 ? " picture differs" : " pictures differ") + "</h1>\n";
  for (const fs::path& section : sections) html += contentsOf(section);
  writeWhole(page(), html + "</body>\n</html>\n");
}

}  // namespace lanternfold
