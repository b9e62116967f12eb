#!/bin/sh
# Regenerates schema_sql.cpp from schema.sql; run after every change to the schema
# (refhost_tests checks that the two agree).
cd "$(dirname "$0")" || exit 1
{
  echo "// Generated from schema.sql by embed_schema.sh: the schema built into the program."
  echo '#include "refhost/schema.h"'
  echo
  echo "namespace kiv::refhost {"
  echo
  echo "std::string_view SchemaSql() {"
  printf '  static constexpr std::string_view kText = R"kivsql('
  cat schema.sql
  echo ')kivsql";'
  echo "  return kText;"
  echo "}"
  echo
  echo "}  // namespace kiv::refhost"
} > schema_sql.cpp
