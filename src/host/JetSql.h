#pragma once
// The Jet SQL dialect the designer speaks, translated for the database behind the host: one
// tokenizer and one translator, and a dialect table per target (SQLite, PostgreSQL) that says
// how each construct is written there. The SQLite helpers (jet_like, jet_clng, jet_plus, ...)
// live on the connection (RegisterJetFunctions); the PostgreSQL ones are created per session
// (see PgDatabase).
#include <QHash>
#include <QString>
#include <QVariant>

struct sqlite3;

namespace JetSql {

struct Dialect;
const Dialect& SqliteDialect();
const Dialect& PostgresDialect();

// What the translator knows of the target's tables: lower-case name -> the name as the database
// spells it, and the kind of value a column holds. Empty for SQLite, whose names ignore case.
enum class ValueKind { Unknown, Text, Number, Date, Bool };
struct Catalogue {
    QHash<QString, QString> names;        // tables and columns
    QHash<QString, QHash<QString, QString>> tableColumns; // per table: its columns' spellings
    QHash<QString, ValueKind> columnKinds; // columns
};

// Translates one Jet SELECT statement for the dialect. Select items without an alias get one
// (the column's own name, or Expr1000, Expr1001, ... for expressions), so result column names are
// the ones Jet would report. Throws HostError: MultipleStatements for text after the ";",
// SqlExecute for anything but SELECT, SqlSyntax for what cannot be translated.
QString Translate(const QString& jet, const Dialect& dialect, const Catalogue* catalogue = nullptr);
inline QString Translate(const QString& jet) { return Translate(jet, SqliteDialect()); }

// Jet Like: % and * any run, _ and ? one character, # one digit, [abc] [a-z] [!x] classes.
// Case-insensitive. Throws HostError(SqlSyntax) for a malformed pattern (an unclosed "[").
bool LikeMatch(const QString& value, const QString& pattern);

// Jet CLng: rounds half to even; text is converted first. Throws HostError on text that is not
// a number or a result outside 32 bits.
qint32 CLng(const QVariant& value);

// Installs the helper functions on a connection.
void RegisterJetFunctions(sqlite3* db);

} // namespace JetSql
