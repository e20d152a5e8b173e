#pragma once
// The Jet SQL dialect on SQLite: statement translation and the run-time helpers the translated
// text calls (jet_like, jet_clng, jet_plus, ...). The helpers live on the connection; see
// RegisterJetFunctions.
#include <QString>
#include <QVariant>

struct sqlite3;

namespace JetSql {

// Translates one Jet SELECT statement into SQLite SQL. Select items without an alias get one
// (the column's own name, or Expr1000, Expr1001, ... for expressions), so result column names are
// the ones Jet would report. Throws HostError: MultipleStatements for text after the ";",
// SqlExecute for anything but SELECT, SqlSyntax for what cannot be translated.
QString Translate(const QString& jet);

// Jet Like: % and * any run, _ and ? one character, # one digit, [abc] [a-z] [!x] classes.
// Case-insensitive. Throws HostError(SqlSyntax) for a malformed pattern (an unclosed "[").
bool LikeMatch(const QString& value, const QString& pattern);

// Jet CLng: rounds half to even; text is converted first. Throws HostError on text that is not
// a number or a result outside 32 bits.
qint32 CLng(const QVariant& value);

// Installs the helper functions on a connection.
void RegisterJetFunctions(sqlite3* db);

} // namespace JetSql
