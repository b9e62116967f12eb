// What a duplicate merge does with each column that holds a customer number: one table, so
// a table added to the schema is covered by adding one line here, and a check over the live
// schema that names any customer-number column the table has no line for.
#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace kiv::refhost {

class SqliteDatabase;

enum class MergeRule {
  //! Every row follows the surviving customer.
  Move,
  //! One row per customer (or per customer and key): a row the survivor already has stays
  //! its own and the merged customer's is dropped.
  MoveUnlessHeld,
  //! A link between two customers (`partner` is the other end): it follows the survivor,
  //! except a link to the survivor itself, which would point at itself and is dropped.
  Link,
  //! Cards on file: numbered on after the survivor's own cards.
  CardSequence,
  //! A reference to a card on file (a payment's card customer and its card_seq_no): it
  //! follows the card to the number the card gets. Listed before the cards themselves.
  CardReference,
  //! Photographs: numbered on after the survivor's own, none of them the current one.
  ImageSequence,
  //! Addresses of a type the survivor lacks follow as secondary ones; the rest are dropped.
  AddressOfNewType,
  //! Profile values the survivor lacks are filled in from the merged customer's row.
  ProfileFill,
  //! A household number: members of the merged customer's household join the survivor's.
  Household,
  //! The merged customer's own row, deleted once everything else has moved.
  OwnRow,
  //! A name that reads like a customer number but holds something else (a user, say):
  //! nothing moves, and the merge does not look for the merged customer in it.
  Unrelated,
};

struct MergeColumn {
  const char* table;
  const char* column;
  MergeRule rule;
  //! The other customer column of a Link.
  const char* partner = nullptr;
};

//! Every column that holds a customer number, with what a merge does with it.
const std::vector<MergeColumn>& MergeColumns();

//! True for a column name that holds a customer number (customer_no and its variants,
//! household numbers, owners, bill-to customers), without regard to case.
bool HoldsCustomerNumber(std::string_view column);

struct TableColumn {
  std::string table;
  std::string column;
};

//! Every column of the live schema whose name holds a customer number.
std::vector<TableColumn> CustomerNumberColumns(SqliteDatabase& db);

//! The live customer-number columns MergeColumns has no line for.
std::vector<TableColumn> UncoveredCustomerColumns(SqliteDatabase& db);

}  // namespace kiv::refhost
