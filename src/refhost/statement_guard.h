// What the component may run through the connection's SQL operations when a text sits in
// the statement: only the statements it sends itself, in their own form. Whatever a clerk's
// text holds (a quote, a comment, a UNION, a second statement), it can then only be a value.
#pragma once
#include <string>
#include <string_view>
#include <unordered_set>

struct sqlite3;

namespace kiv::refhost {

class StatementGuard {
 public:
  //! The guard over the statements the component sends.
  static const StatementGuard& Standard();

  //! Why `sent` (as the component sent it) may not run as `prepared` (the text that would be
  //! prepared for it); empty when it may. A statement without a quoted text is built by the
  //! component from its own words and numbers alone and needs no known form.
  std::string Refusal(std::string_view sent, std::string_view prepared) const;

  //! The statement the component meant when it put a clerk's text holding quotes, as typed,
  //! at the end of one of its own statements: everything between the first quote and the
  //! closing one becomes one text value. `sent` itself when it needs no mending or when no
  //! statement of the component's fits even so (the guard then refuses it).
  std::string AsMeant(std::string_view sent) const;

  //! Installs on `db` the authorizer that, while `*active` is true, refuses a statement that
  //! reads users and their passwords, the logs, SQLite's own tables or anything outside the
  //! customer tables, or that changes the schema, attaches files or sets pragmas.
  static void InstallAuthorizer(sqlite3* db, const bool* active);

 private:
  StatementGuard();
  std::unordered_set<std::string> shapes_;
};

}  // namespace kiv::refhost
