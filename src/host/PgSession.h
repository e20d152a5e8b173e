#pragma once
// The SQL a PostgreSQL session of the host runs before the first statement.
namespace PgSession {
// Creates the pg_temp helpers the dialect calls (jet_fold, jet_like_re, jet_plus, ...).
const char* HelperFunctions();
// Every table and view column on the search path: relation, column, type category.
const char* CatalogueQuery();
}
