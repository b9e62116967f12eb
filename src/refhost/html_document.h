// The printable documents of the reference host's services (reports, tickets): one
// self-contained HTML file each, written into a folder beside the database.
#pragma once
#include <filesystem>
#include <string>
#include <string_view>

namespace kiv::refhost {

//! The text with &, <, >, " and ' replaced by their entities, so any name or note is
//! shown as typed and never read as markup.
std::string HtmlEscape(std::string_view text);

//! A whole page: the escaped title, a small built-in stylesheet, and the body as given
//! (already HTML; the caller escapes every value it puts in).
std::string HtmlPage(std::string_view title, std::string_view body_html);

//! The folder the documents of the database at db_path go to: "<file name>-documents"
//! beside it, created when missing.
std::filesystem::path DocumentFolder(const std::filesystem::path& db_path);

//! Writes the page as "<stem>.html" into the folder (a number is added when the name is
//! taken) through a temporary file, so a reader never sees half a document. Returns the
//! path written; throws std::runtime_error when the folder cannot be written.
std::filesystem::path WriteDocument(const std::filesystem::path& folder, std::string_view stem,
                                    std::string_view html);

}  // namespace kiv::refhost
