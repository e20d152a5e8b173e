#pragma once
// Typed column values as the classic database engine hands them out. A database that keeps
// dates as ISO text and Booleans as -1/0 integers (SQLite) or that reports its own type names
// (PostgreSQL) passes each raw value through Typed with the column's declared type, so the
// designer sees a Date/Time value and a Boolean, never the storage form. How a typed value
// then reads as text ("6/18/2024", "True") is RecordQuery::ValueText's business.
#include <QString>
#include <QVariant>

namespace HostValue {

enum class ColumnType { Other, DateTime, Boolean };

// The column type a declared type name stands for, case-blind, parameters ignored:
// DATE, DATETIME, TIMESTAMP (with or without time zone), TIME, SMALLDATETIME are Date/Time;
// BOOLEAN, BOOL, BIT, YESNO, LOGICAL are Boolean; anything else (TEXT, INTEGER, "") is Other.
ColumnType TypeOfDeclared(const QString& declaredType);

// The typed value of a raw one. Date/Time: ISO text "yyyy-mm-dd" becomes a QDate,
// "yyyy-mm-dd hh:mm[:ss[.fff]]" (or with "T"; a trailing zone is ignored) a QDateTime in UTC,
// "hh:mm[:ss]" a QTime. Boolean: 0 is false and any other number true; "True"/"False"/"t"/"f"
// (any case) too. Null stays null, and a value that does not read as the type is returned
// unchanged: nothing the database holds is ever lost on the way.
QVariant Typed(const QVariant& raw, ColumnType type);

} // namespace HostValue
