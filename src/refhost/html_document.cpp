// Self-contained HTML documents of the reference host.
#include "refhost/html_document.h"

#include <fstream>
#include <stdexcept>

namespace kiv::refhost {

std::string HtmlEscape(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      case '\'': out += "&#39;"; break;
      default: out += c;
    }
  }
  return out;
}

std::string HtmlPage(std::string_view title, std::string_view body_html) {
  std::string page =
      "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>" + HtmlEscape(title) +
      "</title>\n<style>\n"
      "body{font:14px/1.4 system-ui,sans-serif;margin:2em;color:#222}\n"
      "h1{font-size:20px;margin:0 0 .5em}h2{font-size:16px;margin:1.2em 0 .4em}\n"
      "table{border-collapse:collapse;margin:.5em 0}th,td{border:1px solid #bbb;padding:3px 8px;text-align:left}\n"
      "th{background:#eee}td.num{text-align:right}.muted{color:#666}\n"
      "@media print{body{margin:0}}\n"
      "</style></head><body>\n";
  page += body_html;
  page += "\n</body></html>\n";
  return page;
}

std::filesystem::path DocumentFolder(const std::filesystem::path& db_path) {
  std::filesystem::path folder = db_path;
  folder += "-documents";
  std::error_code ec;
  std::filesystem::create_directories(folder, ec);
  if (ec) throw std::runtime_error("cannot create the folder " + folder.string() + ": " + ec.message());
  return folder;
}

std::filesystem::path WriteDocument(const std::filesystem::path& folder, std::string_view stem,
                                    std::string_view html) {
  std::filesystem::path path = folder / (std::string(stem) + ".html");
  for (int n = 2; std::filesystem::exists(path); ++n)
    path = folder / (std::string(stem) + "-" + std::to_string(n) + ".html");
  std::filesystem::path temporary = path;
  temporary += ".tmp";
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    out.write(html.data(), static_cast<std::streamsize>(html.size()));
    out.close();
    if (!out) throw std::runtime_error("cannot write " + temporary.string());
  }
  std::error_code ec;
  std::filesystem::rename(temporary, path, ec);
  if (ec) throw std::runtime_error("cannot write " + path.string() + ": " + ec.message());
  return path;
}

}  // namespace kiv::refhost
